#include "ObjectConnections.h"

#include "analysis/ReferenceWalk.h"
#include "analysis/SourceTree.h"

#include <algorithm>
#include <array>
#include <limits>

namespace tarnwick {

namespace {

constexpr std::size_t objectsBetweenLooks = 65'536; // at the stop token
constexpr std::uint32_t none = 0xFFFF'FFFF;

/// What readers find without a reference.
constexpr std::array<std::string_view, 3> foundOtherwise{"Trailer", "XRef", "Linearized"};

} // namespace

class ObjectConnections::Walk
{
public:
    Walk(const Basis& basis, ObjectConnections& result)
        : theBasis(basis)
        , theCatalog(basis.source->theCatalog())
        , theResult(result)
    {
    }

    bool run(const std::function<void(std::size_t)>& progress, const std::stop_token& stop)
    {
        findCurrent();
        theResult.theUses.resize(theCurrent.size());
        theFirstTargets.assign(theCatalog.size() + 1, 0);
        const bool isRead = walkReferences(
            theCatalog,
            [this](const ScannedReference& found, std::optional<std::size_t> user) {
                take(found.objNo, user);
            },
            progress, stop);
        if (!isRead)
            return false;
        for (std::size_t index = theOpen; index < theFirstTargets.size(); ++index)
            theFirstTargets[index] = static_cast<std::uint32_t>(theTargets.size());
        countMembers();
        return reach(stop);
    }

private:
    std::size_t unlistedCount() const
    {
        return theBasis.tabled ? theBasis.tabled->unlisted().size() : 0;
    }

    /// Of those that have a place in a table: what a file counts with is not to decide how much
    /// memory is taken.
    std::size_t highestNumber() const
    {
        const std::size_t most = 2 * (theCatalog.size() + unlistedCount()) + 1024;
        std::size_t highest = 0;
        for (std::size_t index = 0; index < theCatalog.size(); ++index) {
            const std::int64_t number = theCatalog.object(index).objNo();
            if (number > 0 && static_cast<std::uint64_t>(number) <= most)
                highest = std::max(highest, static_cast<std::size_t>(number));
        }
        if (unlistedCount() > 0)
            highest = std::max<std::size_t>(highest, theBasis.tabled->unlisted().back().number);
        return std::min(highest, most);
    }
    /// The row of each number that an object in use has.
    void findCurrent()
    {
        theCurrent.assign(highestNumber() + 1, none);
        for (std::size_t index = 0; index < theCatalog.size(); ++index) {
            if (!theBasis.states->isRepetition(index) && theBasis.states->nextVersion(index) == 0)
                setCurrent(theCatalog.object(index).objNo(), index);
        }
        for (std::size_t place = 0; place < unlistedCount(); ++place)
            setCurrent(theBasis.tabled->unlisted()[place].number, theCatalog.size() + place);
        // Of two of a number the table's is current: it comes last.
        std::vector<Other>& others = theResult.theOthers;
        std::reverse(others.begin(), others.end());
        std::stable_sort(others.begin(), others.end());
        const auto isSame
            = [](const Other& one, const Other& next) { return one.number == next.number; };
        others.erase(std::unique(others.begin(), others.end(), isSame), others.end());
    }
    void setCurrent(std::int64_t number, std::size_t row)
    {
        if (number > 0 && static_cast<std::uint64_t>(number) < theCurrent.size())
            theCurrent[static_cast<std::size_t>(number)] = static_cast<std::uint32_t>(row);
        else if (number != trailerNumber)
            theResult.theOthers.push_back({number, row});
    }

    /// References come in the order of their users.
    void take(std::int64_t number, std::optional<std::size_t> user)
    {
        if (number <= 0)
            return;
        count(number);
        if (!user)
            return;
        for (; theOpen <= *user; ++theOpen)
            theFirstTargets[theOpen] = static_cast<std::uint32_t>(theTargets.size());
        constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();
        const auto target = static_cast<std::uint32_t>(
            std::min<std::uint64_t>(static_cast<std::uint64_t>(number), none));
        const bool isRepeated = !theTargets.empty() && theTargets.back() == target
            && theTargets.size() > theFirstTargets[*user];
        if (!isRepeated && theTargets.size() < most)
            theTargets.push_back(target);
    }
    void count(std::int64_t number)
    {
        const auto place = static_cast<std::size_t>(number);
        if (place < theResult.theUses.size())
            theResult.theUses[place] += theResult.theUses[place] < none;
        else if (const Other* const other = theResult.other(number))
            theResult.theOthers[static_cast<std::size_t>(other - theResult.theOthers.data())].uses
                += other->uses < none;
    }
    void countMembers()
    {
        for (std::size_t place = 0; place < unlistedCount(); ++place) {
            if (theBasis.tabled->unlisted()[place].container == 0)
                continue; // its bytes have been gone through
            for (const std::uint32_t number : theBasis.tabled->references(place))
                count(number);
        }
    }

