#include "PDFEngineAnswers.h"
#include "PDFFontName.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

using namespace tarnwick;

namespace {

constexpr float infinite = std::numeric_limits<float>::infinity();

void putTarget(PayloadWriter& payload, int page, const char* address)
{
    payload.put(page);
    payload.put(infinite);
    payload.put(5.0f);
    payload.putText(address);
}

} // namespace

class TestPDFEngineAnswers : public QObject
{
    Q_OBJECT

private slots:
    void holdsFactsWithinReason();
    void refusesTextThatContradictsItself();
    void givesBothUnitsOfAPairOneQuad();
    void leadsNowhereOutsideTheDocument();
    void takesNoImageOfAnotherSize();
    void refusesWhatExceedsALimit();
    void survivesAnyBytes();
    void readsFontNames();
};

void TestPDFEngineAnswers::holdsFactsWithinReason()
{
    PayloadWriter payload;
    for (const int number : {3, -1, 2'000'000'000, -1, 7})
        payload.put(number);
    payload.put(infinite);
    payload.put(1e9f);
    PayloadReader reader(payload.bytes());
    const auto answer = readOpenedAnswer(reader);
    QVERIFY(answer);
    QCOMPARE(answer->facts.majorVersion, 0);
    QCOMPARE(answer->facts.minorVersion, 99);
    QVERIFY(!answer->facts.infoEntryCount);
    QCOMPARE(answer->firstPageSize, QSizeF(1, 14400));
}

void TestPDFEngineAnswers::refusesTextThatContradictsItself()
{
    const auto read = [](quint32 count, const QList<quint32>& runLengths) {
        PayloadWriter payload;
        payload.put(static_cast<quint8>(EngineLoss::isCut));
        payload.put(count);
        for (const quint32 letter : {0x61u, 0xd800u})
            payload.put(letter);
        payload.put(static_cast<quint32>(runLengths.size()));
        for (const quint32 length : runLengths) {
            payload.put(quint32{0});
            payload.put(length);
            payload.put(-infinite);
            payload.put(quint8{0});
            payload.put(quint32{0xff000000u});
            payload.putText("ABCDEF+Arial-BoldMT");
        }
        PayloadReader reader(payload.bytes());
        return readTextAnswer(reader, PDFTextDetail::isWithAttributes);
    };
    const auto text = read(2, {1, 1});
    QVERIFY(text);
    QCOMPARE(text->string, QStringLiteral("a\ufffd"));
    QCOMPARE(text->loss, PDFLoss::isCut);
    QVERIFY(text->runs.first().sizeInPoints > 0 && text->runs.first().isBold);
    QCOMPARE(text->runs.first().colour, QColor(Qt::black));
    QVERIFY2(!read(0xffffffffu, {2}), "a count that the bytes do not hold");
    QVERIFY2(!read(2, {1}), "runs that end early");
    QVERIFY2(!read(2, {1, 0xfffffff0u}), "a run beyond the end");
    QVERIFY2(!read(2, {2, 0}), "a run of nothing");
}

void TestPDFEngineAnswers::givesBothUnitsOfAPairOneQuad()
{
    PayloadWriter payload;
    payload.put(quint8{0});
    payload.put(quint32{2});
    payload.put(quint32{0x1f600});
    payload.put(quint32{'\n'});
    for (int number = 0; number < 16; ++number)
        payload.put(static_cast<float>(number));
    PayloadReader reader(payload.bytes());
    const auto text = readTextAnswer(reader, PDFTextDetail::isWithQuads);
    QVERIFY(text);
    QCOMPARE(text->quads.size(), 3);
    QCOMPARE(text->quads.at(0), text->quads.at(1));
    QCOMPARE(text->quads.at(0).at(3), QPointF(6, 7));
    QVERIFY(text->quads.at(2).isEmpty());
}

void TestPDFEngineAnswers::leadsNowhereOutsideTheDocument()
{
    PayloadWriter payload;
    payload.put(static_cast<quint8>(EngineLoss::isCut));
    payload.put(quint32{2});
    for (const int page : {4, 5}) {
        payload.put(page * 100); // depths beyond what an outline can have
        payload.putText("title");
        putTarget(payload, page, "");
    }
    PayloadReader reader(payload.bytes());
    const auto outline = readOutlineAnswer(reader, 5);
    QVERIFY(outline && outline->loss == PDFLoss::isCut);
    QCOMPARE(outline->entries.at(0).page, 4);
    QCOMPARE(outline->entries.at(0).point, QPointF(0, 5));
    QCOMPARE(outline->entries.at(0).depth, 0);
    QCOMPARE(outline->entries.at(1).page, -1);
    QCOMPARE(outline->entries.at(1).depth, 1);
}

void TestPDFEngineAnswers::takesNoImageOfAnotherSize()
{
    const QByteArray pixels(4 * 6, '\x7f');
    const auto image = [&pixels](const QSize& size) {
        PayloadReader reader({pixels.constData(), static_cast<std::size_t>(pixels.size())});
        return readTileAnswer(reader, pixels, size);
    };
    QCOMPARE(image(QSize(2, 3))->pixel(1, 2), qRgb(0x7f, 0x7f, 0x7f));
    QVERIFY(!image(QSize(2, 2)));
    QVERIFY(!image(QSize(4096, 4096)));
}

/// Each answer is sound but for the one number that is a step beyond its limit.
void TestPDFEngineAnswers::refusesWhatExceedsALimit()
{
    const auto putLinks = [](PayloadWriter& payload, quint32 count, std::size_t address) {
        payload.put(count);
        for (quint32 link = 0; link < count; ++link) {
            for (int edge = 0; edge < 4; ++edge)
                payload.put(1.0f);
            putTarget(payload, 0, std::string(address, 'a').c_str());
        }
    };
    const auto links = [&putLinks](quint32 count, std::size_t address) {
        PayloadWriter payload;
        putLinks(payload, count, address);
        PayloadReader reader(payload.bytes());
        return readLinksAnswer(reader, 1).has_value();
    };
    const auto outline = [](quint32 count, std::size_t title) {
        PayloadWriter payload;
        payload.put(quint8{0});
        payload.put(count);
        for (quint32 entry = 0; entry < count; ++entry) {
            payload.put(0);
            payload.putText(std::string(title, 't'));
            putTarget(payload, 0, "");
        }
        PayloadReader reader(payload.bytes());
        return readOutlineAnswer(reader, 1).has_value();
    };
    const auto label = [](std::size_t size) {
        PayloadWriter payload;
        payload.put(1.0f);
        payload.put(1.0f);
        payload.put(quint8{1});
        payload.putText(std::string(size, 'l'));
        PayloadReader reader(payload.bytes());
        return readMeasureAnswer(reader, 1).has_value();
    };
    const auto text = [](quint32 characters) {
        PayloadWriter payload;
        payload.put(static_cast<quint8>(EngineLoss::isNone));
        payload.put(characters);
        const std::string letters(characters * sizeof(char32_t), '\1');
        payload.putBytes(letters.data(), letters.size());
        PayloadReader reader(payload.bytes());
        return readTextAnswer(reader, PDFTextDetail::isPlain).has_value();
    };
    QVERIFY(links(maximumLinks, 1) && !links(maximumLinks + 1, 1));
    QVERIFY(links(1, longestTargetText) && !links(1, longestTargetText + 1));
    QVERIFY(!links(maximumTargetTexts / longestTargetText + 1, longestTargetText));
    QVERIFY(outline(maximumOutlineEntries, 1) && !outline(maximumOutlineEntries + 1, 1));
    QVERIFY(!outline(1, longestTargetText + 1));
    QVERIFY(!outline(maximumTargetTexts / longestTargetText + 1, longestTargetText));
    QVERIFY(label(longestLabel) && !label(longestLabel + 1));
    QVERIFY(text(maximumPageCharacters) && !text(maximumPageCharacters + 1));
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
        const auto reader = [&bytes] { return PayloadReader(bytes); };
        PayloadReader readers[]
            = {reader(), reader(), reader(), reader(), reader(), reader(), reader()};
        readOpenedAnswer(readers[0]);
        readMeasureAnswer(readers[1], 10);
        readTextAnswer(readers[2], PDFTextDetail::isWithQuads);
        readTextAnswer(readers[3], PDFTextDetail::isWithAttributes);
        readLinksAnswer(readers[4], 3);
        const auto outline = readOutlineAnswer(readers[5], 3);
        QVERIFY(!outline || outline->entries.size() <= static_cast<qsizetype>(bytes.size()));
        const auto written = readWrittenAnswer(readers[6], 3);
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
