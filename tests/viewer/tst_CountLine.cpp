#include "CountLine.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestCountLine : public QObject
{
    Q_OBJECT

private slots:
    void printsBothNumbers();
    void countsWordsAndClusters();
    void longTextsCountAsTheirParts();
    void stopsWhenAsked();
};

void TestCountLine::printsBothNumbers()
{
    QCOMPARE(countLine(12, 345), std::string("12  words  345  chars"));
    QCOMPARE(countLine(-1, 7), std::string("0  words  7  chars"));
    QCOMPARE(countLine(1234567, 9876543210), std::string("1234567  words  9876543210  chars"));
}

void TestCountLine::countsWordsAndClusters()
{
    const auto countsOf = [](const std::u16string& text) {
        const TextCounts counts = countText(text, "en");
        return qMakePair(int(counts.words), int(counts.characters));
    };
    QCOMPARE(countsOf(u""), qMakePair(0, 0));
    QCOMPARE(countsOf(u"e\u0301"), qMakePair(1, 1));
    QCOMPARE(countsOf(u"a\r\nb"), qMakePair(2, 3));
    QCOMPARE(countsOf(u"\n\r"), qMakePair(0, 2));
    QCOMPARE(countsOf(u"\U0001F468\u200D\U0001F469\u200D\U0001F467"), qMakePair(0, 1));
    QCOMPARE(countsOf(u"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7"), qMakePair(0, 2)); // two flags
    QCOMPARE(countsOf(u"don't pay 3.14!"), qMakePair(3, 15));
    QCOMPARE(countsOf(u"-- ... ?!"), qMakePair(0, 9));
    // Chinese, Katakana and Thai are cut by dictionaries.
    QCOMPARE(countsOf(u"\u4e2d\u56fd\u4eba\u6c11"), qMakePair(2, 4));
    QCOMPARE(countsOf(u"\u30ab\u30bf\u30ab\u30ca"), qMakePair(1, 4));
    QCOMPARE(countsOf(u"\u0e20\u0e32\u0e29\u0e32\u0e44\u0e17\u0e22"), qMakePair(2, 7));
    const std::u16string lone = {u'a', 0xD800, u'b', 0xDC00};
    QCOMPARE(countsOf(lone), qMakePair(2, 4));
}

void TestCountLine::longTextsCountAsTheirParts()
{
    // Each piece is repeated across many windows; none of them divides a window's length, so that
    // window ends fall everywhere within the piece.
    const QString pieces[]
        = {u"one two\r\nthree "_s, QString::fromUtf16(u"don't \U0001F1E9\U0001F1EA e\u0301 "),
            QString::fromUtf16(u"\U0001F1E9\U0001F1EA")};
    for (const QString& piece : pieces) {
        const TextCounts one = countText(piece.toStdU16String(), "en");
        const TextCounts all = countText(piece.repeated(100'000).toStdU16String(), "en");
        QCOMPARE(all.words, one.words * 100'000);
        QCOMPARE(all.characters, one.characters * 100'000);
    }
    QCOMPARE(countText(std::u16string(1'000'000, u'w'), "en").words, 1);
    QCOMPARE(countText(u"e" + std::u16string(1'000'000, u'\u0301'), "en").characters, 1);
}

void TestCountLine::stopsWhenAsked()
{
    std::stop_source source;
    source.request_stop();
    QCOMPARE(countText(std::u16string(1000, u'a'), "en", source.get_token()).characters, 0);
}

QTEST_APPLESS_MAIN(TestCountLine)
#include "tst_CountLine.moc"
