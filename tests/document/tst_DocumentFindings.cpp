#include "document/Document.h"
#include "document/DocumentFindings.h"
#include "document/FindingsStrip.h"
#include "pdf/PDFDocumentText.h"
#include "support/LostPages.h"
#include "support/PdfBuilder.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// What is found out about a document's file: once for all windows, and how a line tells it.
class TestDocumentFindings : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhatIsGrave_data();
    void tellsWhatIsGrave();
    void goesOnWhileSomebodyWantsToKnow();
};

namespace {

struct Opened
{
    explicit Opened(const std::string& bytes)
        : document(&registry)
    {
        QSignalSpy opened(&document, &Document::opened);
        document.readFromData(FileBytes::copy(bytes).value());
        opened.wait(30'000);
    }

    WindowRegistry<Document> registry;
    Document document;
};

} // namespace

void TestDocumentFindings::tellsWhatIsGrave_data()
{
    QTest::addColumn<std::string>("file");
    QTest::addColumn<QString>("inMainWindow");
    QTest::addColumn<QString>("inInspector");
    const auto row = [](const char* name, const std::string& file, const QString& main,
                         const QString& all) { QTest::newRow(name) << file << main << all; };
    const std::string end(3, '\0');
    const QString junk = u"1 finding: 3 bytes stand behind the last marker %%EOF"_s;
    const QString hidden = u"1 finding: 4 objects lie in 1 object streams,"_s;
    const QString repaired = u"4 findings: The file was repaired"_s;
    const QString lost = u"1 finding: No text from page 2"_s;
    PdfBuilder builder;
    const std::string sound = builder.addPage("A page").bytes();
    row("a sound file", sound, {}, {});
    row("a departure", sound + end, junk, junk);
    row("a mere fact", builder.setXref(PdfBuilder::Xref::isStream).bytes(), {}, hidden);
    row("the gravest, not the first", "junk\n" + sound.substr(0, sound.rfind("startxref")),
        repaired, repaired);
    row("a page without text", LostPages::secondOfThree().bytes(), lost, lost);
}

void TestDocumentFindings::tellsWhatIsGrave()
{
    QFETCH(std::string, file);
    Opened opened(file);
    DocumentFindings& findings = *opened.document.findings();
    FindingsStrip inMainWindow(&findings, FindingsStrip::Occasion::isGrave, nullptr);
    FindingsStrip inInspector(&findings, FindingsStrip::Occasion::isAny, nullptr);
    QSignalSpy read(opened.document.documentText(), &PDFDocumentText::completed);
    opened.document.documentText()->fetch();
    QVERIFY(read.wait());
    findings.want(&inMainWindow);
    QTRY_VERIFY(findings.findings());
    QCOMPARE(opened.document.findings(), &findings);
    for (const auto& [strip, column] :
        {std::pair(&inMainWindow, "inMainWindow"), {&inInspector, "inInspector"}}) {
        const QString begin
            = *static_cast<const QString*>(QTest::qData(column, qMetaTypeId<QString>()));
        QVERIFY2(strip->text().startsWith(begin), qPrintable(strip->text()));
        QCOMPARE(strip->text().isEmpty(), begin.isEmpty());
        QCOMPARE(strip->isHidden(), begin.isEmpty());
    }
}

/// A window that closes gives up what nobody else waits for; the next one begins anew.
void TestDocumentFindings::goesOnWhileSomebodyWantsToKnow()
{
    Opened opened(PdfBuilder().addPage("A page").bytes() + "junk");
    DocumentFindings& findings = *opened.document.findings();
    QSignalSpy changed(&findings, &DocumentFindings::changed);
    auto first = std::make_unique<QObject>();
    findings.want(first.get());
    first.reset();
    QCOMPARE(opened.document.thePDFDocument()->engineProcessIds().size(), 1); // that of the pages
    QObject second;
    QObject third;
    findings.want(&second);
    findings.want(&third);
    QVERIFY(changed.wait());
    findings.want(&third);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(findings.findings()->count(), std::size_t{1});
}

QTEST_MAIN(TestDocumentFindings)
#include "tst_DocumentFindings.moc"
