#include "platform/CupsSubmission.h"
#include "platform/PDFDocument.h"
#include "platform/PagePrintJob.h"
#include "platform/PagePrinting.h"
#include "platform/PrintSettings.h"
#include "platform/PrintedFile.h"

#include "support/OpenedDocument.h"
#include "support/PdfBuilder.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QPrinter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <csignal>

#include <unistd.h>

namespace {

const QByteArray former = "what had the name before";

/// A document of three pages that is printed into a file, which exists already.
class Fixture
{
public:
    Fixture()
        : document(PdfBuilder().addPage("one").addPage("two").addPage("three").bytes())
        , path(folder.filePath(QStringLiteral("printed.pdf")))
        , printer(PrintSettings::makePrinter())
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(former) != former.size())
            qWarning("no file to print into");
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(path);
        printer->setPageSize(QPageSize(QPageSize::A4));
    }
    PagePrinting* start()
    {
        auto* const printing = new PagePrinting(document.get(), std::move(printer), &window);
        QObject::connect(printing, &PagePrinting::ended, printing,
            [this](const QString& reason) { ends.append(reason); });
        printing->start();
        return printing;
    }
    /// Ends the engine that has just been asked for the file.
    void loseEngine() { ::kill(static_cast<pid_t>(document->engineProcessIds().last()), SIGKILL); }

    QByteArray written() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList names() const
    {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    OpenedDocument document;
    QTemporaryDir folder;
    QString path;
    std::unique_ptr<QPrinter> printer;
    QWidget window;
    QStringList ends;
};

QStringList textsOf(const QByteArray& file)
{
    OpenedDocument document(file.toStdString());
    QStringList texts;
    PDFTextRequest* const request = document->requestText(
        0, document->pageCount() - 1, PDFTextDetail::isPlain, document.get());
    QObject::connect(request, &PDFTextRequest::pageReady, document.get(),
        [&texts](int, const PDFPageText& text) { texts.append(text.string.trimmed()); });
    OpenedDocument::waitFor(request);
    return texts;
}

} // namespace

class TestPagePrinting : public QObject
{
    Q_OBJECT

private slots:
    void printsTheChosenPages_data();
    void printsTheChosenPages();
    void paintsWhatTheEngineCannotWrite();
    void leavesNothingWhenCancelled_data();
    void leavesNothingWhenCancelled();
    void neverReplacesTheOpenedFile();
    void saysWhyThereIsNoFile();
    void tellsTheQueueHowPagesLie();
};

void TestPagePrinting::printsTheChosenPages_data()
{
    QTest::addColumn<QString>("ranges");
    QTest::addColumn<bool>("isReversed");
    QTest::addColumn<int>("copies");
    QTest::addColumn<bool>("isCollated");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char* name, const char* ranges, bool isReversed, int copies,
                         bool isCollated, const char* expected) {
        QTest::newRow(name) << QString::fromLatin1(ranges) << isReversed << copies << isCollated
                            << QString::fromLatin1(expected).split(QLatin1Char(' '));
    };
    row("all", "", false, 1, true, "one two three");
    row("two ranges", "1,3", false, 1, true, "one three");
    row("from the last", "2-3", true, 1, true, "three two");
    row("copies in order", "1-2", false, 2, true, "one two one two");
    row("copies page by page", "1-2", false, 2, false, "one one two two");
}

void TestPagePrinting::printsTheChosenPages()
{
    QFETCH(QString, ranges);
    QFETCH(bool, isReversed);
    QFETCH(int, copies);
    QFETCH(bool, isCollated);
    Fixture fixture;
    if (!ranges.isEmpty()) {
        fixture.printer->setPrintRange(QPrinter::PageRange);
        fixture.printer->setPageRanges(QPageRanges::fromString(ranges));
    }
    fixture.printer->setPageOrder(isReversed ? QPrinter::LastPageFirst : QPrinter::FirstPageFirst);
    fixture.printer->setCopyCount(copies);
    fixture.printer->setCollateCopies(isCollated);
    fixture.start();
    QTRY_COMPARE(fixture.ends, QStringList{QString()});
    QTEST(textsOf(fixture.written()), "expected");
    QCOMPARE(fixture.names(), QStringList{QStringLiteral("printed.pdf")});
    QCOMPARE(
        OpenedDocument(fixture.written().toStdString())->pageSize(0).toSize(), QSize(595, 842));
}

void TestPagePrinting::paintsWhatTheEngineCannotWrite()
{
    Fixture fixture;
    fixture.start();
    fixture.loseEngine();
    QTRY_COMPARE_WITH_TIMEOUT(fixture.ends, QStringList{QString()}, 60'000);
    QCOMPARE(textsOf(fixture.written()), QStringList(3, QString()));
    QCOMPARE(fixture.names(), QStringList{QStringLiteral("printed.pdf")});
}

void TestPagePrinting::leavesNothingWhenCancelled_data()
{
    QTest::addColumn<bool>("isPainting");
    QTest::newRow("while the engine writes") << false;
    QTest::newRow("while pages are painted") << true;
}

void TestPagePrinting::leavesNothingWhenCancelled()
{
    QFETCH(bool, isPainting);
    Fixture fixture;
    const QPointer<PagePrinting> printing = fixture.start();
    if (isPainting) {
        fixture.loseEngine();
        QTRY_VERIFY(printing->findChild<PagePrintJob*>());
    }
    fixture.window.findChild<QProgressDialog*>()->findChild<QPushButton*>()->click();
    QTRY_VERIFY(!printing);
    QCOMPARE(fixture.written(), former);
    QCOMPARE(fixture.names(), QStringList{QStringLiteral("printed.pdf")});
    QVERIFY(fixture.ends.isEmpty());
}

void TestPagePrinting::neverReplacesTheOpenedFile()
{
    Fixture fixture;
    const QString opened = fixture.folder.filePath(QStringLiteral("opened.pdf"));
    QCOMPARE(
        ::link(QFile::encodeName(fixture.path).constData(), QFile::encodeName(opened).constData()),
        0);
    PrintedFile file(fixture.path, opened, nullptr);
    QVERIFY(!file.open().isEmpty());
    QCOMPARE(fixture.written(), former);
}

void TestPagePrinting::saysWhyThereIsNoFile()
{
    Fixture fixture;
    fixture.printer->setOutputFileName(fixture.folder.filePath(QStringLiteral("missing/a.pdf")));
    fixture.start();
    QCOMPARE(fixture.ends.size(), 1);
    QVERIFY(!fixture.ends.first().isEmpty());
}

void TestPagePrinting::tellsTheQueueHowPagesLie()
{
    const Fixture fixture;
    const auto valueOf = [&](CupsSubmission::Layout layout, const char* name) {
        QByteArrayList values;
        for (const auto& [option, value] : CupsSubmission::optionsFor(*fixture.printer, layout)) {
            if (option == name)
                values.append(value);
        }
        return values.join(' ');
    };
    using Layout = CupsSubmission::Layout;
    QCOMPARE(valueOf(Layout::isOfDocument, "print-scaling"), QByteArray("fit"));
    QCOMPARE(valueOf(Layout::isOfDocument, "page-left"), QByteArray("72"));
    QCOMPARE(valueOf(Layout::isOfPaper, "print-scaling"), QByteArray("none"));
    QCOMPARE(valueOf(Layout::isOfPaper, "page-left"), QByteArray());
    QCOMPARE(valueOf(Layout::isOfPaper, "media"), QByteArray("A4"));
}

QTEST_MAIN(TestPagePrinting)
#include "tst_PagePrinting.moc"
