#include "viewer/CountLine.h"

#include <QTest>

class TestCountLine : public QObject
{
    Q_OBJECT

private slots:
    void printsBothNumbers_data();
    void printsBothNumbers();
    void countsWordsAndClusters_data();
    void countsWordsAndClusters();
    void longTextsCountAsTheirParts_data();
    void longTextsCountAsTheirParts();
    void stopsWhenAsked();
};

void TestCountLine::printsBothNumbers_data()
{
    QTest::addColumn<qint64>("words");
    QTest::addColumn<qint64>("characters");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("two spaces around words and before chars")
        << qint64(12) << qint64(345) << QByteArray("12  words  345  chars");
    QTest::newRow("nothing") << qint64(0) << qint64(0) << QByteArray("0  words  0  chars");
    QTest::newRow("negative words count 0")
        << qint64(-1) << qint64(7) << QByteArray("0  words  7  chars");
    QTest::newRow("no separators in large numbers")
        << qint64(1234567) << qint64(9876543210) << QByteArray("1234567  words  9876543210  chars");
}

void TestCountLine::printsBothNumbers()
{
    QFETCH(qint64, words);
    QFETCH(qint64, characters);
    QTEST(QByteArray::fromStdString(countLine(words, characters)), "line");
}

void TestCountLine::countsWordsAndClusters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("words");
    QTest::addColumn<qint64>("characters");
    const auto row
        = [](const char* name, const std::u16string& text, qint64 words, qint64 characters) {
              QTest::newRow(name) << QString::fromStdU16String(text) << words << characters;
          };
    row("empty", u"", 0, 0);
    row("letter with combining accent", u"e\u0301", 1, 1);
    row("CR LF is one character", u"a\r\nb", 2, 3);
    row("LF CR are two", u"\n\r", 0, 2);
    row("family emoji is one character and no word", u"\U0001F468\u200D\U0001F469\u200D\U0001F467",
        0, 1);
    row("flags pair up", u"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", 0, 2);
    row("apostrophe and decimal point join", u"don't pay 3.14!", 3, 15);
    row("punctuation is no word", u"-- ... ?!", 0, 9);
    row("Chinese is cut by dictionary", u"\u4e2d\u56fd\u4eba\u6c11", 2, 4);
    row("Katakana", u"\u30ab\u30bf\u30ab\u30ca", 1, 4);
    row("Thai has words without spaces", u"\u0e20\u0e32\u0e29\u0e32\u0e44\u0e17\u0e22", 2, 7);
    row("lone surrogates", std::u16string(u"a") + char16_t(0xD800) + u"b" + char16_t(0xDC00), 2, 4);
}

void TestCountLine::countsWordsAndClusters()
{
    QFETCH(QString, text);
    const TextCounts counts = countText(text.toStdU16String(), "en");
    QTEST(qint64(counts.words), "words");
    QTEST(qint64(counts.characters), "characters");
}

void TestCountLine::longTextsCountAsTheirParts_data()
{
    // Each piece is repeated across many windows; none of them divides a window's length, so that
    // window ends fall everywhere within the piece.
    QTest::addColumn<QString>("piece");
    QTest::addColumn<int>("repeats");
    QTest::newRow("lines") << QStringLiteral("one two\r\nthree ") << 50'000;
    QTest::newRow("no line end") << QString::fromUtf16(u"don't \U0001F1E9\U0001F1EA e\u0301 ")
                                 << 50'000;
    QTest::newRow("only flags") << QString::fromUtf16(u"\U0001F1E9\U0001F1EA") << 100'000;
}

void TestCountLine::longTextsCountAsTheirParts()
{
    QFETCH(QString, piece);
    QFETCH(int, repeats);
    const TextCounts one = countText(piece.toStdU16String(), "en");
    const TextCounts all = countText(piece.repeated(repeats).toStdU16String(), "en");
    QCOMPARE(all.words, one.words * repeats);
    QCOMPARE(all.characters, one.characters * repeats);
    const TextCounts word = countText(std::u16string(1'000'000, u'w'), "en");
    QCOMPARE(word.words, 1);
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
