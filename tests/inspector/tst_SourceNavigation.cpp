#include "InspectedFile.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// Where a text stands first in a pane.
TextRange find(const PlainTextView& view, const QString& wanted)
{
    const auto storage = view.textStorage();
    for (qsizetype line = 0; line < storage->lineCount(); ++line) {
        const qsizetype unit = storage->line(line).text.indexOf(wanted);
        if (unit >= 0)
            return {{line, unit}, {line, unit + wanted.size()}};
    }
    return {};
}

} // namespace

class TestSourceNavigation : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { theInspector.reset(); }
    void goesWhereAsked_data();
    void goesWhereAsked();
    void saysWhyNot_data();
    void saysWhyNot();
    void followsReferences_data();
    void followsReferences();
    void goesBackOverPanesAndWindows();
    void leadsFromPagesToTheirSourceAndBack();
    void showsObjectsInTheOtherSource();

private:
    void open(bool summary = true, bool raw = false);
    QString typed(const QString& text) const;

    std::string theBytes;
    std::unique_ptr<InspectedFile> theFile;
    std::unique_ptr<SourceViewController> theInspector;
};

void TestSourceNavigation::init()
{
    PdfBuilder builder;
    builder.addPage("One").addPage("Two", "/Far 9 0 R /Broken 3\n0 R");
    builder.addObject("[ 3 0 R 99 0 R 3 1 R ]"); // 8
    builder.addUpdate(3, "<< /Type /Font /Later 1 >>").addUpdate(9, "<< /New 7 0 R >>");
    theBytes = builder.bytes();
}

void TestSourceNavigation::open(bool summary, bool raw)
{
    theInspector.reset();
    theFile = std::make_unique<InspectedFile>(theBytes);
    theFile->flags.summary = summary;
    theFile->flags.raw = raw;
    theInspector = theFile->inspector();
}

/// Types where to go. @returns what is said against it.
QString TestSourceNavigation::typed(const QString& text) const
{
    theInspector->goToObject();
    auto* field = theInspector->findChild<QLineEdit*>(u"goToField"_s);
    field->setText(text);
    QTest::keyClick(field, Qt::Key_Return);
    return theInspector->findChild<QLabel*>(u"goToMistake"_s)->text();
}

/// What is typed, what is selected then, and how the line below begins.
using GoesWhereAsked = Rows<QString, QString, QString>;

void TestSourceNavigation::goesWhereAsked_data()
{
    const GoesWhereAsked row;
    row("an object as it is now", "3", "3 0 obj", "<< /Type /Font /Later");
    row("as it was", "3 0 v1", "3 0 obj", "<< /Type /Font /Subtype");
    row("the second page", "p2", "7 0 obj", "<< /Type /Page");
    row("an offset", "@0x1", "P", "%");
}

void TestSourceNavigation::goesWhereAsked()
{
    const auto [text, selected, next] = GoesWhereAsked::fetch();
    open();
    QCOMPARE(typed(text), QString());
    const PlainTextView& view = *theInspector->lowerTextView();
    QCOMPARE(view.selectedText(), selected);
    QVERIFY(view.hasFocus());
    QVERIFY(view.caretRect(view.caret()));
    const QString below = view.textStorage()->line(view.caret().line + 1).text;
    QVERIFY2(below.startsWith(next), qPrintable(below));
}

using SaysWhyNot = Rows<QString, QString, bool, bool>;

void TestSourceNavigation::saysWhyNot_data()
{
    const auto row
        = [table = SaysWhyNot()](const char* name, const QString& text, const QString& said,
              bool summary = true, bool raw = false) { table(name, text, said, summary, raw); };
    row("no such object", u"99"_s, u"no object 99"_s);
    row("not there yet", u"9 v2"_s, u"comes in version 3"_s);
    row("another generation", u"3 1"_s, u"Generation 1"_s);
    row("behind the file", u"@1000000"_s, u"no byte at offset"_s);
    row("no such page", u"p3"_s, u"No page 3"_s);
    row("nonsense", u"seventeen"_s, u"“seventeen”"_s);
    row("too large", u"99999999999999999999"_s, u"that large"_s);
    row("an offset without a listing", u"@1"_s, u"Show Summary Source"_s, false);
    row("an object of an undecorated text", u"1"_s, u"Show Raw Source"_s, true, true);
}

