#include "CupsSubmission.h"
#include "NoticeLine.h"
#include "PagePrintJob.h"
#include "PagePrinting.h"
#include "dialogs/Alert.h"
#include "frame/DocumentWindow.h"
#include "pdf/PDFDocument.h"
#include "printing/PrintSettings.h"

#include "support/LostPages.h"
#include "support/PageContents.h"
#include "support/Panels.h"
#include "support/PdfBuilder.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QPrinter>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

const QByteArray former = "what had the name before";

PdfBuilder threePages()
{
    PdfBuilder builder;
    return builder.addPage("one").addPage("two").addPage("three");
}

/// A document that is printed into a file, which exists already.
class Fixture
{
public:
    explicit Fixture(const PdfBuilder& builder = threePages())
        : document(builder.bytes())
        , path(folder.filePath(u"printed.pdf"_s))
        , printer(PrintSettings::makePrinter())
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(former) != former.size())
            qWarning("no file to print into");
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(path);
        printer->setPageSize(QPageSize(QPageSize::A4));
        printer->setDocName(u"job"_s);
        window.show();
    }
    /// What the user is told at the end.
    QString notice() const
    {
        const QList<Notice> unread = window.noticeLine()->unread();
        return unread.size() == 1 ? unread.first().text : QString::number(unread.size());
    }
    /// What that is when all has been printed.
    QString success() const
    {
        return u"“job” has been printed into “printed.pdf” in “%1”."_s.arg(folder.path());
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
    DocumentWindow window{u"Test Window"_s};
    QStringList ends;
};

} // namespace

class TestPagePrinting : public QObject
{
    Q_OBJECT

private slots:
    void printsTheChosenPages();
    void paintsWhatTheEngineCannotWrite();
    void saysWhatThePaperLacks();
    void leavesNothingWhenCancelled();
    void closingItsWindowAsks();
    void endsUnaskedWhereNobodyIsThere();
    void saysWhyThereIsNoFile();
    void tellsTheQueueHowPagesLie();
};

void TestPagePrinting::printsTheChosenPages()
{
    const auto printed = [](const char* ranges, QPrinter::PageOrder order, int copies,
                             bool isCollated) -> QString {
        Fixture fixture;
        fixture.printer->setPrintRange(QPrinter::PageRange);
        fixture.printer->setPageRanges(QPageRanges::fromString(QString::fromLatin1(ranges)));
        fixture.printer->setPageOrder(order);
        fixture.printer->setCopyCount(copies);
        fixture.printer->setCollateCopies(isCollated);
        fixture.start();
        const bool hasEnded = QTest::qWaitFor([&fixture] { return !fixture.ends.isEmpty(); });
        if (!hasEnded || fixture.ends != QStringList{QString()} || fixture.names().size() != 1)
            return u"not printed into the file alone"_s;
        OpenedDocument paper(fixture.written().toStdString());
        const QSize size = paper->pageSize(0).toSize();
        if (fixture.notice() != fixture.success())
            return fixture.notice();
        return size == QSize(595, 842) ? PageContents::strings(paper.get()).join(u' ')
                                       : u"not A4"_s;
    };
    const auto forwards = QPrinter::FirstPageFirst;
    QCOMPARE(printed("", forwards, 1, true), u"one two three"_s);
    QCOMPARE(printed("1,3", forwards, 1, true), u"one three"_s);
    QCOMPARE(printed("2-3", QPrinter::LastPageFirst, 1, true), u"three two"_s);
    QCOMPARE(printed("1-2", forwards, 2, true), u"one two one two"_s);
    QCOMPARE(printed("1-2", forwards, 2, false), u"one one two two"_s);
}

