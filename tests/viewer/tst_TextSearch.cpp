#include "viewer/TextSearch.h"

#include <QTest>

#include <unicode/coll.h>
#include <unicode/stsearch.h>
#include <unicode/tblcoll.h>

#include <random>

using namespace Qt::StringLiterals;

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
    void findsTexts();
    void agreesWithCollation();
    void longTextsTakeLinearTime();
    void stopsWhenAsked();
};

void TestTextSearch::findsTexts()
{
    QCOMPARE(found(u"", ignoring, u"abc"), u""_s);
    QCOMPARE(found(u"a", ignoring, u""), u""_s);
    QCOMPARE(found(u"ab", ignoring, u"ab xab ab"), u"0+2 4+2 7+2"_s);
    QCOMPARE(found(u"aa", ignoring, u"aaaaa"), u"0+2 2+2"_s); // matches do not overlap
    QCOMPARE(found(u"aab", ignoring, u"aaab"), u"1+3"_s); // a false start hides no match

    QCOMPARE(found(u"TaRn", ignoring, u"tarn TARN"), u"0+4 5+4"_s);
    QCOMPARE(found(u"TARN", respecting, u"tarn TARN"), u"5+4"_s);
    QCOMPARE(found(u"TARN", literal, u"tarn TARN"), u"5+4"_s);
    QCOMPARE(found(u"STRASSE", ignoring, u"stra\u00dfe"), u"0+6"_s); // full case folding
    QCOMPARE(found(u"s", ignoring, u"a\u00dfs"), u"2+1"_s); // half of a folded letter is no match
    QCOMPARE(found(u"\u03a3", ignoring, u"\u03c3\u03c2"), u"0+1 1+1"_s);

    // Composed and decomposed letters are equal, but to a literal search.
    QCOMPARE(found(u"\u00e9", respecting, u"xe\u0301"), u"1+2"_s);
    QCOMPARE(found(u"e\u0301", ignoring, u"x\u00c9"), u"1+1"_s);
    QCOMPARE(found(u"a\u0323\u0302", respecting, u"a\u0302\u0323"), u"0+3"_s);
    QCOMPARE(found(u"\u1112\u1161\u11ab", respecting, u"\ud55c"), u"0+1"_s);
    QCOMPARE(found(u"\u00e9", literal, u"e\u0301\u00e9"), u"2+1"_s);
    QCOMPARE(found(u"e", respecting, u"e\u0301\u00e9e"), u"3+1"_s);
    // A match extends over its cluster, and part of an emoji is none.
    QCOMPARE(found(u"e", literal, u"ae\u0301b"), u"1+2"_s);
    QCOMPARE(found(u"\u0301", literal, u"e\u0301\u0301"), u"0+3"_s);
    QCOMPARE(found(u"\U0001F469", respecting, u"\U0001F469\u200D\U0001F467"), u""_s);

    // A space matches a line end and the blanks around it.
    QCOMPARE(found(u"one two", ignoring, u"one\ntwo"), u"0+7"_s);
    QCOMPARE(found(u"one two", literal, u"one \r\n\n two"), u"0+11"_s);
    QCOMPARE(found(u"one\ntwo", respecting, u"one two"), u"0+7"_s);
    QCOMPARE(found(u"a  b", ignoring, u"a b a  b"), u"4+4"_s);
    QCOMPARE(found(u"a b", ignoring, u"a \u0301b"), u""_s); // a space with an accent is none

    // Half a surrogate pair is no match, a lone surrogate is, and is in nobody's way.
    const std::u16string high(1, char16_t(0xD83D));
    const std::u16string low(1, char16_t(0xDE00));
    QCOMPARE(found(high, literal, u"x" + high + low), u""_s);
    QCOMPARE(found(low, respecting, u"x" + high + low), u""_s);
    QCOMPARE(found(high, literal, u"x" + high + u"y"), u"1+1"_s);
    QCOMPARE(found(u"ab", ignoring, low + u"Ab" + high), u"1+2"_s);
    QCOMPARE(found(u"\U00010428", ignoring, u"\U00010400"), u"0+2"_s);
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

void TestTextSearch::longTextsTakeLinearTime()
{
    // Each of them takes hours where time grows with the product of the lengths.
    const auto count = [](const std::u16string& pattern, const std::u16string& page) {
        TextSearch(pattern, ignoring).matches(page);
        return TextSearch(pattern, literal).matches(page).size();
    };
    const std::u16string letters(2'000'000, u'a');
    QCOMPARE(count(letters.substr(0, 100'000) + u'b', letters), std::size_t{0});
    QCOMPARE(count(letters.substr(0, 100'000), letters), std::size_t{20});
    QCOMPARE(count(u"\u0301", u'a' + std::u16string(1'000'000, u'\u0301')), std::size_t{1});
    const QString unsorted = QString::fromUtf16(u"\u0301\u0323").repeated(500'000);
    QCOMPARE(count(u"\u0323", unsorted.toStdU16String()), std::size_t{1});
}

void TestTextSearch::stopsWhenAsked()
{
    std::stop_source source;
    source.request_stop();
    QVERIFY(TextSearch(u"a", literal).matches(u"aaa", source.get_token()).empty());
}

QTEST_APPLESS_MAIN(TestTextSearch)
#include "tst_TextSearch.moc"
