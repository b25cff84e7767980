#include "pdf/PDFDocument.h"
#include "pdf/PDFDocumentText.h"
#include "protocol/EngineLimits.h"

#include "support/LostPages.h"
#include "support/PageContents.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QSignalSpy>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

const auto waitFor = OpenedDocument::waitFor;

/// A page that no engine draws to its end: twenty forms, each of which draws the next ten times.
std::string stallingFile()
{
    PdfBuilder builder;
    builder.addPage("quick");
    int next = builder.addStream("0 0 1 1 re f", "/Type /XObject /Subtype /Form /BBox [ 0 0 9 9 ]");
    std::string tenTimes;
    for (int time = 0; time < 10; ++time)
        tenTimes += "/Next Do ";
    for (int depth = 0; depth < 20; ++depth)
        next = builder.addStream(tenTimes,
            "/Type /XObject /Subtype /Form /BBox [ 0 0 9 9 ] /Resources << /XObject << /Next "
                + std::to_string(next) + " 0 R >> >>");
    builder.addDrawing(
        "/Next Do", "/Resources << /XObject << /Next " + std::to_string(next) + " 0 R >> >>");
    return builder.bytes();
}

PDFTileRequest* requestWholePage(PDFDocument* document, int page)
{
    return document->requestTile(page, 1, 0, QRect(0, 0, 612, 792), document);
}

/// Whether a request ends, and in this way.
bool endsWith(const PDFRequest* request, PDFFailure failure)
{
    return waitFor(request) && request->failure() == failure;
}

} // namespace

class TestPDFDocument : public QObject
{
    Q_OBJECT

private slots:
    void opens();
    void tellsTheLaterVersion_data();
    void tellsTheLaterVersion();
    void refuses();
    void tellsWhichEncryptionItCannotUndo_data();
    void tellsWhichEncryptionItCannotUndo();
    void asksForThePassword();
    void measuresPages();
    void labelsPages();
    void opensAHundredThousandPages();
    void drawsTiles();
    void findsLinksAndOutline();
    void outlivesItsEngine();
    void saysWhatIsMissingOfAPage_data();
    void saysWhatIsMissingOfAPage();
    void keepsTheReasonWhyAPageWasLost();
    void readsOnBehindManyLostPages();
    void mayBeDestroyedAtWork();
};

void TestPDFDocument::opens()
{
    PdfBuilder builder;
    builder.setVersion("1.4").setInfo("<< /Title (T) /Author (A) >>");
    builder.addPage("one", "/MediaBox [ 0 0 300 500 ] /Rotate 90").addPage("two");
    OpenedDocument document(builder.bytes());
    QCOMPARE(document->state(), PDFDocument::State::isOpen);
    QCOMPARE(document->pageCount(), 2);
    QCOMPARE(document->facts().majorVersion, 1);
    QCOMPARE(document->facts().minorVersion, 4);
    QCOMPARE(document->facts().infoEntryCount, std::optional<int>(2));
    QCOMPARE(document->facts().catalogEntryCount, std::optional<int>(2));
    QCOMPARE(document->pageSize(0), QSizeF(500, 300));
    QTRY_COMPARE(document->pageSize(1), QSizeF(612, 792));
}

using TellsTheLaterVersion = Rows<QByteArray, QByteArray, QString>;

void TestPDFDocument::tellsTheLaterVersion_data()
{
    const TellsTheLaterVersion row;
    row("header alone", "1.4", "", "1.4");
    row("catalog is later", "1.4", "/Version /1.7", "1.7");
    row("header is later", "1.7", "/Version /1.4", "1.7");
    row("2.0 is later than 1.7", "1.7", "/Version /2.0", "2.0");
    row("ten comes after nine", "1.9", "/Version /1.10", "1.10");
    row("a number is no name", "1.3", "/Version 1.4", "1.3");
    row("nor is a text", "1.3", "/Version (1.4)", "1.3");
    row("garbage in the catalog", "1.3", "/Version /1.4beta", "1.3");
    row("garbage in the header", "x.y", "/Version /1.4", "1.4");
    row("bytes behind the header's version", "1.4%\xe2\xe3", "", "1.4");
    row("too many digits", "1.444", "/Version /999.1", "0.0");
}

