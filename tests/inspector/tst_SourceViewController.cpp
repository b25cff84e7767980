#include "inspector/SourceViewController.h"

#include "InspectedFile.h"
#include "SourceSummary.h"
#include "document/Document.h"
#include "support/LostPages.h"
#include "support/PdfBuilder.h"
#include "text/ListedLines.h"
#include "text/PlainTextView.h"

#include <QLabel>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

QString textOf(const PlainTextView* view)
{
    return linesOf(*view->textStorage()).join(u'\n');
}

} // namespace

class TestSourceViewController : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { theDocument.reset(); }
    void writesSummaries();
    void fillsPanesAsTheFlagsSay();
    void saysSoWithoutADocument();
    void givesUpWhenAsked();
    void saysWhatTheFlattenedDocumentLacks();
    void mayCloseWhileFilling();
    void exchangedPanesAreHonouredEverywhere();

private:
    void open();
    void open(const PdfBuilder& builder);
    std::unique_ptr<SourceViewController> shownInspector();

    WindowRegistry<Document> theRegistry;
    std::unique_ptr<Document> theDocument;
    InspectedFile::Flags theFlags;
};

void TestSourceViewController::init()
{
    QSettings().clear();
    theFlags = {};
    theFlags.summary = false;
    theDocument = std::make_unique<Document>(&theRegistry);
    theDocument->setFileURL(QUrl::fromLocalFile(u"/somewhere/report.pdf"_s));
}

void TestSourceViewController::open()
{
    PdfBuilder builder;
    builder.setInfo("<< /Title (Report) /Author (Me) >>");
    builder.addPage("One").addPage("Two").addUpdate(3, "<< /Type /Font >>");
    open(builder);
}

void TestSourceViewController::open(const PdfBuilder& builder)
{
    QSignalSpy opened(theDocument.get(), &Document::opened);
    theDocument->readFromData(FileBytes::copy(builder.bytes()).value());
    QTRY_COMPARE(opened.size(), 1);
}

