#pragma once

#include "ObjectRows.h"
#include "work/Work.h"

#include <QObject>

#include <memory>
#include <optional>

namespace tarnwick {

/// Makes the rows of the table of objects in threads: what the rows need to be known first, then
/// the rows, and behind them what the next filter may ask for: the kinds of all objects, and how
/// they are connected.
class ObjectRowsMaker : public QObject
{
    Q_OBJECT

public:
    enum class Step
    {
        isRows,
        isTable, ///< waiting for the file's table
        isKinds, ///< reading what kind each object is of
        isConnections, ///< reading what objects refer to
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

    /// Gives up what is being made and forgets all rows. @param source scanned; null for none. Its
    /// file's table is waited for.
    void setSource(std::shared_ptr<const SourceText> source);
    /// Null before setSource().
    const std::shared_ptr<const SourceText>& source() const { return theFacts.source; }
    /// What the file's table tells; null where it is not to be had. Rows are made anew where there
    /// are others now.
    void setTabled(std::shared_ptr<const TabledObjects> tabled);

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
    /// Kinds or connections are known, or are not going to be for now.
    void factsFinished();

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
    bool needsColumn(ObjectColumn column) const;
    bool needsConnections() const;
    bool needsKinds() const;
    bool needsTable() const;
    bool hasHiddenObjects() const;
    bool isLearning() const { return theKindsWork.isRunning() || theConnectionsWork.isRunning(); }
    void proceed();
    void makeKinds();
    void makeConnections();
    void takeFact(bool isThere);
    void makeRows();
    void takeRows(std::optional<Made> made);
    void learnMore();
    void finish(Outcome outcome);
    void releaseFacts();

    ObjectFacts theFacts;
    ObjectRows theRows;
    std::optional<Wanted> theWanted;
    std::optional<Wanted> theLast; ///< that rows were made for
    bool isTableAwaited = true;
    Work theRowsWork;
    Work theKindsWork;
    Work theConnectionsWork; ///< never beside theKindsWork
};

} // namespace tarnwick