void TestSourceNavigation::saysWhyNot()
{
    const auto [text, said, summary, raw] = SaysWhyNot::fetch();
    open(summary, raw);
    const QString sentence = typed(text);
    QVERIFY2(sentence.contains(said), qPrintable(sentence));
    const auto& field = *theInspector->findChild<QLineEdit*>(u"goToField"_s);
    QCOMPARE(field.text(), text);
    QApplication::sendPostedEvents();
    QVERIFY(field.parentWidget()->height() < 2 * field.height()); // takes no room from the panes
}

/// Whether there is an object list, a reference, and the line that is arrived at; none when it
/// leads nowhere.
using FollowsReferences = Rows<bool, QString, QString>;

void TestSourceNavigation::followsReferences_data()
{
    const FollowsReferences row;
    row("as of its own version", true, "3 0 R", "3 0 obj");
    row("over two lines", true, "/Broken 3", "3 0 obj");
    row("from a later version", true, "7 0 R >>", "7 0 obj");
    row("to what is there later", true, "9 0 R", "");
    row("to nothing", true, "99 0 R", "");
    row("in the object list", false, "(2, 0, 1)", "2 0 1 Pages");
    row("in a line of the list", false, "7 0 R >>", "7 0 1 Page");
}

void TestSourceNavigation::followsReferences()
{
    const auto [summary, link, line] = FollowsReferences::fetch();
    open(summary);
    PlainTextView& view = *theInspector->lowerTextView();
    const TextRange range = find(view, link);
    QVERIFY(!range.isEmpty());
    const TextPosition inside{
        range.end.line, link.endsWith(u">>"_s) ? range.begin.unit + 1 : range.end.unit - 1};

    view.setSelection(inside, inside);
    QVERIFY(theInspector->validateCommand(u"followReference"_s));
    QTest::keyClick(&view, Qt::Key_Return);
    const QString there = view.textStorage()->line(view.caret().line).text;
    QVERIFY2(line.isEmpty() ? view.caret() == inside : there.startsWith(line), qPrintable(there));

    view.goTo({inside, inside});
    const QPointF point = view.caretRect(inside).value().center();
    const QString before = view.selectedText();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ControlModifier, point.toPoint());
    QCOMPARE(view.selectedText().isEmpty(), line.isEmpty());
}

void TestSourceNavigation::goesBackOverPanesAndWindows()
{
    open();
    const std::unique_ptr<SourceViewController> first = std::move(theInspector);
    first->goToObject();
    theInspector = theFile->inspector();
    PlainTextView& view = *theInspector->lowerTextView();
    const TextPosition start = view.caret();
    QVERIFY(!theInspector->validateCommand(u"goBack"_s));
    QCOMPARE(typed(u"7"_s), QString());
    const TextPosition page = view.caret();
    QCOMPARE(typed(u"1"_s), QString());
    theInspector->goBack();
    QCOMPARE(view.caret(), page);
    theInspector->goBack();
    QCOMPARE(view.caret(), start);
    QVERIFY(!theInspector->validateCommand(u"goBack"_s));
    theInspector->goForward();
    QCOMPARE(view.caret(), page);

    first->goBack(); // leads into the other window
    QCOMPARE(view.caret(), start);
    theInspector.reset();
    first->goForward(); // whose places go with it
    QVERIFY(!first->validateCommand(u"goForward"_s));
}

void TestSourceNavigation::leadsFromPagesToTheirSourceAndBack()
{
    open();
    const auto another = theFile->newInspector();
    QSignalSpy filled(another.get(), &SourceViewController::filled);
    another->show();
    another->showSourceOfPage(1); // before there is any
    QVERIFY(filled.size() == 1 || filled.wait(30'000));
    QCOMPARE(another->lowerTextView()->selectedText(), u"7 0 obj"_s);
}

void TestSourceNavigation::showsObjectsInTheOtherSource()
{
    open();
    const PlainTextView& upper = *theInspector->upperTextView();
    const PlainTextView& lower = *theInspector->lowerTextView();
    QCOMPARE(typed(u"3"_s), QString());
    theInspector->showInOtherSource();
    QVERIFY(upper.hasFocus());
    QVERIFY(upper.textStorage()->line(upper.caret().line + 1).text.contains(u"/Later 1"_s));
    theInspector->showInOtherSource();
    QVERIFY(lower.hasFocus());
    QCOMPARE(lower.selectedText(), u"3 0 obj"_s);
    QCOMPARE(typed(u"8"_s), QString()); // nothing leads to it
    theInspector->showInOtherSource();
    const QString said = theInspector->findChild<QLabel*>(u"lowerNote"_s)->text();
    QVERIFY2(said.contains(u"leaves object 8 out"_s), qPrintable(said));
}

QTEST_MAIN(TestSourceNavigation)

#include "tst_SourceNavigation.moc"
