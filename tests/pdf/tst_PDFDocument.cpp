#include "pdf/PDFDocument.h"
#include "pdf/PDFDocumentText.h"
#include "protocol/EngineLimits.h"

#include "support/LostPages.h"
#include "support/PageContents.h"
#include "support/PdfBuilder.h"

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
    void givesTheText();
    void givesQuadsInPageSpace();
    void givesTheLookOfTheText();
    void findsLinksAndOutline();
    void outlivesItsEngine();
    void servesOthersWhenAStallingPageIsCancelled();
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

void TestPDFDocument::tellsTheLaterVersion_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("catalog");
    QTest::addColumn<QString>("expected");
    const auto row
        = [](const char* name, const char* header, const char* catalog, const char* expected) {
              QTest::newRow(name) << QByteArray(header) << QByteArray(catalog)
                                  << QString::fromLatin1(expected);
          };
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
    QFETCH(const QByteArray, header);
    QFETCH(const QByteArray, catalog);
    PdfBuilder builder;
    builder.setVersion(header.toStdString()).setCatalogEntries(catalog.toStdString()).addPage();
    // Some bytes of another program may stand in front of it all.
    for (const std::string& file : {builder.bytes(), "HTTP/1.1 200\r\n" + builder.bytes()}) {
        OpenedDocument document(file);
        const DocumentFacts& facts = document->facts();
        QTEST(QStringLiteral("%1.%2").arg(facts.majorVersion).arg(facts.minorVersion), "expected");
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

void TestPDFDocument::tellsWhichEncryptionItCannotUndo_data()
{
    QTest::addColumn<QByteArray>("dictionary");
    QTest::addColumn<QString>("says");
    const auto row = [](const char* name, const char* dictionary, const QString& says) {
        QTest::newRow(name) << QByteArray(dictionary) << says;
    };
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
    QFETCH(const QByteArray, dictionary);
    QFETCH(const QString, says);
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
        const QString path = QStringLiteral(TARNWICK_TEST_DATA) + QLatin1String(file);
        OpenedDocument document(*FileBytes::read(path));
        QCOMPARE(document->state(), PDFDocument::State::isLocked);
        QSignalSpy locked(document.get(), &PDFDocument::locked);
        document->unlock(QStringLiteral("secret"));
        QTRY_COMPARE(locked.size(), 1);
        QCOMPARE(locked.first().first().toBool(), true);
        document->unlock(QStringLiteral("geheim"));
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
    QCOMPARE(size("/MediaBox [ 0 0 0 0 ]"), letter);
    QCOMPARE(size("/MediaBox [ /A /B (c) null ]"), letter);
    QCOMPARE(size("/MediaBox [ 0 ]"), letter);
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

void TestPDFDocument::givesTheText()
{
    PdfBuilder builder;
    builder.addPage("one\ntwo").addPage().addPage("three");
    OpenedDocument document(builder.bytes());
    PDFTextRequest* const request
        = document->requestText(0, 2, PDFTextDetail::isPlain, document.get());
    QSignalSpy ready(request, &PDFTextRequest::pageReady);
    QSignalSpy progressed(request, &PDFRequest::progressed);
    QVERIFY(waitFor(request));
    QStringList pages;
    for (const QList<QVariant>& page : std::as_const(ready))
        pages.append(page.at(1).value<PDFPageText>().string);
    QCOMPARE(pages.join(u'|'), QStringLiteral("one\ntwo\n||three\n"));
    QCOMPARE(progressed.last(), QList<QVariant>({3, 3}));
}

void TestPDFDocument::givesQuadsInPageSpace()
{
    OpenedDocument document(PdfBuilder().addPage("ab", "/MediaBox [ 0 100 612 792 ]").bytes());
    const auto text = PageContents::texts(document.get(), PDFTextDetail::isWithQuads).value(0);
    QVERIFY(!text.string.isEmpty());
    QCOMPARE(text.quads.size(), text.string.size());
    const QPolygonF letter = text.quads.at(0);
    QCOMPARE(letter.size(), 4);
    QVERIFY2(letter.boundingRect().contains(QPointF(74, 70)), "the baseline is 72 below the top");
    QVERIFY(letter.at(0).x() < letter.at(1).x() && letter.at(0).y() < letter.at(3).y());
    QVERIFY(text.quads.at(1).at(0).x() > letter.at(0).x());
    QVERIFY(text.quads.at(text.string.indexOf(u'\n')).isEmpty());
}

void TestPDFDocument::givesTheLookOfTheText()
{
    PdfBuilder builder;
    const int bold
        = builder.addObject("<< /Type /Font /Subtype /Type1 /BaseFont /Times-BoldItalic >>");
    builder.addDrawing("BT /F1 12 Tf 72 700 Td (plain) Tj 1 0 0 rg /F2 20 Tf (red) Tj ET",
        "/Resources << /Font << /F1 3 0 R /F2 " + std::to_string(bold) + " 0 R >> >>");
    OpenedDocument document(builder.bytes());
    const auto text = PageContents::texts(document.get(), PDFTextDetail::isWithAttributes).value(0);
    QCOMPARE(text.runs.size(), 2);
    const PDFTextRun& plain = text.runs.at(0);
    QCOMPARE(text.string.mid(plain.start, plain.length), QStringLiteral("plain"));
    QVERIFY(plain.family == u"Helvetica" && !plain.isBold && !plain.isItalic);
    QCOMPARE(plain.sizeInPoints, 12.0);
    const PDFTextRun& red = text.runs.at(1);
    QCOMPARE(text.string.mid(red.start, red.length), QStringLiteral("red\n"));
    QVERIFY(red.family == u"Times" && red.isBold && red.isItalic);
    QCOMPARE(red.colour, QColor(Qt::red));
}

void TestPDFDocument::findsLinksAndOutline()
{
    PdfBuilder builder;
    const int first = builder.nextNumber() + 1;
    builder.addPage("one",
        "/Annots [ << /Type /Annot /Subtype /Link /Rect [ 10 700 60 720 ] /Dest [ "
            + std::to_string(first + 2)
            + " 0 R /XYZ 100 500 0 ] >> << /Type /Annot /Subtype /Link"
              " /Rect [ 0 0 9 9 ] /A << /S /URI /URI (https://example.org/a) >> >> ]");
    builder.addPage("two");
    const int entry = builder.nextNumber() + 1;
    const std::string outline = std::to_string(entry - 1) + " 0 R";
    const std::string part = std::to_string(entry + 1) + " 0 R";
    builder.addObject("<< /First " + std::to_string(entry) + " 0 R /Count 1 >>");
    builder.addObject("<< /Title (Top) /Parent " + outline + " /First " + part + " /Last " + part
        + " /Count 1 >>");
    builder.addObject("<< /Title <feff00e9> /Parent " + std::to_string(entry) + " 0 R /Dest [ "
        + std::to_string(first + 2) + " 0 R /Fit ] >>");
    builder.setCatalogEntries("/Outlines " + outline);
    OpenedDocument document(builder.bytes());
    const PDFLinksRequest* const links = document->requestLinks(0, document.get());
    const PDFOutlineRequest* const entries = document->requestOutline(document.get());
    QVERIFY(waitFor(links) && waitFor(entries));
    QCOMPARE(links->links().size(), 2);
    QCOMPARE(links->links().at(0).area, QRectF(10, 72, 50, 20));
    QCOMPARE(links->links().at(0).page, 1);
    QCOMPARE(links->links().at(0).point, QPointF(100, 292));
    QCOMPARE(links->links().at(1).url, QUrl(QStringLiteral("https://example.org/a")));
    const QList<PDFOutlineEntry>& found = entries->outline().entries;
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(0).title, QStringLiteral("Top"));
    QCOMPARE(found.at(1).title, QStringLiteral("\u00e9"));
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

void TestPDFDocument::servesOthersWhenAStallingPageIsCancelled()
{
    OpenedDocument document(stallingFile());
    QSignalSpy measured(document.get(), &PDFDocument::pagesMeasured);
    QTRY_COMPARE(measured.size(), 1); // so that the engine has nothing else to do
    PDFTileRequest* const stalling = requestWholePage(document.get(), 1);
    QSignalSpy finished(stalling, &PDFRequest::finished);
    const PDFTileRequest* const quick = requestWholePage(document.get(), 0);
    stalling->cancel();
    QVERIFY(waitFor(quick));
    QCOMPARE(quick->failure(), PDFFailure::isNone);
    QCOMPARE(stalling->failure(), PDFFailure::isCancelled);
    QCOMPARE(finished.size(), 0);
}

void TestPDFDocument::saysWhatIsMissingOfAPage_data()
{
    QTest::addColumn<std::string>("file");
    QTest::addColumn<PDFLoss>("loss");
    QTest::addColumn<qsizetype>("length");
    const auto row = [](const char* name, PdfBuilder& builder, PDFLoss loss, qsizetype length) {
        QTest::newRow(name) << builder.bytes() << loss << length;
    };
    PdfBuilder whole;
    row("nothing", whole.addPage("abc"), PDFLoss::isNone, 3);
    PdfBuilder empty;
    row("nothing of an empty page", empty.addPage(), PDFLoss::isNone, 0);
    PdfBuilder unreadable;
    row("its unreadable content", LostPages::addUnreadable(unreadable), PDFLoss::isDamaged, 0);
    PdfBuilder noStream;
    const int other = noStream.addObject("<< >>");
    noStream.addPage({}, "/Contents [ " + std::to_string(other) + " 0 R ]");
    row("content that is no stream", noStream, PDFLoss::isDamaged, 0);
    PdfBuilder none;
    row("nothing without content", none.addPage({}, "/Contents [ 99 0 R ]"), PDFLoss::isNone, 0);
    PdfBuilder damaged;
    row("what follows damage", LostPages::addDamaged(damaged, "abc"), PDFLoss::isDamagedInPart, 3);
    PdfBuilder tooLong;
    row("its end", LostPages::addTooLong(tooLong), PDFLoss::isCut, maximumPageCharacters);
#ifndef TARNWICK_SANITIZED
    PdfBuilder huge;
    row("what takes too much memory", LostPages::addHuge(huge), PDFLoss::isOutOfMemory, 0);
#endif
}

void TestPDFDocument::saysWhatIsMissingOfAPage()
{
    QFETCH(std::string, file);
    QFETCH(qsizetype, length);
    OpenedDocument document(file);
    document->setPageTimeLimit(300'000); // a busy machine takes its time for the longest
    const PDFPageText text = PageContents::texts(document.get(), PDFTextDetail::isPlain).value(0);
    QTEST(text.loss, "loss");
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
