#include "SpellingRuns.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t mostRuns = 16;
constexpr std::size_t longestPath = 128;
constexpr char16_t hyphen = u'-';

struct Beginning
{
    std::size_t unit = 0; ///< the first that belongs to the match
    std::size_t detour = 0; ///< the first of the path that does, or the path's length
};

/// Where a match of so many units that ends before a unit begins.
Beginning beginning(
    const std::vector<FoldedText::Detour>& path, std::size_t matched, std::size_t end)
{
    for (std::size_t index = path.size(); index > 0; --index) {
        const FoldedText::Detour& detour = path[index - 1];
        const std::size_t behind = end - detour.end;
        if (matched <= behind)
            return {end - matched, index};
        matched -= behind + (detour.isHyphen ? 1 : 0);
        end = detour.begin;
    }
    return {end - matched, 0};
}

} // namespace

SpellingRuns::SpellingRuns(const SearchPattern& pattern, const FoldedText& text)
    : thePattern(pattern)
    , theText(text)
{
}

bool SpellingRuns::forkThere(std::size_t unit, std::size_t state, const Accept& accept)
{
    const std::vector<Detour>& detours = theText.detours();
    while (theNextDetour < detours.size() && detours[theNextDetour].begin < unit)
        ++theNextDetour;
    const std::size_t runs = theRuns.size();
    for (; theNextDetour < detours.size() && detours[theNextDetour].begin == unit;
         ++theNextDetour) {
        const Detour& detour = detours[theNextDetour];
        if ((state > 0 || detour.isHyphen) && take(detour, {state, {}}, accept))
            return true;
        for (std::size_t index = 0; index < runs; ++index) {
            if (theRuns[index].path.back().end <= unit && take(detour, theRuns[index], accept))
                return true;
        }
    }
    theNextForkUnit
        = theNextDetour < detours.size() ? detours[theNextDetour].begin : theText.units().size();
    return false;
}

/// Lets a run, or the search through the text, leave a detour out.
bool SpellingRuns::take(const Detour& detour, Run run, const Accept& accept)
{
    const std::size_t first = beginning(run.path, run.state, detour.begin).detour;
    run.path.erase(run.path.begin(), run.path.begin() + static_cast<std::ptrdiff_t>(first));
    run.path.push_back(detour);
    if (detour.isHyphen)
        run.state = thePattern.next(run.state, hyphen);
    if (run.state == thePattern.size()) {
        if (accept(beginning(run.path, run.state, detour.end).unit, detour.begin + 1)) {
            clear();
            return true;
        }
        run.state = thePattern.fallback(run.state);
    }
    if (run.state > 0 && run.path.size() <= longestPath)
        add(std::move(run));
    return false;
}

void SpellingRuns::add(Run&& run)
{
    const auto isSame = [&run](const Run& other) {
        return other.state == run.state && other.path.back().end == run.path.back().end;
    };
    if (std::any_of(theRuns.begin(), theRuns.end(), isSame))
        return;
    if (theRuns.size() < mostRuns) {
        theRuns.push_back(std::move(run));
        return;
    }
    const auto least = std::min_element(theRuns.begin(), theRuns.end(),
        [](const Run& one, const Run& other) { return one.state < other.state; });
    if (least->state < run.state)
        *least = std::move(run);
}

bool SpellingRuns::readThere(std::size_t unit, const Accept& accept)
{
    const char16_t read = theText.units()[unit];
    for (Run& run : theRuns) {
        if (run.path.back().end > unit)
            continue;
        run.state = thePattern.next(run.state, read);
        if (run.state < thePattern.size())
            continue;
        if (accept(beginning(run.path, run.state, unit + 1).unit, unit + 1)) {
            clear();
            return true;
        }
        run.state = thePattern.fallback(run.state);
    }
    std::erase_if(theRuns, [unit](const Run& run) {
        const std::size_t resumed = run.path.back().end;
        return resumed <= unit && run.state <= unit + 1 - resumed;
    });
    return false;
}

} // namespace tarnwick