    bool reach(const std::stop_token& stop)
    {
        theResult.theIsReached.assign(theCatalog.size() + unlistedCount(), false);
        enterRoots();
        for (std::size_t steps = 0; !theWaiting.empty(); ++steps) {
            if (steps % objectsBetweenLooks == 0 && stop.stop_requested())
                return false;
            const std::size_t row = theWaiting.back();
            theWaiting.pop_back();
            follow(row);
        }
        markOthers();
        return true;
    }
    void enterRoots()
    {
        if (theBasis.tabled) {
            for (const std::uint32_t number : theBasis.tabled->roots())
                enter(number);
        }
        if (const std::optional<pdfObject> start = SourceTree(theCatalog).start())
            enterRow(start->index());
    }
    void enter(std::int64_t number)
    {
        if (static_cast<std::uint64_t>(number) < theCurrent.size()) {
            if (theCurrent[static_cast<std::size_t>(number)] != none)
                enterRow(theCurrent[static_cast<std::size_t>(number)]);
            return;
        }
        if (const Other* const other = theResult.other(number))
            enterRow(other->row);
    }
    void enterRow(std::size_t row)
    {
        if (theResult.theIsReached[row])
            return;
        theResult.theIsReached[row] = true;
        theWaiting.push_back(row);
    }
    void follow(std::size_t row)
    {
        if (row >= theCatalog.size()) {
            const std::size_t place = row - theCatalog.size();
            if (theBasis.tabled->unlisted()[place].container > 0)
                enter(theBasis.tabled->unlisted()[place].container);
            for (const std::uint32_t number : theBasis.tabled->references(place))
                enter(number);
            return;
        }
        for (std::size_t at = theFirstTargets[row]; at < theFirstTargets[row + 1]; ++at)
            enter(theTargets[at]);
    }

    /// Of what is not in use nobody asks whether something leads to it.
    void markOthers()
    {
        std::vector<bool> isOtherwise;
        for (const std::string& name : theBasis.kinds->names())
            isOtherwise.push_back(std::find(foundOtherwise.begin(), foundOtherwise.end(), name)
                != foundOtherwise.end());
        isOtherwise.push_back(false);
        for (std::size_t index = 0; index < theCatalog.size(); ++index) {
            if (theBasis.states->isRepetition(index) || theBasis.states->nextVersion(index) != 0
                || isOtherwise[theBasis.kinds->nameOf(index)])
                theResult.theIsReached[index] = true;
        }
    }

    const Basis& theBasis;
    const pdfObjectCatalog& theCatalog;
    ObjectConnections& theResult;
    std::vector<std::uint32_t> theCurrent; ///< rows by number
    std::vector<std::uint32_t> theFirstTargets; ///< of each record its place in theTargets
    std::vector<std::uint32_t> theTargets; ///< numbers that records refer to
    std::size_t theOpen = 0; ///< the first record whose place is not known yet
    std::vector<std::size_t> theWaiting;
};

std::shared_ptr<const ObjectConnections> ObjectConnections::of(const Basis& basis,
    const std::function<void(std::size_t)>& progress, const std::stop_token& stop)
{
    std::shared_ptr<ObjectConnections> connections(new ObjectConnections);
    return Walk(basis, *connections).run(progress, stop) ? connections : nullptr;
}

const ObjectConnections::Other* ObjectConnections::other(std::int64_t number) const
{
    const auto found = std::lower_bound(theOthers.begin(), theOthers.end(), Other{number});
    return found != theOthers.end() && found->number == number ? &*found : nullptr;
}

std::size_t ObjectConnections::uses(std::int64_t number) const
{
    if (number > 0 && static_cast<std::uint64_t>(number) < theUses.size())
        return theUses[static_cast<std::size_t>(number)];
    const Other* const found = other(number);
    return found ? found->uses : 0;
}

} // namespace tarnwick
