#pragma once

#include "ObjectRows.h"
#include "work/Work.h"

#include <QObject>

#include <memory>
#include <optional>

namespace tarnwick {

/// Makes the rows of the table of objects in threads: what the rows need to be known first, then
/// the rows, and behind them the kinds of all objects, which the next filter may ask for.
class ObjectRowsMaker : public QObject
{
    Q_OBJECT

public:
    enum class Step
    {
        isRows,
        isKinds, ///< reading what kind each object is of
    };
    enum class Outcome
    {
        isMade,
        isStopped, ///< the rows are still those of before
        isOutOfMemory, ///< likewise
    };

    explicit ObjectRowsMaker(QObject* parent)
        : QObject(parent)
    {
    }
    ~ObjectRowsMaker() override;

    /// Gives up what is being made and forgets all rows. @param source scanned; null for none.
    void setSource(std::shared_ptr<const SourceText> source);
    /// Null before setSource().
    const std::shared_ptr<const SourceText>& source() const { return theFacts.source; }

    /// Makes rows in a thread; finished() follows. Gives up those that are being made.
    /// Precondition: source().
    void make(const ObjectFilter& filter, ObjectOrder order);
    /// Whether rows are asked for that finished() has not been told of.
    bool isMaking() const { return theWanted.has_value(); }
    /// Gives up whatever is being made.
    void stop();

    /// What is known by now; its states are there with the first rows.
    const ObjectFacts& facts() const { return theFacts; }
    /// Those made last.
    const ObjectRows& rows() const { return theRows; }

signals:
    /// @param isWaitedFor whether rows wait for it.
    void progressed(
        tarnwick::ObjectRowsMaker::Step step, quint64 done, quint64 total, bool isWaitedFor);
    void finished(tarnwick::ObjectRowsMaker::Outcome outcome);
    /// All kinds are known, or are not going to be for now.
    void kindsFinished();

private:
    struct Wanted
    {
        ObjectFilter filter;
        ObjectOrder order;
    };
    struct Made
    {
        ObjectRows rows;
        std::shared_ptr<const ObjectStates> states;
    };
    bool needsKinds() const;
    void makeKinds();
    void takeKinds(std::shared_ptr<const ObjectKinds> kinds);
    void makeRows();
    void takeRows(std::optional<Made> made);
    void finish(Outcome outcome);
    void releaseFacts();

    ObjectFacts theFacts;
    ObjectRows theRows;
    std::optional<Wanted> theWanted;
    Work theRowsWork;
    Work theKindsWork;
};

} // namespace tarnwick
