#include "InspectedFile.h"
#include "support/PdfBuilder.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// Where a text stands in a pane for the n-th time.
TextRange find(const PlainTextView& view, const QString& wanted, int skip = 0)
{
    const auto storage = view.textStorage();
    for (qsizetype line = 0; line < storage->lineCount(); ++line) {
        const qsizetype unit = storage->line(line).text.indexOf(wanted);
        if (unit >= 0 && skip-- == 0)
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

void TestSourceNavigation::goesWhereAsked_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("next"); // the line below
    QTest::addRow("an object as it is now") << u"3"_s << u"3 0 obj"_s << u"<< /Type /Font /Later"_s;
    QTest::addRow("as it was") << u"3 0 v1"_s << u"3 0 obj"_s << u"<< /Type /Font /Subtype"_s;
    QTest::addRow("the second page") << u"p2"_s << u"7 0 obj"_s << u"<< /Type /Page"_s;
    QTest::addRow("an offset") << u"@0x1"_s << u"P"_s << u"%"_s;
}

void TestSourceNavigation::goesWhereAsked()
{
    QFETCH(QString, text);
    QFETCH(QString, selected);
    QFETCH(QString, next);
    open();
    QCOMPARE(typed(text), QString());
    const PlainTextView& view = *theInspector->lowerTextView();
    QCOMPARE(view.selectedText(), selected);
    QVERIFY(view.hasFocus());
    QVERIFY(view.caretRect(view.caret()));
    const QString below = view.textStorage()->line(view.caret().line + 1).text;
    QVERIFY2(below.startsWith(next), qPrintable(below));
}

void TestSourceNavigation::saysWhyNot_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("said");
    QTest::addColumn<bool>("summary");
    QTest::addColumn<bool>("raw");
    const auto row
        = [](const char* name, const QString& text, const QString& said, bool summary = true,
              bool raw = false) { QTest::addRow("%s", name) << text << said << summary << raw; };
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
    QFETCH(QString, text);
    QFETCH(QString, said);
    QFETCH(bool, summary);
    QFETCH(bool, raw);
    open(summary, raw);
    const QString sentence = typed(text);
    QVERIFY2(sentence.contains(said), qPrintable(sentence));
    QCOMPARE(theInspector->findChild<QLineEdit*>(u"goToField"_s)->text(), text);
}

void TestSourceNavigation::followsReferences_data()
{
    QTest::addColumn<bool>("summary");
    QTest::addColumn<QString>("link");
    QTest::addColumn<int>("skip");
    QTest::addColumn<QString>("line"); // that is arrived at; empty when it leads nowhere
    QTest::addRow("as of its own version") << true << u"3 0 R"_s << 0 << u"3 0 obj"_s;
    QTest::addRow("over two lines") << true << u"/Broken 3"_s << 0 << u"3 0 obj"_s;
    QTest::addRow("from a later version") << true << u"7 0 R >>"_s << 0 << u"7 0 obj"_s;
    QTest::addRow("to what is there later") << true << u"9 0 R"_s << 0 << QString();
    QTest::addRow("to nothing") << true << u"99 0 R"_s << 0 << QString();
    QTest::addRow("in the object list") << false << u"(2, 0, 1)"_s << 0 << u"2 0 1 Pages"_s;
    QTest::addRow("in a line of the list") << false << u"7 0 R >>"_s << 0 << u"7 0 1 Page"_s;
}

void TestSourceNavigation::followsReferences()
{
    QFETCH(bool, summary);
    QFETCH(QString, link);
    QFETCH(int, skip);
    QFETCH(QString, line);
    open(summary);
    PlainTextView& view = *theInspector->lowerTextView();
    const TextRange range = find(view, link, skip);
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

QTEST_MAIN(TestSourceNavigation)

#include "tst_SourceNavigation.moc"
