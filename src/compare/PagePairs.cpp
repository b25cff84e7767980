#include "compare/PagePairs.h"

#include "compare/SequenceDiff.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace tarnwick {

namespace {

using Signs = std::span<const PageSign>;
using Numbers = std::vector<std::uint32_t>;

/// Pages are large: more edits are worth telling apart than in a text. 20,000 take 0.4 s.
constexpr std::size_t mostPageEdits = 20'000;

/// Numbers for what pages are made of: equal ones for equal pages, others for all that are unknown.
class PageNumbers
{
public:
    Numbers of(Signs pages)
    {
        Numbers numbers;
        numbers.reserve(pages.size());
        for (const PageSign& page : pages) {
            if (!page.isKnown)
                numbers.push_back(theNext++);
            else if (const auto place = theNumbers.try_emplace(page.digest, theNext); place.second)
                numbers.push_back(theNext++);
            else
                numbers.push_back(place.first->second);
        }
        return numbers;
    }

private:
    std::map<std::array<std::uint8_t, 32>, std::uint32_t> theNumbers;
    std::uint32_t theNext = 0;
};

/// The numbers of the pages' objects; for each that is unknown one that no other page has.
/// @param unknown above which these are.
Numbers objectsOf(Signs pages, std::uint32_t unknown)
{
    Numbers numbers;
    numbers.reserve(pages.size());
    for (const PageSign& page : pages)
        numbers.push_back(page.object > 0 ? static_cast<std::uint32_t>(page.object) : ++unknown);
    return numbers;
}

/// Finds for each page of one document the one of the other.
class Pairing
{
public:
    Pairing(Signs before, Signs after, const std::stop_token& stop)
        : theStop(stop)
    {
        PageNumbers numbers;
        theContents = numbers.of(before);
        theOtherContents = numbers.of(after);
        thePartners.assign(before.size(), -1);
        theOtherPartners.assign(after.size(), -1);
        theGaps = {{0, before.size(), 0, after.size()}};
    }
    /// Pairs equal numbers within the gaps that are left, in order.
    void align(const Numbers& before, const Numbers& after)
    {
        std::vector<SequenceChange> gaps;
        for (const SequenceChange& gap : theGaps) {
            const SequenceDiff diff
                = compareSequences(std::span(before).subspan(gap.before, gap.removed),
                    std::span(after).subspan(gap.after, gap.added), mostPageEdits, theStop);
            std::size_t place = 0;
            std::size_t other = 0;
            for (const SequenceChange& change : diff.changes) {
                pairRun(gap.before + place, gap.after + other, change.before - place);
                gaps.push_back({gap.before + change.before, change.removed,
                    gap.after + change.after, change.added});
                place = change.before + change.removed;
                other = change.after + change.added;
            }
            pairRun(gap.before + place, gap.after + other, gap.removed - place);
        }
        theGaps = std::move(gaps);
    }
    void alignContents() { align(theContents, theOtherContents); }
    /// Pairs what stands elsewhere now: equal numbers, wherever they are left.
    void findMoved(const Numbers& before, const Numbers& after)
    {
        std::unordered_multimap<std::uint32_t, std::size_t> left;
        for (const SequenceChange& gap : theGaps) {
            for (std::size_t page = gap.before + gap.removed; page-- > gap.before;) {
                if (thePartners[page] < 0)
                    left.emplace(before[page], page);
            }
        }
        for (const SequenceChange& gap : theGaps) {
            for (std::size_t page = gap.after; page < gap.after + gap.added; ++page) {
                if (theOtherPartners[page] >= 0)
                    continue;
                if (const auto found = left.find(after[page]); found != left.end()) {
                    pair(found->second, page);
                    left.erase(found);
                }
            }
        }
    }
    void findMovedContents() { findMoved(theContents, theOtherContents); }
    /// Pairs in order what is left within each gap.
    void pairRest()
    {
        for (const SequenceChange& gap : theGaps) {
            std::size_t other = gap.after;
            for (std::size_t page = gap.before; page < gap.before + gap.removed; ++page) {
                if (thePartners[page] >= 0)
                    continue;
                while (other < gap.after + gap.added && theOtherPartners[other] >= 0)
                    ++other;
                if (other == gap.after + gap.added)
                    break;
                pair(page, other);
            }
        }
    }
    std::vector<PagePair> result() const;

private:
    void pair(std::size_t page, std::size_t other)
    {
        thePartners[page] = static_cast<int>(other);
        theOtherPartners[other] = static_cast<int>(page);
    }
    void pairRun(std::size_t page, std::size_t other, std::size_t count)
    {
        for (std::size_t index = 0; index < count; ++index)
            pair(page + index, other + index);
    }
    std::vector<bool> movedPages() const;