std::unique_ptr<SourceViewController> TestSourceViewController::shownInspector()
{
    auto inspector = std::make_unique<SourceViewController>(theDocument.get(), &theFlags);
    QSignalSpy filled(inspector.get(), &SourceViewController::filled);
    inspector->show();
    if (filled.isEmpty())
        filled.wait(30'000);
    return inspector;
}

void TestSourceViewController::writesSummaries()
{
    QCOMPARE(summaryText({}, {}, {}),
        std::string("Summary from loaded PDF in Quartz 2D:\nPDF version 0.0.\n"
                    "Found a total of 0 pages.\nInfo dictionary couldn't be found.\n"
                    "Catalog dictionary couldn't be found.\n\n"));
}

void TestSourceViewController::fillsPanesAsTheFlagsSay()
{
    open();
    for (const auto& [raw, summary] :
        {std::pair(false, false), {false, true}, {true, false}, {true, true}}) {
        theFlags.raw = raw;
        theFlags.summary = summary;
        const auto inspector = shownInspector();
        QVERIFY(!inspector->isFilling());
        QCOMPARE(inspector->windowTitle(), u"\u203C\uFE0Freport.pdf"_s);

        const QString lower = textOf(inspector->lowerTextView());
        QVERIFY(lower.startsWith(raw || summary ? u"%PDF-1.7"_s : u"1 0 1 Catalog"_s));
        for (const QString& text : {lower, textOf(inspector->upperTextView())}) {
            QCOMPARE(text.contains(u"endstream"_s), raw);
            QCOMPARE(text.contains(u" 1 Page, Parent ("_s), !raw);
        }
        const QString bottom = textOf(inspector->bottomTextView());
        QVERIFY(bottom.startsWith(
            u"Summary from loaded PDF in Quartz 2D:\nPDF version 1.7.\nFound a total of 2 pages.\n"
            u"Info dictionary entry count = 2.\nCatalog dictionary entry count = 2.\n\n"_s));
        if (!raw)
            QVERIFY(bottom.contains(u"\n\nSource PDF file contains "_s));
        QCOMPARE(bottom.contains(u"Flattened PDF (Quartz 2D) contains "_s), !raw);
        QCOMPARE(bottom.endsWith(u"2 trailers.\nMaximum version = 2\n"_s), !raw);
    }
}

void TestSourceViewController::saysSoWithoutADocument()
{
    theDocument->setFileURL({});
    const auto inspector = shownInspector();
    QCOMPARE(textOf(inspector->bottomTextView()), QString::fromUtf8(noDocumentText));
    QCOMPARE(inspector->windowTitle(), u"\u203C\uFE0FUntitled"_s);
    QCOMPARE(textOf(inspector->lowerTextView()), QString());
}

void TestSourceViewController::givesUpWhenAsked()
{
    open();
    SourceViewController inspector(theDocument.get(), &theFlags);
    QSignalSpy filled(&inspector, &SourceViewController::filled);
    inspector.show();
    inspector.findChild<QToolButton*>(u"upperCancel"_s)->click();
    QTRY_COMPARE(filled.size(), 1);
    QCOMPARE(textOf(inspector.upperTextView()), QString());
    const auto* note = inspector.findChild<QLabel*>(u"upperNote"_s);
    QVERIFY(note->isVisible());
    QCOMPARE(note->text(), u"Cancelled"_s);
    const QString bottom = textOf(inspector.bottomTextView());
    QVERIFY(!bottom.contains(u"Flattened PDF"_s));
    QVERIFY(bottom.contains(u"Source PDF file contains "_s));
}

void TestSourceViewController::saysWhatTheFlattenedDocumentLacks()
{
    open(LostPages::secondOfThree());
    const auto inspector = shownInspector();
    const auto* note = inspector->findChild<QLabel*>(u"upperNote"_s);
    QVERIFY(note->isVisible());
    QCOMPARE(note->text(), u"Incomplete: page 2"_s);
    QCOMPARE(note->toolTip().section(u'\n', 1),
        u"Page 2 was written empty: it is too damaged to be read.\n"
        "1 object of the document could not be read and is empty."_s);
    QVERIFY(!inspector->findChild<QLabel*>(u"lowerNote"_s)->isVisible());
}

void TestSourceViewController::mayCloseWhileFilling()
{
    open();
    using IsSoFar = bool (*)(const SourceViewController&);
    for (const IsSoFar isSoFar : {IsSoFar([](const auto&) { return true; }),
             IsSoFar([](const auto& inspector) { return inspector.theSourceText() != nullptr; }),
             IsSoFar([](const auto& inspector) { return inspector.theFlatText() != nullptr; })}) {
        SourceViewController inspector(theDocument.get(), &theFlags);
        inspector.show();
        QTRY_VERIFY(isSoFar(inspector));
    }
    const auto inspector = shownInspector(); // the engine still works
    QVERIFY(!textOf(inspector->upperTextView()).isEmpty());
}

void TestSourceViewController::exchangedPanesAreHonouredEverywhere()
{
    open();
    PlainTextView upper;
    PlainTextView lower;
    PlainTextView bottom;
    theFlags.summary = true;
    SourceViewController inspector(theDocument.get(), &theFlags);
    const PlainTextView* const before[]
        = {inspector.upperTextView(), inspector.lowerTextView(), inspector.bottomTextView()};
    inspector.setUpperTextView(&upper);
    inspector.setLowerTextView(&lower);
    inspector.setBottomTextView(&bottom);
    inspector.setUpperTextScroller(&upper);
    inspector.setLowerTextScroller(&lower);
    inspector.setBottomTextScroller(&bottom);
    QSignalSpy filled(&inspector, &SourceViewController::filled);
    inspector.show();
    QTRY_COMPARE(filled.size(), 1);
    for (const PlainTextView* view : before)
        QCOMPARE(textOf(view), QString());
    for (const PlainTextView* view : {&upper, &lower}) {
        QVERIFY(textOf(view).startsWith(u"%PDF-"_s));
        QVERIFY(!view->isWrapping());
    }
    QVERIFY(textOf(&bottom).contains(u"Source PDF file contains "_s));
    QCOMPARE(inspector.focusProxy(), &lower);
    // The flags are read at every showing.
    inspector.hide();
    theFlags.raw = true;
    QVERIFY(!textOf(&bottom).isEmpty() && !textOf(&lower).contains(u"endstream"_s));
    inspector.show();
    QTRY_COMPARE(filled.size(), 2);
    QVERIFY(textOf(&lower).contains(u"endstream"_s));
    inspector.setUpperText(u"one"_s);
    inspector.setLowerText(u"two"_s);
    inspector.setBottomText(u"three"_s);
    QCOMPARE(textOf(&upper) + textOf(&lower) + textOf(&bottom), u"onetwothree"_s);
}

QTEST_MAIN(TestSourceViewController)
#include "tst_SourceViewController.moc"
