#include "ObjectRows.h"

#include <algorithm>
#include <tuple>

namespace tarnwick {

namespace {

constexpr std::size_t objectsBetweenLooks = 16'384; // at the stop token

/// Keeps the first of any number of rows without keeping the rest.
class FirstRows
{
public:
    explicit FirstRows(bool isDescending)
        : theIsDescending(isDescending)
    {
    }

    void add(std::int64_t value, std::size_t index)
    {
        const Row row{theIsDescending ? ~value : value, static_cast<std::uint32_t>(index)};
        if (theIsCut && theLast < row)
            return;
        theRows.push_back(row);
        if (theRows.size() == 2 * ObjectRows::mostShown)
            cut();
    }

    std::vector<std::uint32_t> sorted()
    {
        if (theRows.size() > ObjectRows::mostShown)
            cut();
        std::sort(theRows.begin(), theRows.end());
        std::vector<std::uint32_t> indices(theRows.size());
        std::transform(theRows.begin(), theRows.end(), indices.begin(),
            [](const Row& row) { return row.index; });
        return indices;
    }

private:
    struct Row
    {
        std::int64_t value = 0;
        std::uint32_t index = 0;

        bool operator<(const Row& other) const
        {
            return std::tie(value, index) < std::tie(other.value, other.index);
        }
    };

    void cut()
    {
        const auto last = theRows.begin() + (ObjectRows::mostShown - 1);
        std::nth_element(theRows.begin(), last, theRows.end());
        theLast = *last;
        theIsCut = true;
        theRows.resize(ObjectRows::mostShown);
    }

    bool theIsDescending;
    std::vector<Row> theRows;
    Row theLast; ///< of those kept
    bool theIsCut = false;
};

/// Says whether objects match a filter.
class Matcher
{
public:
    Matcher(const ObjectFacts& facts, const ObjectFilter& filter)
        : theFacts(facts)
        , theFilter(filter)
    {
        if (!filter.asksForKinds())
            return;
        for (const std::string& name : facts.kinds->names())
            theMatchingNames.push_back(isKindMatching(name));
    }

    bool matches(std::size_t index) const
    {
        const auto holds = [this, index](const ObjectFilter::Range& range) {
            const std::int64_t value = theFacts.value(index, range.column);
            return range.least <= value && value <= range.most;
        };
        const auto& numbers = theFilter.numbers;
        const auto& states = theFilter.states;
        return (numbers.empty() || std::any_of(numbers.begin(), numbers.end(), holds))
            && std::all_of(theFilter.ranges.begin(), theFilter.ranges.end(), holds)
            && (states.empty()
                || std::find(states.begin(), states.end(), theFacts.standing(index))
                    != states.end())
            && (!theFilter.asksForKinds() || hasMatchingKind(index));
    }

private:
    bool hasMatchingKind(std::size_t index) const
    {
        const std::size_t name = theFacts.kinds->nameOf(index);
        return name < theMatchingNames.size() ? bool(theMatchingNames[name])
                                              : isKindMatching(theFacts.kinds->kind(index));
    }

    bool isKindMatching(const std::string& kind) const
    {
        const std::string lower = inLowerCase(kind);
        const auto& kinds = theFilter.kinds;
        return (kinds.empty() || std::find(kinds.begin(), kinds.end(), lower) != kinds.end())
            && std::all_of(theFilter.words.begin(), theFilter.words.end(),
                [&lower](const std::string& word) { return lower.find(word) != lower.npos; });
    }

    const ObjectFacts& theFacts;
    const ObjectFilter& theFilter;
    std::vector<bool> theMatchingNames;
};

} // namespace

ObjectStanding ObjectFacts::standing(std::size_t index) const
{
    const std::uint32_t next = states->nextVersion(index);
    if (next == 0)
        return ObjectStanding::isCurrent;
    return next == catalog().object(index).objVer() ? ObjectStanding::isDuplicate
                                                    : ObjectStanding::isReplaced;
}

std::int64_t ObjectFacts::value(std::size_t index, ObjectColumn column) const
{
    const pdfObject object = catalog().object(index);
    switch (column) {
    case ObjectColumn::isNumber:
        return object.objNo();
    case ObjectColumn::isGeneration:
        return object.objGen();
    case ObjectColumn::isVersion:
        return object.objVer();
    case ObjectColumn::isKind:
        return static_cast<std::int64_t>(kinds->nameOf(index));
    case ObjectColumn::isOffset:
        return static_cast<std::int64_t>(object.range().begin);
    case ObjectColumn::isSize:
        return static_cast<std::int64_t>(object.range().size());
    case ObjectColumn::isState:
        break;
    }
    const ObjectStanding state = standing(index);
    const std::int64_t version = states->nextVersion(index);
    return state == ObjectStanding::isCurrent  ? 0
        : state == ObjectStanding::isDuplicate ? 1
                                               : version + 1;
}

ObjectRows makeObjectRows(const ObjectFacts& facts, const ObjectFilter& filter, ObjectOrder order,
    const std::function<void(std::size_t)>& progress, const std::stop_token& stop)
{
    ObjectRows rows;
    rows.total = facts.states->count();
    const Matcher matcher(facts, filter);
    FirstRows first(order.isDescending);
    for (std::size_t index = 0; index < facts.catalog().size(); ++index) {
        if (index % objectsBetweenLooks == 0) {
            if (stop.stop_requested())
                break;
            if (progress)
                progress(index);
        }
        if (facts.states->isRepetition(index) || !matcher.matches(index))
            continue;
        ++rows.matching;
        first.add(facts.value(index, order.column), index);
    }
    rows.shown = first.sorted();
    return rows;
}

} // namespace tarnwick
