#include "ObjectRowsMaker.h"

#include "work/WorkThreads.h"

#include <algorithm>
#include <new>
#include <utility>

namespace tarnwick {

ObjectRowsMaker::~ObjectRowsMaker()
{
    releaseFacts();
}

/// Freeing what a file of millions of objects needs holds up whoever does it.
void ObjectRowsMaker::releaseFacts()
{
    if (theFacts.source)
        WorkThreads::run([held = std::exchange(theFacts, {})] {});
}

void ObjectRowsMaker::setSource(std::shared_ptr<const SourceText> source)
{
    theRowsWork.abandon();
    theKindsWork.abandon();
    theConnectionsWork.abandon();
    theWanted.reset();
    theLast.reset();
    theRows = {};
    releaseFacts();
    isTableAwaited = true;
    theFacts.source = std::move(source);
}

void ObjectRowsMaker::setTabled(std::shared_ptr<const TabledObjects> tabled)
{
    isTableAwaited = false;
    theFacts.tabled = std::move(tabled);
    const bool hasOthers = theFacts.tabled && !theFacts.tabled->unlisted().empty();
    if (hasOthers) {
        theFacts.connections.reset();
        theConnectionsWork.abandon();
    }
    if (theWanted || (theLast && hasOthers)) {
        const Wanted wanted = theWanted.value_or(theLast.value_or(Wanted()));
        make(wanted.filter, wanted.order);
    } else {
        emit factsFinished();
        learnMore();
    }
}

void ObjectRowsMaker::make(const ObjectFilter& filter, ObjectOrder order)
{
    theRowsWork.abandon();
    theWanted = {filter, order};
    proceed();
}

// --- What rows need ------------------------------------------------------------------------------

bool ObjectRowsMaker::needsColumn(ObjectColumn column) const
{
    return theWanted->order.column == column || theWanted->filter.asksFor(column);
}

bool ObjectRowsMaker::needsConnections() const
{
    return needsColumn(ObjectColumn::isState) || needsColumn(ObjectColumn::isUses);
}

bool ObjectRowsMaker::needsKinds() const
{
    return theWanted->filter.asksForKinds() || needsColumn(ObjectColumn::isKind)
        || needsConnections();
}

/// Whether there are objects that only the file's table leads to, and what they refer to is not
/// known yet.
bool ObjectRowsMaker::hasHiddenObjects() const
{
    if (!isTableAwaited || !theFacts.kinds)
        return false;
    const std::vector<std::string>& names = theFacts.kinds->names();
    return std::binary_search(names.begin(), names.end(), "ObjStm");
}

bool ObjectRowsMaker::needsTable() const
{
    return needsColumn(ObjectColumn::isContainer) || (needsConnections() && hasHiddenObjects());
}

/// Goes on with what is missing for the rows that are asked for. What is under way in threads comes
/// back here.
void ObjectRowsMaker::proceed()
{
    if (theRowsWork.isRunning() || (isLearning() && needsKinds()))
        return;
    if (needsKinds() && !theFacts.kinds)
        makeKinds();
    else if (needsTable() && isTableAwaited)
        emit progressed(Step::isTable, 0, 0, true);
    else if (needsConnections() && theFacts.states && !theFacts.connections)
        makeConnections();
    else
        makeRows();
}

void ObjectRowsMaker::makeKinds()
{
    using Kinds = std::shared_ptr<const ObjectKinds>;
    theKindsWork.start(
        [source = theFacts.source](
            const std::stop_token& stop, const Work::Report& report) -> Kinds {
            try {
                const pdfObjectCatalog& catalog = source->theCatalog();
                return ObjectKinds::of(
                    catalog, [&](std::size_t done) { report(done, catalog.size()); }, stop);
            } catch (const std::bad_alloc&) {
                return nullptr;
            }
        },
        [this](Kinds kinds) {
            theFacts.kinds = std::move(kinds);
            takeFact(theFacts.kinds != nullptr);
        },
        [this](quint64 done, quint64 total) {
            emit progressed(Step::isKinds, done, total, isMaking() && needsKinds());
        });
}

void ObjectRowsMaker::makeConnections()
{
    using Connections = std::shared_ptr<const ObjectConnections>;
    theConnectionsWork.start(
        [basis = ObjectConnections::Basis{theFacts.source, theFacts.states, theFacts.kinds,
             theFacts.tabled}](
            const std::stop_token& stop, const Work::Report& report) -> Connections {
            try {
                const std::size_t total = basis.source->theCatalog().bytes().size();
                return ObjectConnections::of(
                    basis, [&](std::size_t done) { report(done, total); }, stop);
            } catch (const std::bad_alloc&) {
                return nullptr;
            }
        },
        [this](Connections connections) {
            theFacts.connections = std::move(connections);
            takeFact(theFacts.connections != nullptr);
        },
        [this](quint64 done, quint64 total) {
            emit progressed(Step::isConnections, done, total, isMaking() && needsConnections());
        });
}

/// @param isThere not where memory was short: whoever waits for it is not to wait on.
void ObjectRowsMaker::takeFact(bool isThere)
{
    emit factsFinished();
    if (isMaking() && !isThere && needsKinds())
        finish(Outcome::isOutOfMemory);
    else if (isMaking())
        proceed();
    else if (isThere)
        learnMore();
}

/// What rows do not wait for and the next filter may, while nothing else is to be done.
void ObjectRowsMaker::learnMore()
{
    if (isLearning() || isMaking() || !theFacts.states)
        return;
    if (!theFacts.kinds)
        makeKinds();
    else if (!theFacts.connections && !hasHiddenObjects())
        makeConnections();
}

// --- Rows ----------------------------------------------------------------------------------------

void ObjectRowsMaker::makeRows()
{
    theRowsWork.start(
        [facts = theFacts, wanted = *theWanted](const std::stop_token& stop,
            const Work::Report& report) mutable -> std::optional<Made> {
            try {
                const std::size_t total = facts.rowCount();
                if (!facts.states)
                    facts.states = ObjectStates::of(facts.catalog(), stop);
                if (!facts.states)
                    return std::nullopt;
                ObjectRows rows = makeObjectRows(
                    facts, wanted.filter, wanted.order,
                    [&](std::size_t done) { report(done, total); }, stop);
                return Made{std::move(rows), facts.states};
            } catch (const std::bad_alloc&) {
                return std::nullopt;
            }
        },
        [this](std::optional<Made> made) { takeRows(std::move(made)); },
        [this](quint64 done, quint64 total) { emit progressed(Step::isRows, done, total, true); });
}

void ObjectRowsMaker::takeRows(std::optional<Made> made)
{
    if (made) {
        theRows = std::move(made->rows);
        theFacts.states = std::move(made->states);
        if (needsConnections() && !theFacts.connections)
            return proceed(); // without states there were none
        theLast = theWanted;
    }
    finish(made ? Outcome::isMade : Outcome::isOutOfMemory);
    if (made)
        learnMore();
}

void ObjectRowsMaker::finish(Outcome outcome)
{
    theWanted.reset();
    emit finished(outcome);
}

void ObjectRowsMaker::stop()
{
    const bool wasReading = isLearning();
    theRowsWork.abandon();
    theKindsWork.abandon();
    theConnectionsWork.abandon();
    if (wasReading)
        emit factsFinished();
    if (isMaking())
        finish(Outcome::isStopped);
}

} // namespace tarnwick
