#include "TextSearch.h"
#include "support/Rows.h"

#include <QTest>

#include <functional>
#include <random>
#include <set>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

constexpr auto respecting = SearchOptions::isRespectingCase;
constexpr auto ignoring = SearchOptions::isIgnoringCase;
constexpr auto literal = SearchOptions::isLiteral;

/// Matches as "start+length" separated by blanks.
QString found(const std::u16string& pattern, SearchOptions options, const std::u16string& page)
{
    QStringList list;
    for (const TextMatch& match : TextSearch(pattern, options).matches(page))
        list << u"%1+%2"_s.arg(match.start).arg(match.length);
    return list.join(u' ');
}

/// A unit of one spelling of a text, and where it stands there.
struct SpelledUnit
{
    char16_t unit = 0;
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Calls a function with every spelling of a text of "a", "b", blanks, line feeds and hyphens, one
/// after the other in spelling.
void spell(const std::u16string& text, std::size_t at, std::vector<SpelledUnit>& spelling,
    const std::function<void()>& take)
{
    if (at == text.size())
        return take();
    const auto goOn = [&](std::u16string_view units, std::size_t end, std::size_t next) {
        for (const char16_t unit : units)
            spelling.push_back({unit, at, end});
        spell(text, next, spelling, take);
        spelling.resize(spelling.size() - units.size());
    };
    const auto isWord = [&](std::size_t place) {
        return place < text.size() && (text[place] == u'a' || text[place] == u'b');
    };
    const char16_t unit = text[at];
    const bool isBlank = unit == u' ' || unit == u'\n';
    const std::size_t blanks = isBlank ? at : at + 1;
    const std::size_t behind = std::min(text.find_first_not_of(u" \n", blanks), text.size());
    const bool isLineEnd = text.substr(blanks, behind - blanks).find(u'\n') != text.npos;
    const bool isSoft = unit == u'\u00ad';
    if (isBlank && isLineEnd)
        return goOn(u" ", behind, behind);
    goOn(text.substr(at, 1), at + 1, at + 1);
    if (isSoft) {
        goOn(u"", at, at + 1);
        goOn(u"-", at + 1, at + 1);
    }
    const bool isHyphen = isSoft || unit == u'-' || unit == u'\u2010';
    if (!isHyphen || !isLineEnd || !isWord(behind) || !(isSoft || (at > 0 && isWord(at - 1))))
        return;
    goOn(text.substr(at, 1), at + 1, behind);
    goOn(u"", at, behind);
    if (unit != u'-')
        goOn(u"-", at + 1, behind);
}

bool spells(const std::vector<SpelledUnit>& spelling, std::size_t at, const std::u16string& pattern)
{
    return std::equal(pattern.begin(), pattern.end(),
        spelling.begin() + static_cast<std::ptrdiff_t>(at),
        [](char16_t wanted, const SpelledUnit& unit) { return unit.unit == wanted; });
}

} // namespace

