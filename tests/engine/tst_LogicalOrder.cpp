// Random lines, drawn in many orders, against ICU's way from the logical order to that of sight.

#include "LogicalOrder.h"

#include <QTest>

#include <unicode/ubidi.h>

#include <algorithm>
#include <random>

using namespace tarnwick;

namespace {

std::mt19937 random(3);

std::size_t below(std::size_t limit)
{
    return random() % limit;
}

/// Words of letters of one script, or numbers, with blanks between them.
std::u16string randomText()
{
    static const std::vector<std::u16string> alphabets
        = {u"\u05d0\u05d1\u05d2", u"\u0627\u0628\u0629", u"xyz", u"123", u"\u05d0\u05d1\u05d2"};
    std::u16string text;
    for (std::size_t words = 1 + below(6); words > 0; --words) {
        const std::u16string& alphabet = alphabets[below(alphabets.size())];
        for (std::size_t length = 1 + below(5); length > 0; --length)
            text += alphabet[below(alphabet.size())];
        if (words > 1)
            text += u' ';
    }
    return text;
}

/// Where each unit of a text stands, counted from the left.
std::vector<std::int32_t> placesInSight(const std::u16string& text, bool fromRight)
{
    std::vector<std::int32_t> places(text.size());
    UErrorCode status = U_ZERO_ERROR;
    UBiDi* const bidi = ubidi_open();
    ubidi_setPara(bidi, text.data(), static_cast<std::int32_t>(text.size()), fromRight ? 1 : 0,
        nullptr, &status);
    ubidi_getLogicalMap(bidi, places.data(), &status);
    ubidi_close(bidi);
    return places;
}

std::u16string inSight(const std::u16string& text, bool fromRight)
{
    const std::vector<std::int32_t> places = placesInSight(text, fromRight);
    std::u16string sight(text.size(), u' ');
    for (std::size_t index = 0; index < text.size(); ++index)
        sight[static_cast<std::size_t>(places[index])] = text[index];
    return sight;
}

/// The characters of a text, each one wide, at their places.
std::vector<DrawnCharacter> drawnLogically(const std::u16string& text, bool fromRight)
{
    const std::vector<std::int32_t> places = placesInSight(text, fromRight);
    std::vector<DrawnCharacter> line;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const double left = places[index];
        line.push_back({text[index], left, left + 1});
    }
    return line;
}

std::u16string ordered(const std::vector<DrawnCharacter>& line, bool fromRight)
{
    std::u16string text;
    for (const LogicalPlace& place : logicalOrder(line, 2, fromRight))
        text += static_cast<char16_t>(place.character);
    return text;
}

bool isLeftOf(const DrawnCharacter& one, const DrawnCharacter& other)
{
    return one.left < other.left;
}

} // namespace

class TestLogicalOrder : public QObject
{
    Q_OBJECT

private slots:
    void showsWhatWasDrawn();
    void largeLinesTakeNoTime();
};

void TestLogicalOrder::showsWhatWasDrawn()
{
    for (int round = 0; round < 2000; ++round) {
        const std::u16string text = randomText();
        const bool fromRight = below(2) == 1;
        std::vector<DrawnCharacter> line = drawnLogically(text, fromRight);
        const std::u16string result = ordered(line, fromRight);
        QCOMPARE(inSight(result, fromRight), inSight(text, fromRight));
        std::sort(line.begin(), line.end(), isLeftOf);
        QCOMPARE(ordered(line, fromRight), result); // in the order of sight
        std::reverse(line.begin(), line.end());
        QCOMPARE(ordered(line, fromRight), result);
        for (std::size_t index = line.size() - 1; index > 0; --index)
            std::swap(line[index], line[below(index + 1)]);
        QCOMPARE(ordered(line, fromRight), result); // a glyph here, a glyph there
    }
}

void TestLogicalOrder::largeLinesTakeNoTime()
{
    // Each of them takes hours where time grows with the square of the length.
    constexpr std::size_t count = 300'000;
    std::vector<DrawnCharacter> line(count, {U'\u05d0', 5, 6});
    QCOMPARE(logicalOrder(line, 1, true).size(), count); // all in one place
    for (std::size_t index = 0; index < count; ++index)
        line[index] = {index % 9 == 0 ? U'\u05d0' : U'\u05b8', double(below(1000)), 1000};
    QVERIFY(logicalOrder(line, 1, true).size() >= count);
    for (std::size_t index = 0; index < count; ++index)
        line[index] = {U'\u05d0', double(index % 3), double(index % 3 + 1)};
    QVERIFY(logicalOrder(line, 1, true).size() >= count); // drawn over itself again and again
}

QTEST_APPLESS_MAIN(TestLogicalOrder)
#include "tst_LogicalOrder.moc"
