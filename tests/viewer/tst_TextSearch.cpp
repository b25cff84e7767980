#include "viewer/TextSearch.h"

#include <QTest>

#include <unicode/coll.h>
#include <unicode/stsearch.h>
#include <unicode/tblcoll.h>

#include <random>

namespace {

constexpr auto respecting = SearchOptions::isRespectingCase;
constexpr auto ignoring = SearchOptions::isIgnoringCase;
constexpr auto literal = SearchOptions::isLiteral;

/// Matches as "start+length" separated by blanks.
QString found(const std::u16string& pattern, SearchOptions options, const std::u16string& page)
{
    QStringList list;
    for (const TextMatch& match : TextSearch(pattern, options).matches(page))
        list << QStringLiteral("%1+%2").arg(match.start).arg(match.length);
    return list.join(QLatin1Char(' '));
}

/// The same by ICU's collation-based search, which decides equality in another way.
QString foundByCollation(
    const std::u16string& pattern, bool ignoresCase, const std::u16string& page)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(icu::Locale::getRoot(), status));
    collator->setStrength(ignoresCase ? icu::Collator::SECONDARY : icu::Collator::TERTIARY);
    collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    const icu::UnicodeString text(page.data(), static_cast<std::int32_t>(page.size()));
    icu::StringSearch search(
        icu::UnicodeString(pattern.data(), static_cast<std::int32_t>(pattern.size())), text,
        dynamic_cast<icu::RuleBasedCollator*>(collator.get()), nullptr, status);
    QStringList list;
    for (int at = search.first(status); at != USEARCH_DONE; at = search.next(status))
        list << QStringLiteral("%1+%2").arg(at).arg(search.getMatchedLength());
    return list.join(QLatin1Char(' '));
}

} // namespace

class TestTextSearch : public QObject
{
    Q_OBJECT

private slots:
    void findsTexts_data();
    void findsTexts();
    void agreesWithCollation();
    void longTextsTakeLinearTime_data();
    void longTextsTakeLinearTime();
    void stopsWhenAsked();
};

void TestTextSearch::findsTexts_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("options");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("matches");
    const auto row = [](const char* name, const std::u16string& pattern, SearchOptions options,
                         const std::u16string& page, const char* matches) {
        QTest::newRow(name) << QString::fromStdU16String(pattern) << static_cast<int>(options)
                            << QString::fromStdU16String(page) << QString::fromLatin1(matches);
    };
    const std::u16string high(1, char16_t(0xD83D));
    const std::u16string low(1, char16_t(0xDE00));

    row("nothing is found nowhere", u"", ignoring, u"abc", "");
    row("empty page", u"a", ignoring, u"", "");
    row("all matches in order", u"ab", ignoring, u"ab xab ab", "0+2 4+2 7+2");
    row("matches do not overlap", u"aa", ignoring, u"aaaaa", "0+2 2+2");
    row("a false start hides no match", u"aab", ignoring, u"aaab", "1+3");

    row("case ignored", u"TaRn", ignoring, u"tarn TARN", "0+4 5+4");
    row("case respected", u"TARN", respecting, u"tarn TARN", "5+4");
    row("literal respects case", u"TARN", literal, u"tarn TARN", "5+4");
    row("full case folding", u"STRASSE", ignoring, u"stra\u00dfe", "0+6");
    row("half of a folded letter is no match", u"s", ignoring, u"a\u00dfs", "2+1");
    row("final sigma", u"\u03a3", ignoring, u"\u03c3\u03c2", "0+1 1+1");

    row("composed finds decomposed", u"\u00e9", respecting, u"xe\u0301", "1+2");
    row("decomposed finds composed", u"e\u0301", ignoring, u"x\u00c9", "1+1");
    row("marks in another order", u"a\u0323\u0302", respecting, u"a\u0302\u0323", "0+3");
    row("composed syllable", u"\u1112\u1161\u11ab", respecting, u"\ud55c", "0+1");
    row("literal tells them apart", u"\u00e9", literal, u"e\u0301\u00e9", "2+1");
    row("the letter alone is not the accented one", u"e", respecting, u"e\u0301\u00e9e", "3+1");
    row("literal match extends over its cluster", u"e", literal, u"ae\u0301b", "1+2");
    row("two literal matches in one cluster are one", u"\u0301", literal, u"e\u0301\u0301", "0+3");
    row("part of an emoji sequence", u"\U0001F469", respecting, u"\U0001F469\u200D\U0001F467", "");

    row("space matches a line end", u"one two", ignoring, u"one\ntwo", "0+7");
    row("blanks around the line end belong to it", u"one two", literal, u"one \r\n\n two", "0+11");
    row("line end in the searched text", u"one\ntwo", respecting, u"one two", "0+7");
    row("two spaces are two", u"a  b", ignoring, u"a b a  b", "4+4");
    row("space with an accent is no space", u"a b", ignoring, u"a \u0301b", "");

    row("half a surrogate pair is no match", high, literal, u"x" + high + low, "");
    row("nor its other half", low, respecting, u"x" + high + low, "");
    row("a lone surrogate is found", high, literal, u"x" + high + u"y", "1+1");
    row("lone surrogates are in nobody's way", u"ab", ignoring, low + u"Ab" + high, "1+2");
    row("beyond the BMP with case", u"\U00010428", ignoring, u"\U00010400", "0+2");
}