class TestTextSearch : public QObject
{
    Q_OBJECT

private slots:
    void findsTexts();
    void findsBrokenWords_data();
    void findsBrokenWords();
    void findsEverySpelling();
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

using FindsBrokenWords = Rows<QString, QString, QString, std::optional<QString>>;

void TestTextSearch::findsBrokenWords_data()
{
    const auto row = [table = FindsBrokenWords()](const char* name, const QString& pattern,
                         const QString& page, const QString& expected,
                         const std::optional<QString>& literally = {}) {
        table(name, pattern, page, expected, literally);
    };
    row("without the hyphen", u"wellknown"_s, u"a well-\nknown one"_s, u"2+11"_s);
    row("with the hyphen", u"well-known"_s, u"a well-\nknown one"_s, u"2+11"_s);
    row("as it stands", u"well- known"_s, u"a well-\nknown one"_s, u"2+11"_s);
    row("blanks and empty lines around the line end", u"inter"_s, u"in- \n\n ter"_s, u"0+10"_s);
    row("a hyphen of typography", u"in-ter inter"_s, u"in\u2010\nter in\u2010\nter"_s, u"0+15"_s);
    row("a soft hyphen", u"inter"_s, u"in\u00ad\nter in\u00adter"_s, u"0+7 8+6"_s);
    row("a soft hyphen drawn as a hyphen", u"in-ter"_s, u"in\u00adter in\u00ad\nter"_s,
        u"0+6 7+7"_s);
    row("a soft hyphen searched for", u"in\u00adter"_s, u"inter in\u00ad\nter"_s, u"0+5 6+7"_s,
        u"6+7"_s);
    row("a soft hyphen alone", u"\u00ad"_s, u"in\u00adter"_s, u"2+1"_s);
    row("broken twice, spelled in two ways", u"all-in wellknown"_s, u"all-\nin well-\nknown"_s,
        u"0+19"_s);
    row("letters and their marks", u"\u00e9t\u00e9"_s, u"e\u0301-\nt\u00e9"_s, u"0+6"_s, u""_s);
    row("beside a digit", u"2020-2021"_s, u"2020-\n2021"_s, u"0+10"_s);
    row("a dash breaks no word", u"ab"_s, u"a -\nb a--\nb a-\n-b a\u2014\nb"_s, QString());
    row("a line end breaks no word of letters", u"ab"_s, u"a\nb"_s, QString());
    row("Chinese", u"\u4e2d\u6587"_s, u"\u4e2d\n\u6587 \u4e2d \u6587"_s, u"0+3"_s);
    row("Japanese with blanks", u"\u30c6\u30b9\u30c8"_s, u"\u30c6 \n \u30b9\n\u30c8"_s, u"0+7"_s);
    row("Latin beside Chinese", u"\u7528PDF \u7528"_s, u"\u7528\nPDF\n\u7528"_s, u"0+7"_s);
    row("Thai", u"\u0e01\u0e02"_s, u"\u0e01\n\u0e02"_s, u"0+3"_s);
    row("beyond the basic plane", u"\U00020000\U00020001"_s, u"\U00020000\n\U00020001"_s, u"0+5"_s);
    row("Arabic presentation forms", u"\u0644\u0627\u0628\u064b"_s, u"\ufefb\ufe90\ufe70"_s,
        u"0+3"_s, u""_s);
    row("Hebrew presentation forms", u"\u05d0\u05dc\u05e9\u05c1"_s, u"\ufb4f\ufb2a"_s, u"0+2"_s,
        u""_s);
}

void TestTextSearch::findsBrokenWords()
{
    const auto [pattern, page, expected, literally] = FindsBrokenWords::fetch();
    for (const SearchOptions options : {ignoring, respecting, literal}) {
        const QString matches = found(pattern.toStdU16String(), options, page.toStdU16String());
        QCOMPARE(matches, options == literal ? literally.value_or(expected) : expected);
    }
}

/// Random texts with many breaks against a search through each of their spellings, one by one.
void TestTextSearch::findsEverySpelling()
{
    const std::vector<std::u16string> pieces
        = {u"a", u"a", u"a", u"b", u"-", u"-\n", u"\n", u" ", u"\u00ad", u"\u00ad\n", u"\u2010\n"};
    const std::vector<std::u16string> wanted = {u"a", u"a", u"b", u"-", u" "};
    std::mt19937 random(11);
    const auto text = [&](const std::vector<std::u16string>& from, std::size_t length) {
        std::u16string result;
        for (std::size_t i = 0; i < length; ++i)
            result += from[random() % from.size()];
        return result;
    };
    std::size_t matches = 0;
    for (int round = 0; round < 20'000; ++round) {
        const std::u16string page = text(pieces, 1 + random() % 12);
        const std::u16string pattern = text(wanted, 1 + random() % 4);
        std::set<std::pair<std::size_t, std::size_t>> everywhere; // by end, then by beginning
        std::vector<SpelledUnit> spelling;
        spell(page, 0, spelling, [&] {
            for (std::size_t at = 0; at + pattern.size() <= spelling.size(); ++at) {
                if (spells(spelling, at, pattern))
                    everywhere.emplace(spelling[at + pattern.size() - 1].end, spelling[at].begin);
            }
        });
        std::size_t free = 0;
        std::vector<std::size_t> ends;
        for (const auto& [end, begin] : everywhere) {
            if (begin >= free && (ends.empty() || end > free))
                ends.push_back(free = end);
        }
        std::vector<std::size_t> foundEnds;
        for (const TextMatch& match :
            TextSearch(pattern, round % 2 ? literal : ignoring).matches(page)) {
            QVERIFY(everywhere.contains({match.start + match.length, match.start}));
            foundEnds.push_back(match.start + match.length);
        }
        QCOMPARE(foundEnds, ends);
        matches += ends.size();
    }
    QVERIFY(matches > 5000);
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
    // Every third unit begins three spellings.
    const std::u16string broken = u"a-\n"_s.repeated(60'000).toStdU16String() + u'a';
    QCOMPARE(count(std::u16string(100, u'a'), broken), std::size_t{600});
    QCOMPARE(count(std::u16string(1'000, u'a'), broken), std::size_t{0}); // more than are followed
    const std::u16string lines = u"\u4e2d\n"_s.repeated(60'000).toStdU16String();
    QCOMPARE(count(std::u16string(50, u'\u4e2d'), lines), std::size_t{1'200});
}

void TestTextSearch::stopsWhenAsked()
{
    std::stop_source source;
    source.request_stop();
    QVERIFY(TextSearch(u"a", literal).matches(u"aaa", source.get_token()).empty());
}

QTEST_APPLESS_MAIN(TestTextSearch)
#include "tst_TextSearch.moc"
