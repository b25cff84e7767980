#pragma once

#include "FoldedText.h"
#include "SearchPattern.h"

#include <functional>
#include <vector>

namespace tarnwick {

/// Follows the spellings of a folded text that take its detours, beside a search through the text
/// as it stands.
///
/// A run begins at a detour where the pattern has matched in part, goes on behind it, and ends when
/// nothing before the detour belongs to the match any more: then the search through the text finds
/// whatever the run would. There are mostly none. However a text is made, 16 runs are followed at a
/// time, those that have matched most, and a match takes 128 detours at most.
class SpellingRuns
{
public:
    /// Both borrowed.
    SpellingRuns(const SearchPattern& pattern, const FoldedText& text);

    /// Whether the search through the text may go on where the pattern's first unit stands next,
    /// for nothing else begins a match.
    bool allowSkipping() const { return theRuns.empty() && thePattern.front() != u'-'; }
    void clear() { theRuns.clear(); }

    /// Gets the folded units [begin, end) of a match. @returns whether it takes it.
    using Accept = std::function<bool(std::size_t begin, std::size_t end)>;

    /// Takes the detours that begin at a unit, before the unit is read. Units come in order.
    /// @param state of the search through the text. @returns whether a match was taken; then there
    ///   are no runs.
    bool fork(std::size_t unit, std::size_t state, const Accept& accept)
    {
        return unit >= theNextForkUnit && forkThere(unit, state, accept);
    }

    /// Reads a unit. @returns as fork().
    bool read(std::size_t unit, const Accept& accept)
    {
        return !theRuns.empty() && readThere(unit, accept);
    }

private:
    using Detour = FoldedText::Detour;

    struct Run
    {
        std::size_t state = 0;
        std::vector<Detour> path; ///< what the partial match has taken so far; never empty
    };

    bool forkThere(std::size_t unit, std::size_t state, const Accept& accept);
    bool readThere(std::size_t unit, const Accept& accept);
    bool take(const Detour& detour, Run run, const Accept& accept);
    void add(Run&& run);

    const SearchPattern& thePattern;
    const FoldedText& theText;
    std::vector<Run> theRuns;
    std::size_t theNextDetour = 0;
    std::size_t theNextForkUnit = 0;
};

} // namespace tarnwick
