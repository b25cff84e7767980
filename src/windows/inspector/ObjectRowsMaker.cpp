#include "ObjectRowsMaker.h"

#include "work/WorkThreads.h"

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
    theWanted.reset();
    theRows = {};
    releaseFacts();
    theFacts.source = std::move(source);
}

void ObjectRowsMaker::make(const ObjectFilter& filter, ObjectOrder order)
{
    theRowsWork.abandon();
    theWanted = {filter, order};
    if (!needsKinds() || theFacts.kinds)
        makeRows();
    else if (!theKindsWork.isRunning())
        makeKinds();
}

bool ObjectRowsMaker::needsKinds() const
{
    return theWanted->filter.asksForKinds() || theWanted->order.column == ObjectColumn::isKind;
}

void ObjectRowsMaker::makeKinds()
{
    theKindsWork.start(
        [source = theFacts.source](const std::stop_token& stop,
            const Work::Report& report) -> std::shared_ptr<const ObjectKinds> {
            try {
                const pdfObjectCatalog& catalog = source->theCatalog();
                return ObjectKinds::of(
                    catalog, [&](std::size_t done) { report(done, catalog.size()); }, stop);
            } catch (const std::bad_alloc&) {
                return nullptr;
            }
        },
        [this](std::shared_ptr<const ObjectKinds> kinds) { takeKinds(std::move(kinds)); },
        [this](quint64 done, quint64 total) {
            emit progressed(Step::isKinds, done, total, isMaking() && needsKinds());
        });
}

void ObjectRowsMaker::takeKinds(std::shared_ptr<const ObjectKinds> kinds)
{
    theFacts.kinds = std::move(kinds);
    emit kindsFinished();
    if (!isMaking() || theRowsWork.isRunning())
        return;
    if (theFacts.kinds)
        makeRows();
    else
        finish(Outcome::isOutOfMemory);
}

void ObjectRowsMaker::makeRows()
{
    theRowsWork.start(
        [facts = theFacts, wanted = *theWanted](const std::stop_token& stop,
            const Work::Report& report) mutable -> std::optional<Made> {
            try {
                const std::size_t total = facts.catalog().size();
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
    }
    finish(made ? Outcome::isMade : Outcome::isOutOfMemory);
    if (theFacts.states && !theFacts.kinds && !theKindsWork.isRunning() && !isMaking())
        makeKinds();
}

void ObjectRowsMaker::finish(Outcome outcome)
{
    theWanted.reset();
    emit finished(outcome);
}

void ObjectRowsMaker::stop()
{
    const bool wasReading = theKindsWork.isRunning();
    theRowsWork.abandon();
    theKindsWork.abandon();
    if (wasReading)
        emit kindsFinished();
    if (isMaking())
        finish(Outcome::isStopped);
}

} // namespace tarnwick