void TestTextSearch::findsTexts()
{
    QFETCH(QString, pattern);
    QFETCH(int, options);
    QFETCH(QString, page);
    QTEST(
        found(pattern.toStdU16String(), static_cast<SearchOptions>(options), page.toStdU16String()),
        "matches");
}

/// Random texts over few letters, so that most patterns match somewhere and many nearly do.
void TestTextSearch::agreesWithCollation()
{
    const std::vector<std::u16string> letters = {u"a", u"A", u"b", u"e", u"E", u"\u00e9",
        u"e\u0301", u"\u00c9", u"a\u0323\u0302", u"\u1ead", u"\u00df", u"\u4e2d"};
    std::mt19937 random(7);
    const auto text = [&](std::size_t length) {
        std::u16string result;
        for (std::size_t i = 0; i < length; ++i)
            result += letters[random() % letters.size()];
        return result;
    };
    int matches = 0;
    for (int i = 0; i < 3000; ++i) {
        const std::u16string pattern = text(1 + random() % 3);
        const std::u16string page = text(30);
        for (const bool ignoresCase : {false, true}) {
            const QString ours = found(pattern, ignoresCase ? ignoring : respecting, page);
            QCOMPARE(ours, foundByCollation(pattern, ignoresCase, page));
            matches += ours.isEmpty() ? 0 : 1;
        }
    }
    QVERIFY(matches > 1000);
}

void TestTextSearch::longTextsTakeLinearTime_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("page");
    QTest::addColumn<int>("count");
    // Each of them takes hours where time grows with the product of the lengths.
    const QString as(2'000'000, QLatin1Char('a'));
    const QString marks(1'000'000, QChar(0x0301));
    QTest::newRow("repeats with another end") << as.left(100'000) + QLatin1Char('b') << as << 0;
    QTest::newRow("repeats") << as.left(100'000) << as << 20;
    QTest::newRow("marks without end") << QString(QChar(0x0301)) << QLatin1Char('a') + marks << 1;
    QTest::newRow("marks that must be sorted")
        << QString(QChar(0x0323)) << QString::fromUtf16(u"\u0301\u0323").repeated(500'000) << 1;
}

void TestTextSearch::longTextsTakeLinearTime()
{
    QFETCH(QString, pattern);
    QFETCH(QString, page);
    TextSearch(pattern.toStdU16String(), ignoring).matches(page.toStdU16String());
    const auto matches
        = TextSearch(pattern.toStdU16String(), literal).matches(page.toStdU16String());
    QTEST(static_cast<int>(matches.size()), "count");
}

void TestTextSearch::stopsWhenAsked()
{
    std::stop_source source;
    source.request_stop();
    QVERIFY(TextSearch(u"a", literal).matches(u"aaa", source.get_token()).empty());
}

QTEST_APPLESS_MAIN(TestTextSearch)
#include "tst_TextSearch.moc"
