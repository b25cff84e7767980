#include "CountLine.h"

#include <unicode/brkiter.h>
#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>

namespace tarnwick {

namespace {

// ICU counts positions in 32 bits and keeps tables that grow with the text, so long texts are
// counted window by window. A window ends behind a line feed where it can, which no word and no
// cluster crosses; else at a boundary that lies far enough from the window's end for what follows
// not to move it.
constexpr std::size_t windowLength = 1 << 16;
constexpr std::size_t longestWindow = 1 << 28;
constexpr std::size_t safeDistance = 256;

struct Window
{
    std::u16string_view text;
    bool isSafeToItsEnd = false; ///< the window's end is a boundary of the whole text
};

Window windowAt(std::u16string_view text, std::size_t position, std::size_t length)
{
    const std::u16string_view rest = text.substr(position);
    if (rest.size() <= length)
        return {rest, true};
    const std::u16string_view window = rest.substr(0, length);
    if (const std::size_t lineFeed = window.rfind(u'\n'); lineFeed != std::u16string_view::npos)
        return {window.substr(0, lineFeed + 1), true};
    return {window, false};
}

/// Counts the segments of a text, window by window.
class SegmentCounter
{
public:
    /// @param lowestStatus segments whose rule status is below are not counted.
    SegmentCounter(icu::BreakIterator& iterator, std::int32_t lowestStatus)
        : theIterator(iterator)
        , theLowestStatus(lowestStatus)
    {
    }

    std::int64_t count(std::u16string_view text, const std::stop_token& stop)
    {
        std::int64_t total = 0;
        std::size_t position = 0;
        std::size_t length = windowLength;
        while (position < text.size() && !stop.stop_requested()) {
            const Window window = windowAt(text, position, length);
            const Passed passed = countWindow(window, length >= longestWindow);
            total += passed.segments;
            position += passed.units;
            // A single segment longer than the window: look at more of it at once.
            length = passed.units == 0 ? length * 2 : windowLength;
        }
        return total;
    }

private:
    struct Passed
    {
        std::size_t units = 0;
        std::int64_t segments = 0;
    };

    Passed countWindow(const Window& window, bool takesAll)
    {
        UErrorCode status = U_ZERO_ERROR;
        UText text = UTEXT_INITIALIZER;
        utext_openUChars(
            &text, window.text.data(), static_cast<std::int64_t>(window.text.size()), &status);
        theIterator.setText(&text, status);
        const std::size_t limit = window.isSafeToItsEnd || takesAll
            ? window.text.size()
            : window.text.size() - std::min(window.text.size(), safeDistance);
        Passed passed;
        for (std::int32_t end = theIterator.first(); U_SUCCESS(status);) {
            end = theIterator.next();
            if (end == icu::BreakIterator::DONE || static_cast<std::size_t>(end) > limit)
                break;
            passed.units = static_cast<std::size_t>(end);
            if (theIterator.getRuleStatus() >= theLowestStatus)
                ++passed.segments;
        }
        utext_close(&text);
        if (U_FAILURE(status))
            passed.units = window.text.size();
        return passed;
    }

    icu::BreakIterator& theIterator;
    std::int32_t theLowestStatus;
};

} // namespace

TextCounts countText(std::u16string_view text, const std::string& locale, std::stop_token stop)
{
    const icu::Locale language
        = locale.empty() ? icu::Locale::getDefault() : icu::Locale(locale.c_str());
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> words(
        icu::BreakIterator::createWordInstance(language, status));
    const std::unique_ptr<icu::BreakIterator> clusters(
        icu::BreakIterator::createCharacterInstance(language, status));
    if (U_FAILURE(status) || !words || !clusters)
        return {};
    TextCounts counts;
    counts.words = SegmentCounter(*words, UBRK_WORD_NONE_LIMIT).count(text, stop);
    counts.characters = SegmentCounter(*clusters, 0).count(text, stop);
    return counts;
}

std::string countLine(std::int64_t words, std::int64_t characters)
{
    return std::to_string(std::max<std::int64_t>(words, 0)) + "  words  "
        + std::to_string(characters) + "  chars";
}

} // namespace tarnwick
