#include "PDFEngineAnswers.h"
#include "PDFFontName.h"
#include "protocol/EngineMessages.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestPDFEngineAnswers : public QObject
{
    Q_OBJECT

private slots:
    void refusesTextThatContradictsItself();
    void readsFontNames();
};

void TestPDFEngineAnswers::refusesTextThatContradictsItself()
{
    const auto read = [](const QList<quint32>& runLengths) {
        TextResult result;
        result.loss = EngineLoss::isCut;
        result.characters = std::vector<char32_t>{0x61, 0xd800};
        for (const quint32 length : runLengths)
            result.runs.push_back({length, -std::numeric_limits<float>::infinity(), false, false,
                0xff000000u, "ABCDEF+Arial-BoldMT"});
        return readTextAnswer(packed(result), PDFTextDetail::isWithAttributes);
    };
    const auto text = read({1, 1});
    QVERIFY(text);
    QCOMPARE(text->string, u"a\ufffd"_s);
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