    const std::stop_token& theStop;
    Numbers theContents;
    Numbers theOtherContents;
    std::vector<int> thePartners; ///< of the earlier document's pages; -1 for none
    std::vector<int> theOtherPartners;
    std::vector<SequenceChange> theGaps; ///< stretches without pairs, in order
};

/// The later document's pages that are not part of the longest run of pairs in order: the fewest
/// that have to be moved.
std::vector<bool> Pairing::movedPages() const
{
    std::vector<int> ends; // of runs of each length, the page that a run ends with being lowest
    std::vector<std::size_t> endPages;
    std::vector<int> previous(theOtherPartners.size(), -1);
    for (std::size_t page = 0; page < theOtherPartners.size(); ++page) {
        if (theOtherPartners[page] < 0)
            continue;
        const auto place = std::lower_bound(ends.begin(), ends.end(), theOtherPartners[page]);
        const auto length = static_cast<std::size_t>(place - ends.begin());
        if (length > 0)
            previous[page] = static_cast<int>(endPages[length - 1]);
        if (place == ends.end()) {
            ends.push_back(theOtherPartners[page]);
            endPages.push_back(page);
        } else {
            *place = theOtherPartners[page];
            endPages[length] = page;
        }
    }
    std::vector<bool> areMoved(theOtherPartners.size(), true);
    for (int page = endPages.empty() ? -1 : static_cast<int>(endPages.back()); page >= 0;
         page = previous[static_cast<std::size_t>(page)])
        areMoved[static_cast<std::size_t>(page)] = false;
    return areMoved;
}

std::vector<PagePair> Pairing::result() const
{
    const std::vector<bool> areMoved = movedPages();
    std::vector<PagePair> pairs;
    std::size_t page = 0; // the next removed one is looked for from here
    const auto addRemoved = [&](std::size_t end) {
        for (; page < end; ++page) {
            if (thePartners[page] < 0)
                pairs.push_back({static_cast<int>(page), -1, false, false});
        }
    };
    for (std::size_t other = 0; other < theOtherPartners.size(); ++other) {
        const int partner = theOtherPartners[other];
        if (partner < 0) {
            pairs.push_back({-1, static_cast<int>(other), false, false});
            continue;
        }
        const auto place = static_cast<std::size_t>(partner);
        if (!areMoved[other])
            addRemoved(place);
        pairs.push_back({partner, static_cast<int>(other),
            theContents[place] == theOtherContents[other], areMoved[other]});
    }
    addRemoved(thePartners.size());
    return pairs;
}

} // namespace

std::vector<PagePair> pairPages(
    Signs before, Signs after, PageKinship kinship, const std::stop_token& stop)
{
    Pairing pairing(before, after, stop);
    const bool isOneFile = kinship == PageKinship::isOfOneFile;
    const Numbers objects = objectsOf(before, 1u << 30);
    const Numbers otherObjects = objectsOf(after, 1u << 31);
    if (isOneFile)
        pairing.align(objects, otherObjects);
    pairing.alignContents();
    if (isOneFile)
        pairing.findMoved(objects, otherObjects);
    pairing.findMovedContents();
    pairing.pairRest();
    return pairing.result();
}

} // namespace tarnwick
