#pragma once

#include "PDFEngineJob.h"
#include "files/FileBytes.h"
#include "pdf/PDFRequest.h"
#include "work/Work.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace tarnwick {

class PDFEngine;

/// Keeps an engine at work: a queue of jobs, one at a time, each with its time limit.
///
/// An engine that ends, stalls, answers nonsense or runs out of memory is replaced for the next
/// job; the job that it was at fails. No sound engine answers nonsense: when it has happened a few
/// times, the file is in command, and no further engine is started on it. Main thread only; nothing
/// here waits.
class PDFEngineClient : public QObject
{
    Q_OBJECT

public:
    using Number = std::uint32_t;
    using EngineMaker = std::function<PDFEngine*(QObject* parent)>;

    /// @param writtenSize bytes of memory that the engine gets for a file that it writes; it is
    ///   replaced after having written one, which gives back what that took. 0 for an engine that
    ///   writes none. @param makeEngine for each engine; processes, when left out.
    PDFEngineClient(const FileBytes& bytes, std::uint64_t writtenSize, QObject* parent,
        EngineMaker makeEngine = {});
    ~PDFEngineClient() override;

    /// Starts the engine unless it runs; the first job does so as well.
    void open();
    /// Sends a password and keeps it for the engines to come.
    void unlock(const QString& password);
    /// For an engine beside one that has opened the document: its password, if it has one. Nobody
    /// is asked again.
    void setPassword(const std::optional<std::string>& password)
    {
        thePassword = password;
        isPasswordKnown = true;
    }
    const std::optional<std::string>& password() const { return thePassword; }
    /// For an engine that is asked for nothing that needs an open document. To be called before
    /// its first job.
    void opensNoDocument() { opensNothing = true; }

    Number submit(PDFEngineJob job);
    /// Forgets a job. One that runs gets a quarter of a second to end by itself, so that quick work
    /// does not cost an engine. Unknown numbers are ignored.
    void giveUp(Number number);

    /// The file that the engine has just written: to be called from
    /// accept() alone.
    std::optional<FileBytes> takeFile(std::size_t size);
    /// What the engine has written so far of a file of at most so many bytes: to be called from
    /// salvage() alone.
    std::optional<FileBytes> takeBeginning(std::size_t most);

    /// The document cannot be opened any more: every job fails.
    bool isBroken() const { return theState == State::isBroken; }

    /// For tests: the process id of the engine, 0 when none runs.
    qint64 engineProcessId() const;

signals:
    /// The engine has opened the document. @param facts payload of isOpened.
    void opened(const QByteArray& facts);
    /// It wants a password. @param wasWrong the one that was sent is not it.
    void locked(bool wasWrong);
    /// It cannot open the document. @param reason a sentence for the user.
    void refused(const QString& reason);

private:
    enum class State
    {
        isOff, ///< no engine; the next job starts one
        isOpening,
        isLocked,
        isIdle,
        isBusy,
        isBroken, ///< the document cannot be opened (again): every job fails
    };
    using Key = std::pair<PDFEngineJob::Priority, qint64>;

    /// How long the engine may take to open the file, in milliseconds.
    int openingLimit() const;
    void startEngine();
    void stopEngine();
    void startNextJob();
    void takeAnswer(EngineAnswer kind, const QByteArray& payload);
    void takeOpeningAnswer(EngineAnswer kind, const QByteArray& payload);
    void takeJobAnswer(EngineAnswer kind, const QByteArray& payload);
    void takeFacts(const QByteArray& payload);
    void takeLock(const QByteArray& payload);
    void takeProgress(const QByteArray& payload);
    void takeResult(const QByteArray& payload);
    void readElsewhere(const QByteArray& payload);
    /// @param isSound what decode made of the result.
    void finishResult(const QByteArray& payload, bool isSound);
    void loseEngine(PDFFailure failure);
    /// Ends an engine that has sent what no engine sends.
    void distrustEngine();
    void failOpening(const QString& reason, PDFFailure failure = PDFFailure::isEngineDead);
    void endJob(PDFFailure failure);
    void send(EngineRequest kind, std::string_view payload, int timeLimit);
    void failWaitingJobs();

    FileBytes theBytes;
    EngineMaker theEngineMaker;
    std::uint64_t theWrittenSize;
    std::optional<std::string> thePassword;
    bool isPasswordKnown = false;
    PDFEngine* theEngine = nullptr;
    State theState = State::isOff;
    bool hasOpenedDocument = false;
    bool opensNothing = false;
    QByteArray theFacts; ///< payload of isOpened: each engine on the file says the same
    int theFailedStarts = 0;
    int theNonsenses = 0;
    std::uint32_t theProgressReports = 0; ///< of the present job
    Work theReading; ///< of a result, in a thread; the engine may be gone meanwhile
    QElapsedTimer theSinceProgress;
    PDFFailure theBreakage = PDFFailure::isEngineDead; ///< what every job fails with when broken
    QTimer theLimit;
    Number theLastNumber = 0;
    EngineRequest theSentKind = EngineRequest::isOpen;
    std::map<Key, std::pair<Number, PDFEngineJob>> theQueue;
    std::map<Number, Key> theKeys; ///< where a waiting job stands in the queue
    std::optional<std::pair<Number, PDFEngineJob>> theJob;
};

} // namespace tarnwick