void TestPDFDocument::tellsTheLaterVersion()
{
    const auto [header, catalog, expected] = TellsTheLaterVersion::fetch();
    PdfBuilder builder;
    builder.setVersion(header.toStdString()).setCatalogEntries(catalog.toStdString()).addPage();
    // Some bytes of another program may stand in front of it all.
    for (const std::string& file : {builder.bytes(), "HTTP/1.1 200\r\n" + builder.bytes()}) {
        OpenedDocument document(file);
        const DocumentFacts& facts = document->facts();
        QCOMPARE(u"%1.%2"_s.arg(facts.majorVersion).arg(facts.minorVersion), expected);
    }
}

void TestPDFDocument::refuses()
{
    const QByteArray picture = QByteArray::fromBase64(
        "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAAAAAA6fptVAAAACklEQVR4nGNgAAAAAgABSK+"
        "kcQAAAABJRU5ErkJggg==");
    for (const QByteArray& file : {QByteArray(), picture, QByteArray(100'000, '\0'),
             QByteArray("Dear reader,\nthis is no PDF.\n"),
             QByteArray("%PDF-1.4\n1 0 obj\n<< >>\nendobj\n")}) {
        OpenedDocument document(file.toStdString());
        QCOMPARE(document->state(), PDFDocument::State::isRefused);
        QVERIFY(!document->refusalReason().isEmpty());
    }
}

using TellsWhichEncryptionItCannotUndo = Rows<QByteArray, QString>;

void TestPDFDocument::tellsWhichEncryptionItCannotUndo_data()
{
    const TellsWhichEncryptionItCannotUndo row;
    row("for certificates",
        "<< /Filter /Adobe.PubSec /SubFilter /adbe.pkcs7.s4 /V 1 /Recipients [ <3000> ] >>",
        u"certificates"_s);
    row("by another handler", "<< /Filter /Locks#20Inc /V 1 /R 2 >>", u"\u201cLocks Inc\u201d"_s);
    row("by a handler without a name", "<< /V 1 /R 2 >>", u"which security handler"_s);
    row("by an unknown version", "<< /Filter /Standard /V 9 /R 8 >>", u"(version 9, revision 8)"_s);
    row("with parts missing", "<< /Filter /Standard /V 2 /R 3 >>", u"needed to decrypt"_s);
    row("no dictionary at all", "(secret)", {});
}

void TestPDFDocument::tellsWhichEncryptionItCannotUndo()
{
    const auto [dictionary, says] = TellsWhichEncryptionItCannotUndo::fetch();
    for (const PdfBuilder::Xref kind : {PdfBuilder::Xref::isTable, PdfBuilder::Xref::isStream}) {
        PdfBuilder builder;
        builder.setXref(kind).addPage("secret");
        std::string file = builder.bytes();
        const std::string root = "/Root 1 0 R";
        file.insert(file.rfind(root) + root.size(), " /Encrypt " + dictionary.toStdString());
        OpenedDocument document(file);
        if (says.isEmpty()) {
            QCOMPARE(document->state(), PDFDocument::State::isOpen);
            continue;
        }
        QCOMPARE(document->state(), PDFDocument::State::isRefused);
        QVERIFY2(document->refusalReason().contains(says), qPrintable(document->refusalReason()));
    }
}

void TestPDFDocument::asksForThePassword()
{
    for (const char* file : {"/locked-rc4-40.pdf", "/locked-aes-256.pdf"}) {
        const QString path = QString::fromLatin1(TARNWICK_TEST_DATA) + QLatin1String(file);
        OpenedDocument document(*FileBytes::read(path));
        QCOMPARE(document->state(), PDFDocument::State::isLocked);
        QSignalSpy locked(document.get(), &PDFDocument::locked);
        document->unlock(u"secret"_s);
        QTRY_COMPARE(locked.size(), 1);
        QCOMPARE(locked.first().first().toBool(), true);
        document->unlock(u"geheim"_s);
        QTRY_COMPARE(document->state(), PDFDocument::State::isOpen);
        QCOMPARE(document->pageCount(), 2);
        const QStringList texts = PageContents::strings(document.get());
        QVERIFY(texts.value(0).startsWith(u"Hello (world)\n"));
    }
}

void TestPDFDocument::measuresPages()
{
    const auto size = [](const char* entries) {
        OpenedDocument document(PdfBuilder().addPage("text", entries).bytes());
        const bool isDrawn = endsWith(requestWholePage(document.get(), 0), PDFFailure::isNone);
        return isDrawn ? document->pageSize(0) : QSizeF();
    };
    const QSizeF letter(612, 792);
    QCOMPARE(size("/MediaBox [ 0 0 600 800 ] /CropBox [ 100 100 300 400 ]"), QSizeF(200, 300));
    QCOMPARE(size("/MediaBox [ 0 0 600 800 ] /CropBox [ -9 0 900 500 ]"), QSizeF(600, 500));
    QCOMPARE(size("/MediaBox [ 0 0 600 800 ] /Rotate -90"), QSizeF(800, 600));
    QCOMPARE(size("/MediaBox [ 0 0 100 200 ] /UserUnit 2"), QSizeF(200, 400));
    QCOMPARE(size("/MediaBox [ 600 800 0 0 ]"), QSizeF(600, 800));
    QCOMPARE(size("/MediaBox [ /A /B (c) null ]"), letter);
    QCOMPARE(size("/MediaBox [ 0 0 1000000 1000000 ]"), QSizeF(14400, 14400));
    QCOMPARE(size("/MediaBox [ 0 0 0.001 0.001 ]"), QSizeF(1, 1));
}

void TestPDFDocument::labelsPages()
{
    const auto labels = [](const std::string& numbers) {
        PdfBuilder builder;
        builder.addPage().addPage().addPage().addPage();
        builder.setCatalogEntries("/PageLabels << /Nums [ " + numbers + " ] >>");
        OpenedDocument document(builder.bytes());
        QSignalSpy measured(document.get(), &PDFDocument::pagesMeasured);
        measured.wait();
        QStringList all;
        for (int page = 0; page < 4; ++page)
            all << document->pageLabel(page);
        return all.join(u'|');
    };
    QCOMPARE(labels(""), u"1|2|3|4"_s);
    QCOMPARE(labels("0 << /S /r >> 2 << /S /D >>"), u"i|ii|1|2"_s);
    QCOMPARE(
        labels("0 << /S /R /St 1994 >> 2 << /S /D /P (A-) /St 8 >>"), u"MCMXCIV|MCMXCV|A-8|A-9"_s);
    QCOMPARE(labels("0 << /S /a /St 26 >> 2 << /S /A /St 53 >>"), u"z|aa|AAA|BBB"_s);
    QCOMPARE(labels("0 << /P (cover) >> 1 << /S /D >>"), u"cover|1|2|3"_s);
    QCOMPARE(labels("2 << /S /r >>"), u"1|2|i|ii"_s);
}

void TestPDFDocument::opensAHundredThousandPages()
{
    constexpr int count = 100'000;
    PdfBuilder builder;
    builder.addPage("first");
    for (int page = 1; page < count; ++page)
        builder.addSharedPage(page % 2 == 0 ? "" : "/MediaBox [ 0 0 200 100 ]");
    OpenedDocument document(builder.bytes());
    QCOMPARE(document->pageCount(), count);
    QVERIFY(endsWith(requestWholePage(document.get(), count - 1), PDFFailure::isNone));
    QTRY_COMPARE_WITH_TIMEOUT(document->pageSize(count - 1), QSizeF(200, 100), 30'000);
}

void TestPDFDocument::drawsTiles()
{
    // The page is 100 x 200 with a red square of 10 in its upper left corner. At scale 2, this is
    // where the view shows it after no, one, two and three quarter turns.
    const QPoint corners[] = {{0, 0}, {380, 0}, {180, 380}, {0, 180}};
    OpenedDocument document(
        PdfBuilder().addDrawing("1 0 0 rg 0 190 10 10 re f", "/MediaBox [ 0 0 100 200 ]").bytes());
    for (int rotation = 0; rotation < 4; ++rotation) {
        const QRect area(corners[rotation] - QPoint(3, 3), QSize(30, 30));
        const QImage tile = PageContents::image(document.get(), 0, 2, area, rotation);
        QCOMPARE(tile.size(), area.size());
        QCOMPARE(tile.pixelColor(4, 4), QColor(Qt::red));
        QCOMPARE(tile.pixelColor(21, 21), QColor(Qt::red));
        QCOMPARE(tile.pixelColor(1, 1), QColor(Qt::white));
        QCOMPARE(tile.pixelColor(25, 25), QColor(Qt::white));
    }
}

void TestPDFDocument::findsLinksAndOutline()
{
    PdfBuilder builder;
    builder.setCatalogEntries("/Outlines 8 0 R");
    builder.addPage("one",
        "/Annots [ << /Type /Annot /Subtype /Link /Rect [ 10 700 60 720 ] /Dest [ 7 0 R /XYZ 100"
        " 500 0 ] >> << /Type /Annot /Subtype /Link /Rect [ 0 0 9 9 ]"
        " /A << /S /URI /URI (https://example.org/a) >> >> ]");
    builder.addPage("two"); // object 7
    builder.addObject("<< /First 9 0 R /Count 1 >>");
    builder.addObject("<< /Title (Top) /Parent 8 0 R /First 10 0 R /Last 10 0 R /Count 1 >>");
    builder.addObject("<< /Title <feff00e9> /Parent 9 0 R /Dest [ 7 0 R /Fit ] >>");
    OpenedDocument document(builder.bytes());
    const PDFLinksRequest* const links = document->requestLinks(0, document.get());
    const PDFOutlineRequest* const entries = document->requestOutline(document.get());
    QVERIFY(waitFor(links) && waitFor(entries));
    QCOMPARE(links->links().size(), 2);
    QCOMPARE(links->links().at(0).area, QRectF(10, 72, 50, 20));
    QCOMPARE(links->links().at(0).page, 1);
    QCOMPARE(links->links().at(0).point, QPointF(100, 292));
    QCOMPARE(links->links().at(1).url, QUrl(u"https://example.org/a"_s));
    const QList<PDFOutlineEntry>& found = entries->outline().entries;
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(0).title, u"Top"_s);
    QCOMPARE(found.at(1).title, u"\u00e9"_s);
    QCOMPARE(found.at(1).depth, 1);
    QCOMPARE(found.at(1).page, 1);
}

/// The page at which an engine has ended is not drawn again; everything else is still served.
void TestPDFDocument::outlivesItsEngine()
{
    OpenedDocument document(PdfBuilder().addPage("one").addPage("two").bytes());
    QSignalSpy measured(document.get(), &PDFDocument::pagesMeasured);
    QTRY_COMPARE(measured.size(), 1);
    const auto engine = static_cast<pid_t>(document->engineProcessIds().constFirst());
    ::kill(engine, SIGSTOP); // so that the request is still being worked on when the engine ends
    const PDFTileRequest* const lost = requestWholePage(document.get(), 0);
    ::kill(engine, SIGKILL);
    QVERIFY(endsWith(lost, PDFFailure::isEngineDead));
    const PDFTileRequest* const again = requestWholePage(document.get(), 0);
    QVERIFY2(!again->isFinished(), "never from inside the call");
    QVERIFY(endsWith(again, PDFFailure::isEngineDead));
    QVERIFY(endsWith(requestWholePage(document.get(), 1), PDFFailure::isNone));
    QVERIFY(endsWith(document->requestLinks(0, document.get()), PDFFailure::isNone));
}

using SaysWhatIsMissingOfAPage = Rows<std::string, PDFLoss, qsizetype>;

void TestPDFDocument::saysWhatIsMissingOfAPage_data()
{
    const SaysWhatIsMissingOfAPage row;
    row("nothing", PdfBuilder().addPage("abc").bytes(), PDFLoss::isNone, 3);
    row("nothing of an empty page", PdfBuilder().addPage().bytes(), PDFLoss::isNone, 0);
    PdfBuilder unreadable;
    row("its unreadable content", LostPages::addUnreadable(unreadable).bytes(), PDFLoss::isDamaged,
        0);
    PdfBuilder noStream;
    const int other = noStream.addObject("<< >>");
    noStream.addPage({}, "/Contents [ " + std::to_string(other) + " 0 R ]");
    row("content that is no stream", noStream.bytes(), PDFLoss::isDamaged, 0);
    row("nothing without content", PdfBuilder().addPage({}, "/Contents [ 99 0 R ]").bytes(),
        PDFLoss::isNone, 0);
    PdfBuilder damaged;
    row("what follows damage", LostPages::addDamaged(damaged, "abc").bytes(),
        PDFLoss::isDamagedInPart, 3);
    PdfBuilder tooLong;
    row("its end", LostPages::addTooLong(tooLong).bytes(), PDFLoss::isCut, maximumPageCharacters);
#ifndef TARNWICK_SANITIZED
    PdfBuilder huge;
    row("what takes too much memory", LostPages::addHuge(huge).bytes(), PDFLoss::isOutOfMemory, 0);
#endif
}

void TestPDFDocument::saysWhatIsMissingOfAPage()
{
    const auto [file, loss, length] = SaysWhatIsMissingOfAPage::fetch();
    OpenedDocument document(file);
    document->setPageTimeLimit(300'000); // a busy machine takes its time for the longest
    const PDFPageText text = PageContents::texts(document.get(), PDFTextDetail::isPlain).value(0);
    QCOMPARE(text.loss, loss);
    QCOMPARE(text.string.trimmed().size(), length);
}

void TestPDFDocument::keepsTheReasonWhyAPageWasLost()
{
    OpenedDocument document(stallingFile());
    document->setPageTimeLimit(1);
    for (int time = 0; time < 2; ++time) {
        PDFTextRequest* const request
            = document->requestText(1, 1, PDFTextDetail::isPlain, document.get());
        PDFLoss loss = PDFLoss::isNone;
        connect(request, &PDFTextRequest::pageReady, request,
            [&loss](int, const PDFPageText& text) { loss = text.loss; });
        QVERIFY(endsWith(request, PDFFailure::isNone));
        QCOMPARE(loss, PDFLoss::isTimedOut);
    }
    for (int time = 0; time < 2; ++time)
        QVERIFY(endsWith(requestWholePage(document.get(), 1), PDFFailure::isTimedOut));
}

/// Pages that end the engine at once cost little: those behind them are read.
void TestPDFDocument::readsOnBehindManyLostPages()
{
#ifdef TARNWICK_SANITIZED
    QSKIP("its engine has no memory limit");
#endif
    PdfBuilder builder;
    for (int page = 0; page < 12; ++page)
        LostPages::addHuge(builder);
    OpenedDocument document(builder.addPage("last").bytes());
    PDFDocumentText text(document.get());
    text.fetch();
    QTRY_VERIFY_WITH_TIMEOUT(!text.isFetching(), 60'000);
    QVERIFY(text.isWhole());
    QCOMPARE(text.text().string().trimmed(), u"last"_s);
    QCOMPARE(text.text().losses.ranges().size(), 1);
    QCOMPARE(
        text.text().losses.ranges().first(), (PDFLosses::Range{0, 11, PDFLoss::isOutOfMemory}));
    QCOMPARE(text.text().gaps().size(), 1);
}

/// A window may close from within the very signal that tells it something.
void TestPDFDocument::mayBeDestroyedAtWork()
{
    auto document = std::make_unique<PDFDocument>(*FileBytes::copy(stallingFile()));
    QSignalSpy opened(document.get(), &PDFDocument::opened);
    QTRY_COMPARE_WITH_TIMEOUT(opened.size(), 1, 60'000);
    QObject window;
    const PDFTileRequest* const tile = document->requestTile(0, 1, 0, QRect(0, 0, 10, 10), &window);
    document->requestTile(1, 1, 0, QRect(0, 0, 10, 10), &window);
    connect(tile, &PDFRequest::finished, &window, [&document] { document.reset(); });
    QTRY_VERIFY_WITH_TIMEOUT(!document, 60'000);
}

QTEST_GUILESS_MAIN(TestPDFDocument)
#include "tst_PDFDocument.moc"
