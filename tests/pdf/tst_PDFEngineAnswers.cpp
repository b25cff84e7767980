#include "PDFEngineAnswers.h"
#include "PDFFontName.h"
#include "protocol/EngineMessages.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

using namespace tarnwick;

constexpr float infinite = std::numeric_limits<float>::infinity();

class TestPDFEngineAnswers : public QObject
{
    Q_OBJECT

private slots:
    void holdsFactsWithinReason();
    void refusesTextThatContradictsItself();
    void givesBothUnitsOfAPairOneQuad();
    void leadsNowhereOutsideTheDocument();
    void takesNoImageOfAnotherSize();
    void takesLossesInOrder();
    void survivesAnyBytes();
    void readsFontNames();
};

void TestPDFEngineAnswers::holdsFactsWithinReason()
{
    const auto answer
        = readOpenedAnswer(packed(OpenedAnswer{3, -1, 2'000'000'000, -1, 7, infinite, 1e9f}));
    QVERIFY(answer);
    QCOMPARE(answer->facts.majorVersion, 0);
    QCOMPARE(answer->facts.minorVersion, 99);
    QVERIFY(!answer->facts.infoEntryCount);
    QCOMPARE(answer->firstPageSize, QSizeF(1, 14400));
}

void TestPDFEngineAnswers::refusesTextThatContradictsItself()
{
    const auto read = [](const QList<quint32>& runLengths) {
        TextResult result;
        result.loss = EngineLoss::isCut;
        result.characters = std::vector<char32_t>{0x61, 0xd800};
        for (const quint32 length : runLengths)
            result.runs.push_back(
                {length, -infinite, false, false, 0xff000000u, "ABCDEF+Arial-BoldMT"});
        return readTextAnswer(packed(result), PDFTextDetail::isWithAttributes);
    };
    const auto text = read({1, 1});
    QVERIFY(text);
    QCOMPARE(text->string, QStringLiteral("a\ufffd"));
    QCOMPARE(text->loss, PDFLoss::isCut);
    QVERIFY(text->runs.first().sizeInPoints > 0 && text->runs.first().isBold);
    QCOMPARE(text->runs.first().colour, QColor(Qt::black));
    QVERIFY2(!read({1}), "runs that end early");
    QVERIFY2(!read({1, 0xfffffff0u}), "a run beyond the end");
    QVERIFY2(!read({2, 0}), "a run of nothing");
    TextResult unplaced;
    unplaced.characters = std::vector<char32_t>(2, U'a');
    QVERIFY2(!readTextAnswer(packed(unplaced), PDFTextDetail::isWithQuads), "no quads");
    unplaced.quads = std::vector<EngineQuad>(2);
    QVERIFY2(!readTextAnswer(packed(unplaced), PDFTextDetail::isPlain), "quads unasked for");
}

void TestPDFEngineAnswers::givesBothUnitsOfAPairOneQuad()
{
    TextResult result;
    result.characters = std::vector<char32_t>{0x1f600, '\n'};
    result.quads = std::vector<EngineQuad>(2, {{{{0, 1}, {2, 3}, {4, 5}, {6, 7}}}});
    const auto text = readTextAnswer(packed(result), PDFTextDetail::isWithQuads);
    QVERIFY(text);
    QCOMPARE(text->quads.size(), 3);
    QCOMPARE(text->quads.at(0), text->quads.at(1));
    QCOMPARE(text->quads.at(0).at(3), QPointF(6, 7));
    QVERIFY(text->quads.at(2).isEmpty());
}

void TestPDFEngineAnswers::leadsNowhereOutsideTheDocument()
{
    OutlineResult result;
    result.loss = EngineLoss::isCut;
    for (const int page : {4, 5}) // at depths beyond what an outline can have
        result.entries.push_back({page * 100, "title", {page, infinite, 5, {}}});
    const auto outline = readOutlineAnswer(packed(result), 5);
    QVERIFY(outline && outline->loss == PDFLoss::isCut);
    QCOMPARE(outline->entries.at(0).page, 4);
    QCOMPARE(outline->entries.at(0).point, QPointF(0, 5));
    QCOMPARE(outline->entries.at(0).depth, 0);
    QCOMPARE(outline->entries.at(1).page, -1);
    QCOMPARE(outline->entries.at(1).depth, 1);
}

void TestPDFEngineAnswers::takesNoImageOfAnotherSize()
{
    const TileResult tile = {std::vector<std::uint32_t>(6, 0xff7f7f7fu)};
    const auto image = [payload = QByteArray::fromStdString(packed(tile))](
                           const QSize& size) { return readTileAnswer(payload, size); };
    QCOMPARE(image(QSize(2, 3))->pixel(1, 2), qRgb(0x7f, 0x7f, 0x7f));
    QVERIFY(!image(QSize(2, 2)));
    QVERIFY(!image(QSize(4096, 4096)));
}

void TestPDFEngineAnswers::takesLossesInOrder()
{
    const auto read = [](std::vector<EnginePageLoss> losses) {
        return readWrittenAnswer(packed(WrittenResult{9, 2, std::move(losses)}), 3);
    };
    constexpr EngineLoss damaged = EngineLoss::isDamaged;
    const auto written = read({{0, damaged}, {2, EngineLoss::isCut}});
    QVERIFY(written);
    QCOMPARE(written->losses.of(2), PDFLoss::isCut);
    QVERIFY2(!read({{2, damaged}, {0, damaged}}), "not in order");
    QVERIFY2(!read({{1, damaged}, {1, damaged}}), "one page twice");
    QVERIFY2(!read({{3, damaged}}), "a page that does not exist");
}

/// An engine that has been taken over may send anything; run with the sanitizers this looks for
/// reads beyond the end and for room made on a hostile count.
void TestPDFEngineAnswers::survivesAnyBytes()
{
    QRandomGenerator random(1);
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes(random.bounded(200u), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random.bounded(4) == 0 ? random.bounded(256) : 0);
        readOpenedAnswer(bytes);
        readMeasureAnswer(bytes, 10);
        readTextAnswer(bytes, PDFTextDetail::isWithQuads);
        readTextAnswer(bytes, PDFTextDetail::isWithAttributes);
        readLinksAnswer(bytes, 3);
        const auto outline = readOutlineAnswer(bytes, 3);
        QVERIFY(!outline || outline->entries.size() <= static_cast<qsizetype>(bytes.size()));
        const auto written = readWrittenAnswer(bytes, 3);
        QVERIFY(!written || written->losses.ranges().size() <= 3);
    }
}

void TestPDFEngineAnswers::readsFontNames()
{
    const auto read = [](const char* name) -> QString {
        const PDFFontName font = parseFontName(QString::fromLatin1(name));
        const QString style
            = QLatin1String(font.isBold ? "/b" : "/") + QLatin1String(font.isItalic ? "i" : "");
        return font.family + style;
    };
    QCOMPARE(read("Helvetica"), u"Helvetica/");
    QCOMPARE(read("ABCDEF+TimesNewRomanPS-BoldItalicMT"), u"Times New Roman/bi");
    QCOMPARE(read("TimesNewRomanPSMT"), u"Times New Roman/");
    QCOMPARE(read("Arial,Bold"), u"Arial/b");
    QCOMPARE(read("Courier-Oblique"), u"Courier/i");
    QCOMPARE(read("BCDEEE+Calibri-Light"), u"Calibri/");
    QCOMPARE(read("DejaVuSans-Bold"), u"DejaVu Sans/b");
    QCOMPARE(read("CMR10"), u"CMR10/");
    QCOMPARE(read("Noto Sans CJK"), u"Noto Sans CJK/");
    QCOMPARE(read("Foo-Bar"), u"Foo-Bar/");
    QCOMPARE(read("ABCDEF+"), u"ABCDEF+/");
    QCOMPARE(read(""), u"Times/");
}

QTEST_APPLESS_MAIN(TestPDFEngineAnswers)
#include "tst_PDFEngineAnswers.moc"
