#include "TextSearch.h"

#include "SpellingRuns.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <algorithm>
#include <functional>

namespace tarnwick {

namespace {

constexpr std::size_t unitsBetweenStops = 1 << 20;

/// The folded form of a searched text. Soft hyphens say nothing there: nobody sees that they have
/// been copied from somewhere.
std::u16string foldedPattern(std::u16string_view pattern, SearchOptions options)
{
    FoldedText folded;
    folded.fold(pattern, options);
    const std::u16string_view units = folded.units();
    std::u16string result(units);
    if (options != SearchOptions::isLiteral)
        std::erase(result, u'\u00ad');
    return result.empty() ? std::u16string(units) : result;
}

}

/// The grapheme cluster boundaries of a page, looked up only where a match may be.
class TextSearch::Clusters
{
public:
    Clusters()
    {
        UErrorCode status = U_ZERO_ERROR;
        theIterator.reset(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        if (U_FAILURE(status))
            theIterator.reset();
    }

    void setText(std::u16string_view text)
    {
        theText = text;
        isPrepared = false;
    }

    bool isBoundary(std::size_t position)
    {
        if (position == 0 || position >= theText.size())
            return true;
        // Below the combining marks, only CR LF is a cluster of several.
        const char16_t before = theText[position - 1];
        const char16_t after = theText[position];
        if (before < 0x300 && after < 0x300)
            return before != u'\r' || after != u'\n';
        return !prepare() || theIterator->isBoundary(static_cast<std::int32_t>(position));
    }

    /// The boundary at or before, and at or behind, a position.
    std::size_t floor(std::size_t position)
    {
        if (isBoundary(position))
            return position;
        return static_cast<std::size_t>(
            theIterator->preceding(static_cast<std::int32_t>(position)));
    }
    std::size_t ceiling(std::size_t position)
    {
        if (isBoundary(position))
            return position;
        return static_cast<std::size_t>(
            theIterator->following(static_cast<std::int32_t>(position)));
    }

private:
    bool prepare()
    {
        if (!theIterator || isPrepared)
            return theIterator != nullptr;
        UErrorCode status = U_ZERO_ERROR;
        UText text = UTEXT_INITIALIZER;
        utext_openUChars(&text, theText.data(), static_cast<std::int64_t>(theText.size()), &status);
        theIterator->setText(&text, status);
        utext_close(&text); // the iterator has made its own
        isPrepared = U_SUCCESS(status);
        return isPrepared;
    }

    std::unique_ptr<icu::BreakIterator> theIterator;
    std::u16string_view theText;
    bool isPrepared = false;
};

TextSearch::TextSearch(std::u16string_view pattern, SearchOptions options)
    : theOptions(options)
    , thePattern(foldedPattern(pattern, options))
    , theClusters(std::make_unique<Clusters>())
{
}

TextSearch::~TextSearch() = default;

/// The match at these folded units, in the page's positions; length 0 where there is none.
/// @param free where the match before it ends.
TextMatch TextSearch::accepted(std::size_t begin, std::size_t end, std::size_t free)
{
    if (!theFolded.isPieceBoundary(begin) || !theFolded.isPieceBoundary(end))
        return {};
    std::size_t first = theFolded.position(begin);
    std::size_t last = theFolded.position(end);
    if (first < free)
        return {};
    if (theOptions == SearchOptions::isLiteral) {
        first = theClusters->floor(first);
        last = theClusters->ceiling(last);
    } else if (!theClusters->isBoundary(first) || !theClusters->isBoundary(last)) {
        return {};
    }
    return first < free ? TextMatch{} : TextMatch{first, last - first};
}

std::vector<TextMatch> TextSearch::matches(std::u16string_view page, const std::stop_token& stop)
{
    std::vector<TextMatch> found;
    if (thePattern.isEmpty())
        return found;
    theFolded.fold(page, theOptions, stop);
    theClusters->setText(page);
    const auto accept = [&](std::size_t begin, std::size_t end) {
        const std::size_t free = found.empty() ? 0 : found.back().start + found.back().length;
        const TextMatch match = accepted(begin, end, free);
        if (match.length > 0)
            found.push_back(match);
        return match.length > 0;
    };
    const std::u16string_view units = theFolded.units();
    SpellingRuns runs(thePattern, theFolded);
    const SpellingRuns::Accept acceptSpelled = std::cref(accept);
    std::size_t matched = 0;
    std::size_t nextStop = 0;
    for (std::size_t i = 0; i < units.size(); ++i) {
        if (i >= nextStop) {
            if (stop.stop_requested())
                break;
            nextStop = i + unitsBetweenStops;
        }
        if (matched == 0 && runs.allowSkipping()) {
            i = units.find(thePattern.front(), i);
            if (i == std::u16string_view::npos)
                break;
        }
        if (runs.fork(i, matched, acceptSpelled))
            matched = 0;
        matched = thePattern.next(matched, units[i]);
        if (matched == thePattern.size()) {
            const bool isNew = accept(i + 1 - matched, i + 1);
            matched = isNew ? 0 : thePattern.fallback(matched);
            if (isNew)
                runs.clear();
        }
        if (runs.read(i, acceptSpelled))
            matched = 0;
    }
    return found;
}

} // namespace tarnwick
