#include "platform/PDFDocument.h"

#include "support/PdfBuilder.h"

#include <QSignalSpy>
#include <QTest>

#include <csignal>

namespace {

/// A document on bytes in memory, with its opening awaited.
class Opened
{
public:
    explicit Opened(const std::string& bytes)
        : theDocument(*FileBytes::copy(bytes))
    {
        const auto hasAnswer
            = [this] { return theDocument.state() != PDFDocument::State::isOpening; };
        if (!QTest::qWaitFor(hasAnswer, 30'000))
            qWarning("the engine does not answer");
    }
    PDFDocument* operator->() { return &theDocument; }
    PDFDocument& operator*() { return theDocument; }

private:
    PDFDocument theDocument;
};

bool waitFor(const PDFRequest* request)
{
    return QTest::qWaitFor([request] { return request->isFinished(); }, 60'000);
}

} // namespace

class TestPDFDocument : public QObject
{
    Q_OBJECT

private slots:
    void opens();
    void refuses_data();
    void refuses();
    void drawsATile();
    void givesTheText();
    void outlivesItsEngine();
};

void TestPDFDocument::opens()
{
    PdfBuilder builder;
    builder.setVersion("1.4").setInfo("<< /Title (T) /Author (A) >>");
    builder.addPage("one", "/MediaBox [ 0 0 300 500 ] /Rotate 90").addPage("two");
    Opened document(builder.bytes());
    QCOMPARE(document->state(), PDFDocument::State::isOpen);
    QCOMPARE(document->pageCount(), 2);
    QCOMPARE(document->facts().majorVersion, 1);
    QCOMPARE(document->facts().minorVersion, 4);
    QCOMPARE(document->facts().infoEntryCount, std::optional<int>(2));
    QCOMPARE(document->facts().catalogEntryCount, std::optional<int>(2));
    QCOMPARE(document->pageSize(0), QSizeF(500, 300));
    QTRY_COMPARE(document->pageSize(1), QSizeF(612, 792));
}

void TestPDFDocument::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("one byte") << QByteArray("%");
    QTest::newRow("text") << QByteArray("Dear reader,\nthis is no PDF.\n");
    QTest::newRow("objects without a catalog") << QByteArray("%PDF-1.4\n1 0 obj\n<< >>\nendobj\n");
}

void TestPDFDocument::refuses()
{
    QFETCH(QByteArray, file);
    Opened document(file.toStdString());
    QCOMPARE(document->state(), PDFDocument::State::isRefused);
    QVERIFY(!document->refusalReason().isEmpty());
}

void TestPDFDocument::drawsATile()
{
    Opened document(PdfBuilder().addDrawing("1 0 0 rg 0 692 100 100 re f").bytes());
    const PDFTileRequest* const tile
        = document->requestTile(0, 1, 0, QRect(90, 90, 20, 20), &*document);
    QVERIFY(waitFor(tile));
    QCOMPARE(tile->failure(), PDFFailure::isNone);
    QCOMPARE(tile->image().size(), QSize(20, 20));
    QCOMPARE(tile->image().pixelColor(5, 5), QColor(Qt::red));
    QCOMPARE(tile->image().pixelColor(15, 15), QColor(Qt::white));
}

void TestPDFDocument::givesTheText()
{
    Opened document(PdfBuilder().addPage("one\ntwo").addPage().addPage("three").bytes());
    QStringList pages;
    PDFTextRequest* const request
        = document->requestText(0, 2, PDFTextDetail::isWithQuads, &*document);
    connect(request, &PDFTextRequest::pageReady, this,
        [&pages](int, const PDFPageText& text) { pages.append(text.string); });
    QVERIFY(waitFor(request));
    QCOMPARE(pages,
        QStringList({ QStringLiteral("one\ntwo\n\n"), QString(), QStringLiteral("three\n\n") }));
}

void TestPDFDocument::outlivesItsEngine()
{
    Opened document(PdfBuilder().addPage("one").bytes());
    QSignalSpy measured(&*document, &PDFDocument::pagesMeasured);
    QTRY_COMPARE(measured.size(), 1);
    const auto engine = static_cast<pid_t>(document->engineProcessIds().constFirst());
    ::kill(engine, SIGSTOP); // so that the request is still being worked on when the engine ends
    const PDFTileRequest* const lost
        = document->requestTile(0, 1, 0, QRect(0, 0, 10, 10), &*document);
    ::kill(engine, SIGKILL);
    QVERIFY(waitFor(lost));
    QCOMPARE(lost->failure(), PDFFailure::isEngineDead);
    const PDFLinksRequest* const next = document->requestLinks(0, &*document);
    QVERIFY(waitFor(next));
    QCOMPARE(next->failure(), PDFFailure::isNone);
}

QTEST_GUILESS_MAIN(TestPDFDocument)
#include "tst_PDFDocument.moc"
