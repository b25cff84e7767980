#include "inspector/SourceViewController.h"

#include "document/Document.h"
#include "inspector/SourceSummary.h"
#include "support/PdfBuilder.h"
#include "views/PlainTextView.h"

#include <QLabel>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <memory>

namespace {

class Flags : public ViewFlags
{
public:
    bool showThumbnail() const override { return false; }
    bool showRawSource() const override { return raw; }
    bool showSummarySource() const override { return summary; }

    bool raw = false;
    bool summary = false;
};

QString textOf(const PlainTextView* view)
{
    QStringList lines;
    const auto storage = view->textStorage();
    for (qsizetype i = 0; i < storage->lineCount(); ++i)
        lines.append(storage->line(i).text);
    return lines.join(QLatin1Char('\n'));
}

QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace

class TestSourceViewController : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void writesSummaries_data();
    void writesSummaries();
    void fillsPanesAsTheFlagsSay_data();
    void fillsPanesAsTheFlagsSay();
    void readsTheFlagsAtEveryShowing();
    void saysSoWithoutADocument();
    void givesUpWhenAsked();
    void mayCloseWhileFilling();

private:
    void open();
    std::unique_ptr<SourceViewController> shownInspector();

    WindowRegistry<Document> theRegistry;
    std::unique_ptr<Document> theDocument;
    Flags theFlags;
};

void TestSourceViewController::init()
{
    QSettings().clear();
    theFlags = Flags();
    theDocument = std::make_unique<Document>(&theRegistry);
    theDocument->setFileURL(QUrl::fromLocalFile(QStringLiteral("/somewhere/report.pdf")));
}

void TestSourceViewController::cleanup()
{
    theDocument.reset();
}

void TestSourceViewController::open()
{
    PdfBuilder builder;
    builder.setInfo("<< /Title (Report) /Author (Me) >>");
    builder.addPage("One").addPage("Two").addUpdate(3, "<< /Type /Font >>");
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

void TestSourceViewController::writesSummaries_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char* name, const std::string& written, const char* expected) {
        QTest::newRow(name) << QByteArray::fromStdString(written) << QByteArray(expected);
    };
    row("both scanned", summaryText({1, 7, 2, 3, 2}, "contains A", "contains B"),
        "Summary from loaded PDF in Quartz 2D:\nPDF version 1.7.\nFound a total of 2 pages.\n"
        "Info dictionary entry count = 3.\nCatalog dictionary entry count = 2.\n\n"
        "Flattened PDF (Quartz 2D) contains A\n\nSource PDF file contains B\n");
    row("nothing known, nothing scanned", summaryText({}, {}, {}),
        "Summary from loaded PDF in Quartz 2D:\nPDF version 0.0.\nFound a total of 0 pages.\n"
        "Info dictionary couldn't be found.\nCatalog dictionary couldn't be found.\n\n");
}

void TestSourceViewController::writesSummaries()
{
    QFETCH(QByteArray, written);
    QTEST(written, "expected");
}

void TestSourceViewController::fillsPanesAsTheFlagsSay_data()
{
    QTest::addColumn<bool>("raw");
    QTest::addColumn<bool>("summary");
    QTest::addColumn<QString>("lowerBegins");
    QTest::addColumn<bool>("holdsStreams");
    QTest::addColumn<bool>("holdsObjectList");
    QTest::newRow("object lists") << false << false << utf8("1 0 1 Catalog") << false << true;
    QTest::newRow("listings") << false << true << utf8("%PDF-1.7") << false << true;
    QTest::newRow("raw texts") << true << false << utf8("%PDF-1.7") << true << false;
    QTest::newRow("raw wins") << true << true << utf8("%PDF-1.7") << true << false;
}

void TestSourceViewController::fillsPanesAsTheFlagsSay()
{
    QFETCH(QString, lowerBegins);
    QFETCH(bool, raw);
    QFETCH(bool, summary);
    open();
    theFlags.raw = raw;
    theFlags.summary = summary;
    const auto inspector = shownInspector();
    QVERIFY(!inspector->isFilling());
    QCOMPARE(inspector->windowTitle(), utf8("\u203C\uFE0Freport.pdf"));

    const QString lower = textOf(inspector->lowerTextView());
    QVERIFY2(lower.startsWith(lowerBegins), qPrintable(lower.left(40)));
    for (const QString& text : {lower, textOf(inspector->upperTextView())}) {
        QTEST(text.contains(utf8("endstream")), "holdsStreams");
        QTEST(text.contains(utf8(" 1 Page, Parent (")), "holdsObjectList");
    }
    const QString bottom = textOf(inspector->bottomTextView());
    QVERIFY(
        bottom.startsWith(utf8("Summary from loaded PDF in Quartz 2D:\nPDF version 1.7.\n"
                               "Found a total of 2 pages.\nInfo dictionary entry count = 2.\n")));
    QCOMPARE(bottom.contains(utf8("Flattened PDF (Quartz 2D) contains ")), !raw);
    QCOMPARE(bottom.endsWith(utf8("2 trailers.\nMaximum version = 2\n")), !raw);
}

void TestSourceViewController::readsTheFlagsAtEveryShowing()
{
    open();
    const auto inspector = shownInspector();
    inspector->hide();
    theFlags.raw = true;
    QSignalSpy filled(inspector.get(), &SourceViewController::filled);
    QVERIFY(!textOf(inspector->lowerTextView()).contains(utf8("endstream")));
    inspector->show();
    QTRY_COMPARE(filled.size(), 1);
    QVERIFY(textOf(inspector->lowerTextView()).contains(utf8("endstream")));
}

void TestSourceViewController::saysSoWithoutADocument()
{
    theDocument->setFileURL({});
    const auto inspector = shownInspector();
    QCOMPARE(textOf(inspector->bottomTextView()), utf8(noDocumentText));
    QCOMPARE(inspector->windowTitle(), utf8("\u203C\uFE0FUntitled"));
    QCOMPARE(textOf(inspector->lowerTextView()), QString());
}

void TestSourceViewController::givesUpWhenAsked()
{
    open();
    SourceViewController inspector(theDocument.get(), &theFlags);
    QSignalSpy filled(&inspector, &SourceViewController::filled);
    inspector.show();
    inspector.findChild<QToolButton*>(QStringLiteral("upperCancel"))->click();
    QTRY_COMPARE(filled.size(), 1);
    QCOMPARE(textOf(inspector.upperTextView()), QString());
    const auto* note = inspector.findChild<QLabel*>(QStringLiteral("upperNote"));
    QVERIFY(note->isVisible());
    QCOMPARE(note->text(), utf8("Cancelled"));
    const QString bottom = textOf(inspector.bottomTextView());
    QVERIFY(!bottom.contains(utf8("Flattened PDF")));
    QVERIFY(bottom.contains(utf8("Source PDF file contains ")));
}

void TestSourceViewController::mayCloseWhileFilling()
{
    open();
    for (int i = 0; i < 5; ++i) {
        SourceViewController inspector(theDocument.get(), &theFlags);
        inspector.show();
        QTest::qWait(i * 5);
    }
    const auto inspector = shownInspector(); // the engine still works
    QVERIFY(!textOf(inspector->upperTextView()).isEmpty());
}

QTEST_MAIN(TestSourceViewController)
#include "tst_SourceViewController.moc"
