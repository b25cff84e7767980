#include "PDFEngineClient.h"

#include "PDFEngineAnswers.h"
#include "PDFEngineProcess.h"
#include "pdf/FailureText.h"

#include <QPointer>

namespace tarnwick {

namespace {

constexpr int leastOpeningLimit = 20'000; ///< milliseconds
/// What a file's size adds to it. An engine that has to look for the objects of a damaged file by
/// itself gets through ten times as much when nothing else is going on.
constexpr std::size_t bytesPerMillisecond = 2048;
constexpr int graceForGivenUp = 250; ///< milliseconds
/// A document that was open once opens again unless the machine is out of something.
constexpr int maximumFailedStarts = 2;
constexpr int maximumNonsenses = 3;
constexpr qint64 millisecondsBetweenProgress = 50;
constexpr qsizetype longestResultReadAtOnce = 64 * 1024; ///< bytes

} // namespace

PDFEngineClient::PDFEngineClient(
    const FileBytes& bytes, std::uint64_t writtenSize, QObject* parent, EngineMaker makeEngine)
    : QObject(parent)
    , theBytes(bytes)
    , theEngineMaker(makeEngine ? std::move(makeEngine)
                                : [](QObject* owner) { return new PDFEngineProcess(owner); })
    , theWrittenSize(writtenSize)
{
    theLimit.setSingleShot(true);
    connect(&theLimit, &QTimer::timeout, this, [this] { loseEngine(PDFFailure::isTimedOut); });
}

PDFEngineClient::~PDFEngineClient() = default;

int PDFEngineClient::openingLimit() const
{
    return leastOpeningLimit + static_cast<int>(theBytes.size() / bytesPerMillisecond);
}

void PDFEngineClient::open()
{
    if (theState == State::isOff)
        startEngine();
}

void PDFEngineClient::startEngine()
{
    theEngine = theEngineMaker(this);
    connect(theEngine, &PDFEngine::answered, this, &PDFEngineClient::takeAnswer);
    connect(theEngine, &PDFEngine::ended, this, [this](bool sentNonsense) {
        if (sentNonsense)
            distrustEngine();
        else
            loseEngine(PDFFailure::isEngineDead);
    });
    theState = State::isOpening;
    // A failure to start must not reach the caller before it has connected to the signals.
    if (!theEngine->start(theBytes, theWrittenSize)) {
        QTimer::singleShot(0, theEngine, [this] { loseEngine(PDFFailure::isEngineDead); });
        return;
    }
    if (opensNothing)
        theState = State::isIdle;
    else
        send(EngineRequest::isOpen, {}, openingLimit());
}

void PDFEngineClient::stopEngine()
{
    theLimit.stop();
    if (!theEngine)
        return;
    // It may be an answer of this very engine that is being handled.
    theEngine->disconnect(this);
    theEngine->deleteLater();
    theEngine = nullptr;
    theState = State::isOff;
}

void PDFEngineClient::send(EngineRequest kind, std::string_view payload, int timeLimit)
{
    const Number number = theJob ? theJob->first : ++theLastNumber;
    const std::uint32_t largest = theJob ? theJob->second.largestResult : 0; // openings have none
    theSentKind = kind;
    theProgressReports = 0;
    theSinceProgress.invalidate();
    theEngine->send(number, kind, payload, largest, timeLimit);
    theLimit.start(timeLimit);
}

void PDFEngineClient::unlock(const QString& password)
{
    thePassword = password.toStdString();
    open();
    if (theState != State::isLocked)
        return;
    theState = State::isOpening;
    send(EngineRequest::isUnlock, packed(UnlockRequest{*thePassword}), openingLimit());
}

PDFEngineClient::Number PDFEngineClient::submit(PDFEngineJob job)
{
    const Number number = ++theLastNumber;
    const bool isLatestFirst = job.priority == PDFEngineJob::Priority::isTile;
    const Key key{job.priority, isLatestFirst ? -qint64{number} : qint64{number}};
    theKeys.emplace(number, key);
    theQueue.emplace(key, std::make_pair(number, std::move(job)));
    if (theState == State::isOff && !theJob)
        startEngine();
    if (theState == State::isBroken)
        QMetaObject::invokeMethod(this, &PDFEngineClient::failWaitingJobs, Qt::QueuedConnection);
    else
        startNextJob();
    return number;
}

void PDFEngineClient::giveUp(Number number)
{
    if (const auto place = theKeys.find(number); place != theKeys.end()) {
        theQueue.erase(place->second);
        theKeys.erase(place);
    } else if (theJob && theJob->first == number
        && (theState == State::isBusy || theReading.isRunning())) {
        theJob->second.finish = nullptr;
        theJob->second.progress = nullptr;
        theJob->second.accept = nullptr;
        theJob->second.salvage = nullptr;
        if (!theReading.isRunning())
            theLimit.start(graceForGivenUp);
    }
}

void PDFEngineClient::startNextJob()
{
    if (theState != State::isIdle || theQueue.empty() || theJob)
        return;
    auto entry = theQueue.extract(theQueue.begin());
    theJob = std::move(entry.mapped());
    theKeys.erase(theJob->first);
    theState = State::isBusy;
    send(theJob->second.kind, theJob->second.payload, theJob->second.timeLimit);
}

void PDFEngineClient::takeAnswer(EngineAnswer kind, const QByteArray& payload)
{
    if (theState == State::isOpening)
        takeOpeningAnswer(kind, payload);
    else if (theState == State::isBusy)
        takeJobAnswer(kind, payload);
    else
        distrustEngine();
}

void PDFEngineClient::takeOpeningAnswer(EngineAnswer kind, const QByteArray& payload)
{
    theLimit.stop();
    switch (kind) {
    case EngineAnswer::isOpened:
        return takeFacts(payload);
    case EngineAnswer::isLocked:
        return takeLock(payload);
    case EngineAnswer::isRefused:
        if (const auto refusal = unpacked<RefusedAnswer>(viewOf(payload)))
            return failOpening(QString::fromStdString(refusal->reason));
        return distrustEngine();
    default:
        return distrustEngine();
    }
}

void PDFEngineClient::takeFacts(const QByteArray& payload)
{
    // The same bytes make the same document each time.
    const bool isOther = hasOpenedDocument && payload != theFacts;
    if (isOther || !readOpenedAnswer(viewOf(payload)))
        return distrustEngine();
    theState = State::isIdle;
    theFailedStarts = 0;
    theFacts = payload;
    startNextJob();
    if (!std::exchange(hasOpenedDocument, true))
        emit opened(payload);
}

void PDFEngineClient::takeLock(const QByteArray& payload)
{
    const auto lock = unpacked<LockedAnswer>(viewOf(payload));
    if (!lock || lock->wasTried != (theSentKind == EngineRequest::isUnlock))
        return distrustEngine();
    theState = State::isLocked;
    if (thePassword && !lock->wasTried)
        unlock(QString::fromStdString(*thePassword));
    else if (hasOpenedDocument || isPasswordKnown)
        failOpening(tr("The PDF engine does not take the password any more."));
    else
        emit locked(lock->wasTried);
}

void PDFEngineClient::takeJobAnswer(EngineAnswer kind, const QByteArray& payload)
{
    if (kind == EngineAnswer::isProgress)
        return takeProgress(payload);
    if (kind == EngineAnswer::isDone)
        return takeResult(payload);
    const auto failed = unpacked<FailedAnswer>(viewOf(payload));
    if (kind != EngineAnswer::isFailed || !failed)
        return distrustEngine();
    if (failed->fault == EngineFault::isOutOfMemory)
        return loseEngine(PDFFailure::isOutOfMemory);
    endJob(PDFFailure::isDamaged);
}

void PDFEngineClient::takeResult(const QByteArray& payload)
{
    theLimit.stop();
    const auto& decode = theJob->second.decode;
    if (decode && payload.size() > longestResultReadAtOnce)
        return readElsewhere(payload);
    finishResult(payload, !decode || decode(viewOf(payload)));
}

void PDFEngineClient::readElsewhere(const QByteArray& payload)
{
    const auto read = [payload, decode = theJob->second.decode] { return decode(viewOf(payload)); };
    theReading.start(read, [this, payload](bool isSound) { finishResult(payload, isSound); });
}

void PDFEngineClient::finishResult(const QByteArray& payload, bool isSound)
{
    const auto& accept = theJob->second.accept;
    if (!isSound || (accept && !accept(payload)))
        return distrustEngine();
    endJob(PDFFailure::isNone);
}

/// Of many reports a second, which would hold up the event loop, a few are passed on.
void PDFEngineClient::takeProgress(const QByteArray& payload)
{
    const auto report = unpacked<ProgressAnswer>(viewOf(payload));
    if (!theJob->second.writesFile || !report || (report->total > 0 && report->done > report->total)
        || ++theProgressReports > maximumProgressReports)
        return distrustEngine();
    const bool isSoon
        = theSinceProgress.isValid() && theSinceProgress.elapsed() < millisecondsBetweenProgress;
    if (isSoon || !theJob->second.progress)
        return;
    theSinceProgress.start();
    theJob->second.progress(report->done, report->total);
}

void PDFEngineClient::endJob(PDFFailure failure)
{
    theLimit.stop();
    const PDFEngineJob job = std::move(std::exchange(theJob, std::nullopt)->second);
    if (theState == State::isBusy)
        theState = State::isIdle;
    if (job.writesFile)
        stopEngine();
    if (theState == State::isOff && !theQueue.empty())
        startEngine();
    startNextJob();
    // Last: whoever hears of it may destroy this object.
    if (job.finish)
        job.finish(failure);
}

void PDFEngineClient::loseEngine(PDFFailure failure)
{
    const bool wasOpening = theState == State::isOpening;
    const bool isMissing = theEngine && !theEngine->hasStarted();
    const bool isSaved = theState == State::isBusy && theJob && theJob->second.salvage
        && theJob->second.salvage(failure);
    stopEngine();
    if (theReading.isRunning())
        return; // the engine had sent it whole
    if (!wasOpening && theNonsenses > maximumNonsenses) {
        theState = State::isBroken;
        theBreakage = failure;
        QMetaObject::invokeMethod(this, &PDFEngineClient::failWaitingJobs, Qt::QueuedConnection);
    }
    if (theJob)
        return endJob(isSaved ? PDFFailure::isNone : failure);
    if (!wasOpening)
        return;
    if (isMissing) // no fault of the file's
        return failOpening(
            tr("The PDF engine %1 is missing or cannot be started.").arg(pdfEnginePath()), failure);
    failOpening(failureText(failure, FailedTask::isOpening, openingLimit()), failure);
}

void PDFEngineClient::distrustEngine()
{
    ++theNonsenses;
    if (theJob)
        theJob->second.salvage = nullptr;
    loseEngine(PDFFailure::isEngineDead);
}

void PDFEngineClient::failOpening(const QString& reason, PDFFailure failure)
{
    stopEngine();
    if (hasOpenedDocument && ++theFailedStarts < maximumFailedStarts)
        return startEngine();
    theState = State::isBroken;
    theBreakage = failure;
    const QPointer<PDFEngineClient> self(this);
    failWaitingJobs();
    if (self)
        emit refused(reason);
}

void PDFEngineClient::failWaitingJobs()
{
    const QPointer<PDFEngineClient> self(this);
    while (self && theState == State::isBroken && !theQueue.empty()) {
        auto entry = theQueue.extract(theQueue.begin());
        theKeys.erase(entry.mapped().first);
        if (entry.mapped().second.finish)
            entry.mapped().second.finish(theBreakage);
    }
}

std::optional<FileBytes> PDFEngineClient::takeFile(std::size_t size)
{
    return theEngine ? theEngine->takeFile(size) : std::nullopt;
}

std::optional<FileBytes> PDFEngineClient::takeBeginning(std::size_t most)
{
    return theEngine ? theEngine->takeFile(std::min(theEngine->writtenSoFar(), most))
                     : std::nullopt;
}

qint64 PDFEngineClient::engineProcessId() const
{
    return theEngine ? theEngine->processId() : 0;
}

} // namespace tarnwick
