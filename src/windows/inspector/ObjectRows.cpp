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
        if (!theFacts.isListed(index))
            return isKindMatching(theFacts.kind(index));
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

std::size_t ObjectFacts::rowCount() const
{
    return catalog().size() + (tabled ? tabled->unlisted().size() : 0);
}

std::int64_t ObjectFacts::number(std::size_t row) const
{
    return isListed(row) ? catalog().object(row).objNo() : std::int64_t{unlisted(row).number};
}

std::string ObjectFacts::kind(std::size_t row) const
{
    return isListed(row) ? kinds->kind(row) : tabled->kindOf(row - catalog().size());
}

ObjectStanding ObjectFacts::standing(std::size_t row) const
{
    if (isListed(row)) {
        if (const std::uint32_t next = states->nextVersion(row))
            return next == catalog().object(row).objVer() ? ObjectStanding::isDuplicate
                                                          : ObjectStanding::isReplaced;
        const auto entry = tabled ? tabled->entry(number(row)) : TabledObjects::Entry::isMissing;
        if (entry == TabledObjects::Entry::isFreed)
            return ObjectStanding::isFreed;
        if (entry == TabledObjects::Entry::isUnlisted)
            return ObjectStanding::isReplaced;
    } else if (!unlisted(row).isReadable) {
        return ObjectStanding::isUnreadable;
    }
    return connections && !connections->isReached(row) ? ObjectStanding::isUnreachable
                                                       : ObjectStanding::isCurrent;
}

std::int64_t ObjectFacts::endingVersion(std::size_t row) const
{
    if (!isListed(row))
        return 0;
    const std::uint32_t next = states->nextVersion(row);
    if (next > 0 || !tabled)
        return next;
    const std::optional<std::size_t> successor = tabled->find(number(row));
    const std::int64_t version = successor ? std::int64_t{tabled->unlisted()[*successor].version}
                                           : tabled->freedIn(number(row));
    return version < catalog().object(row).objVer() ? 0 : version; // saves are no markers
}

namespace {

std::int64_t valueOf(const pdfObject& object, ObjectColumn column)
{
    switch (column) {
    case ObjectColumn::isGeneration:
        return object.objGen();
    case ObjectColumn::isVersion:
        return object.objVer();
    case ObjectColumn::isOffset:
        return static_cast<std::int64_t>(object.range().begin);
    case ObjectColumn::isSize:
        return static_cast<std::int64_t>(object.range().size());
    default:
        return 0;
    }
}

std::int64_t valueOf(const TabledObjects::Unlisted& object, ObjectColumn column)
{
    switch (column) {
    case ObjectColumn::isGeneration:
        return object.generation;
    case ObjectColumn::isVersion:
        return object.version;
    case ObjectColumn::isOffset:
        return static_cast<std::int64_t>(object.offset);
    case ObjectColumn::isContainer:
        return object.container > 0 ? containerValue(object.container, object.index) : 0;
    default:
        return 0;
    }
}

} // namespace

/// Kinds that the listing does not have stand between those that it has.
std::int64_t ObjectFacts::kindOrder(std::size_t row) const
{
    constexpr std::int64_t step = std::int64_t{1} << 32;
    if (isListed(row))
        return static_cast<std::int64_t>(kinds->nameOf(row)) * step;
    const std::vector<std::string>& names = kinds->names();
    const std::string kind = this->kind(row);
    const auto next = std::lower_bound(names.begin(), names.end(), kind);
    const std::int64_t order = (next - names.begin()) * step;
    return next != names.end() && *next == kind ? order : order - step / 2 + unlisted(row).kind;
}

std::int64_t ObjectFacts::value(std::size_t row, ObjectColumn column) const
{
    switch (column) {
    case ObjectColumn::isNumber:
        return number(row);
    case ObjectColumn::isKind:
        return kindOrder(row);
    case ObjectColumn::isUses:
        return connections ? static_cast<std::int64_t>(connections->uses(number(row))) : 0;
    case ObjectColumn::isState:
        break;
    default:
        return isListed(row) ? valueOf(catalog().object(row), column)
                             : valueOf(unlisted(row), column);
    }
    const ObjectStanding state = standing(row);
    constexpr auto ended = static_cast<std::int64_t>(ObjectStanding::isFreed);
    const auto order = static_cast<std::int64_t>(state);
    return order < ended ? order : ended + 2 * endingVersion(row) + (order - ended);
}

ObjectRows makeObjectRows(const ObjectFacts& facts, const ObjectFilter& filter, ObjectOrder order,
    const std::function<void(std::size_t)>& progress, const std::stop_token& stop)
{
    ObjectRows rows;
    rows.total = facts.states->count() + (facts.rowCount() - facts.catalog().size());
    const Matcher matcher(facts, filter);
    FirstRows first(order.isDescending);
    for (std::size_t index = 0; index < facts.rowCount(); ++index) {
        if (index % objectsBetweenLooks == 0) {
            if (stop.stop_requested())
                break;
            if (progress)
                progress(index);
        }
        if ((facts.isListed(index) && facts.states->isRepetition(index)) || !matcher.matches(index))
            continue;
        ++rows.matching;
        first.add(facts.value(index, order.column), index);
    }
    rows.shown = first.sorted();
    return rows;
}

} // namespace tarnwick
