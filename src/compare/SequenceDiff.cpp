#include "compare/SequenceDiff.h"

#include <algorithm>
#include <optional>

namespace tarnwick {

namespace {

using Items = std::span<const std::uint32_t>;

/// How far the search from one end has come on each diagonal: the furthest item of the first
/// sequence that so many edits reach.
class Front
{
public:
    explicit Front(std::ptrdiff_t reach)
        : theReach(reach)
        , theFurthest(static_cast<std::size_t>(2 * reach + 3), 0)
    {
    }
    std::ptrdiff_t& operator[](std::ptrdiff_t diagonal)
    {
        return theFurthest[static_cast<std::size_t>(diagonal + theReach + 1)];
    }
    std::ptrdiff_t reach() const { return theReach; }
    /// Where a diagonal is entered with one edit more.
    std::ptrdiff_t entered(std::ptrdiff_t diagonal, std::ptrdiff_t edits)
    {
        const bool isDown = diagonal == -edits
            || (diagonal != edits && (*this)[diagonal - 1] < (*this)[diagonal + 1]);
        return isDown ? (*this)[diagonal + 1] : (*this)[diagonal - 1] + 1;
    }

private:
    std::ptrdiff_t theReach;
    std::vector<std::ptrdiff_t> theFurthest;
};

/// A place that a shortest way from one end to the other goes through.
struct Middle
{
    std::size_t before = 0;
    std::size_t after = 0;
};

/// The search from both ends at once, which meet in the middle of a shortest way.
class MiddleSearch
{
public:
    /// Precondition: neither is empty, and they begin and end with other items.
    MiddleSearch(Items before, Items after, std::size_t mostEdits)
        : theBefore(before)
        , theAfter(after)
        , theCount(std::ssize(before))
        , theOtherCount(std::ssize(after))
        , theForward(reachOf(mostEdits))
        , theBackward(reachOf(mostEdits))
    {
    }
    std::optional<Middle> find(const std::stop_token& stop)
    {
        for (std::ptrdiff_t edits = 0; edits <= theForward.reach(); ++edits) {
            if (stop.stop_requested())
                return std::nullopt;
            if (const auto middle = step(theForward, theBackward, edits, true))
                return middle;
            if (const auto middle = step(theBackward, theForward, edits, false))
                return middle;
        }
        return std::nullopt;
    }

private:
    std::ptrdiff_t reachOf(std::size_t mostEdits) const
    {
        return (std::min(std::ssize(theBefore) + std::ssize(theAfter),
                    static_cast<std::ptrdiff_t>(mostEdits))
                   + 1)
            / 2;
    }
    bool areSame(std::ptrdiff_t place, std::ptrdiff_t other, bool isForward) const
    {
        if (!isForward) {
            place = theCount - 1 - place;
            other = theOtherCount - 1 - other;
        }
        return theBefore[static_cast<std::size_t>(place)]
            == theAfter[static_cast<std::size_t>(other)];
    }
    /// Goes one edit further from one end. @returns where the other end's search has been.
    std::optional<Middle> step(Front& front, Front& other, std::ptrdiff_t edits, bool isForward)
    {
        const std::ptrdiff_t difference = theCount - theOtherCount;
        const std::ptrdiff_t met = isForward ? edits - 1 : edits; // edits of the other search
        const bool canMeet = (difference % 2 != 0) == isForward;
        // Diagonals that lie outside of the sequences are left out.
        const std::ptrdiff_t first
            = -edits + 2 * std::max<std::ptrdiff_t>(0, edits - theOtherCount);
        const std::ptrdiff_t last = edits - 2 * std::max<std::ptrdiff_t>(0, edits - theCount);
        for (std::ptrdiff_t diagonal = first; diagonal <= last; diagonal += 2) {
            std::ptrdiff_t place = front.entered(diagonal, edits);
            while (place < theCount && place - diagonal < theOtherCount
                && areSame(place, place - diagonal, isForward))
                ++place;
            front[diagonal] = place;
            const std::ptrdiff_t mirrored = difference - diagonal;
            if (canMeet && mirrored >= -met && mirrored <= met
                && place + other[mirrored] >= theCount)
                return middleAt(place, place - diagonal, isForward);
        }
        return std::nullopt;
    }
    Middle middleAt(std::ptrdiff_t place, std::ptrdiff_t other, bool isForward) const
    {
        if (!isForward) {
            place = theCount - place;
            other = theOtherCount - other;
        }
        return {static_cast<std::size_t>(place), static_cast<std::size_t>(other)};
    }

    Items theBefore;
    Items theAfter;
    std::ptrdiff_t theCount;
    std::ptrdiff_t theOtherCount;
    Front theForward;
    Front theBackward;
};

class Comparison
{
public:
    Comparison(std::size_t mostEdits, const std::stop_token& stop)
        : theMostEdits(mostEdits)
        , theStop(stop)
    {
    }
    void compare(Items before, Items after, std::size_t place, std::size_t other)
    {
        const auto differ = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
        const auto shared = static_cast<std::size_t>(differ.first - before.begin());
        before = before.subspan(shared);
        after = after.subspan(shared);
        const auto ends
            = std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend());
        const auto sharedEnd = static_cast<std::size_t>(ends.first - before.rbegin());
        before = before.first(before.size() - sharedEnd);
        after = after.first(after.size() - sharedEnd);
        split(before, after, place + shared, other + shared);
    }
    SequenceDiff take() { return std::move(theDiff); }

private:
    void split(Items before, Items after, std::size_t place, std::size_t other)
    {
        if (before.empty() || after.empty())
            return add({place, before.size(), other, after.size()});
        const std::optional<Middle> middle
            = MiddleSearch(before, after, theMostEdits).find(theStop);
        if (!middle) {
            theDiff.isRewritten = true;
            return add({place, before.size(), other, after.size()});
        }
        // Each part needs half of the edits, so this goes down a dozen levels at most.
        compare(before.first(middle->before), after.first(middle->after), place, other);
        compare(before.subspan(middle->before), after.subspan(middle->after),
            place + middle->before, other + middle->after);
    }
    void add(const SequenceChange& change)
    {
        if (change.removed == 0 && change.added == 0)
            return;
        auto& changes = theDiff.changes;
        if (!changes.empty() && changes.back().before + changes.back().removed == change.before
            && changes.back().after + changes.back().added == change.after) {
            changes.back().removed += change.removed;
            changes.back().added += change.added;
        } else {
            changes.push_back(change);
        }
    }

    std::size_t theMostEdits;
    const std::stop_token& theStop;
    SequenceDiff theDiff;
};

} // namespace

SequenceDiff compareSequences(
    Items before, Items after, std::size_t mostEdits, const std::stop_token& stop)
{
    Comparison comparison(mostEdits, stop);
    comparison.compare(before, after, 0, 0);
    return comparison.take();
}

} // namespace tarnwick