void TestPagePrinting::paintsWhatTheEngineCannotWrite()
{
    PdfBuilder builder;
    builder.addPage("one").addDrawing("0 0 1 rg 0 0 612 792 re f");
    builder.addDrawing("0 1 0 rg 0 0 300 900 re f", "/MediaBox [ 0 0 300 900 ]");
    Fixture fixture(builder);
    fixture.printer->setPageSize(QPageSize(QPageSize::Letter));
    fixture.printer->setPrintRange(QPrinter::PageRange);
    fixture.printer->setPageRanges(QPageRanges::fromString(u"2-3"_s));
    fixture.start();
    fixture.loseEngine();
    QTRY_COMPARE_WITH_TIMEOUT(fixture.ends, QStringList{QString()}, 60'000);
    QCOMPARE(fixture.names(), QStringList{u"printed.pdf"_s});

    // 468 points wide, the high page is 1404 high: three sheets of 648.
    OpenedDocument paper(fixture.written().toStdString());
    QCOMPARE(paper->pageCount(), 4);
    QCOMPARE(paper->pageSize(0), QSizeF(612, 792));
    const auto colour = [&paper](int page, const QPoint& point) {
        const QRect whole(0, 0, 612, 792);
        return PageContents::image(paper.get(), page, 1, whole).pixelColor(point);
    };
    QCOMPARE(colour(0, {100, 100}), QColor(Qt::blue));
    QCOMPARE(colour(0, {70, 70}), QColor(Qt::white)); // the margin
    QCOMPARE(colour(0, {538, 300}), QColor(Qt::blue));
    QCOMPARE(colour(0, {300, 72 + 610}), QColor(Qt::white)); // 606 points of height, from the top
    QCOMPARE(colour(2, {300, 718}), QColor(Qt::green));
    QCOMPARE(colour(3, {300, 72 + 104}), QColor(Qt::green));
    QCOMPARE(colour(3, {300, 72 + 112}), QColor(Qt::white));
}

/// Written or painted, the paper lacks the same.
void TestPagePrinting::saysWhatThePaperLacks()
{
    for (const bool isPainting : {false, true}) {
        Fixture fixture(LostPages::secondOfThree());
        fixture.window.show();
        fixture.start();
        if (isPainting)
            fixture.loseEngine();
        QTRY_COMPARE_WITH_TIMEOUT(fixture.ends, QStringList{QString()}, 60'000);
        QCOMPARE(OpenedDocument(fixture.written().toStdString())->pageCount(), 3);
        QCOMPARE(fixture.window.noticeLine()->unread().value(0).kind, Notice::Kind::isIncomplete);
        QCOMPARE(fixture.notice(),
            u"Page 2 was printed empty: it is too damaged to be read. "_s + fixture.success());
    }
}

void TestPagePrinting::leavesNothingWhenCancelled()
{
    for (const bool isPainting : {false, true}) {
        Fixture fixture;
        const QPointer<PagePrinting> printing = fixture.start();
        if (isPainting) {
            fixture.loseEngine();
            QTRY_VERIFY(printing->findChild<PagePrintJob*>());
        }
        fixture.window.findChild<QProgressDialog*>()->findChild<QPushButton*>()->click();
        QTRY_VERIFY(!printing);
        QCOMPARE(fixture.written(), former);
        QCOMPARE(fixture.names(), QStringList{u"printed.pdf"_s});
        QVERIFY(fixture.ends.isEmpty());
    }
}

void TestPagePrinting::closingItsWindowAsks()
{
    for (const bool isKept : {true, false}) {
        Fixture fixture;
        fixture.window.setAttribute(Qt::WA_DeleteOnClose, false);
        DocumentWindow other(u"Another Window"_s);
        other.show();
        const QPointer<PagePrinting> printing = fixture.start();
        QVERIFY(!fixture.window.close() && !fixture.window.close());
        QCOMPARE(allShown<Alert>().size(), 1);
        Alert* const alert = shown<Alert>();
        QCOMPARE(alert->text(), u"“job” is being printed."_s);
        QCOMPARE(alert->defaultButton()->text(), u"&Keep Open"_s);
        for (QAbstractButton* button : alert->buttons()) {
            if (button->text() == (isKept ? u"&Keep Open"_s : u"&Cancel Printing"_s))
                button->click();
        }
        QTRY_VERIFY(!printing);
        QCOMPARE(fixture.window.isVisible(), isKept);
        QCOMPARE(fixture.ends.size(), isKept ? 1 : 0);
        QCOMPARE(fixture.written() == former, !isKept);
        const QList<Notice> told = other.noticeLine()->unread();
        QCOMPARE(told.size(), isKept ? 0 : 1);
        if (!isKept)
            QCOMPARE(
                told.first().text, u"“job” has not been printed: Its window has been closed."_s);
    }
}

void TestPagePrinting::endsUnaskedWhereNobodyIsThere()
{
    Fixture fixture;
    const QPointer<PagePrinting> printing = fixture.start();
    fixture.window.closeUnasked();
    QVERIFY(!printing && !shown<Alert>());
    QCOMPARE(fixture.written(), former);
}

void TestPagePrinting::saysWhyThereIsNoFile()
{
    const auto problem = [](const QString& name) {
        Fixture fixture;
        const auto bytes = FileBytes::read(fixture.path); // opens it
        fixture.printer->setOutputFileName(fixture.folder.filePath(name));
        fixture.start();
        const bool isKept = fixture.ends.size() == 1 && fixture.written() == former;
        return isKept ? fixture.notice() : u"not ended, or written"_s;
    };
    const QString start = u"“job” has not been printed: "_s;
    QCOMPARE(problem(u"missing/a.pdf"_s), start + u"No such file or directory.");
    const QString opened = problem(u"printed.pdf"_s);
    QVERIFY2(opened.startsWith(start) && opened.contains(u"is open"), qPrintable(opened));
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
