#pragma once

#include "files/FileBytes.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <functional>

namespace tarnwick {

/// Milliseconds that the engine may take for a page, unless a request says otherwise.
constexpr int pdfPageTimeLimit = 20'000;

/// Why a request to the PDF engine brought no result.
enum class PDFFailure
{
    isNone, ///< there is a result
    isCancelled, ///< cancel() was called
    isEngineDead, ///< the engine's process ended on this request
    isOutOfMemory, ///< the engine reached its memory limit
    isTimedOut, ///< the engine took longer than the request may take
    isDamaged, ///< the engine could not make sense of this part of the file
};

/// One piece of work that the PDF engine has been asked for; answered through the event loop.
///
/// Made by PDFDocument, owned by the parent given there: destroying it cancels it, so a window that
/// owns its requests may close at any time. finished() is emitted exactly once, never from inside
/// the call that made the request, and not at all after cancel() or destruction.
class PDFRequest : public QObject
{
    Q_OBJECT

public:
    bool isFinished() const { return theState != State::isRunning; }
    PDFFailure failure() const { return theFailure; }
    /// Milliseconds that the engine may take for it, once it starts on it.
    int timeLimit() const { return theTimeLimit; }
    bool succeeded() const { return isFinished() && theFailure == PDFFailure::isNone; }

    /// Gives the work up; an engine that is busy with it is ended and replaced. Safe at any time.
    void cancel();

signals:
    /// @param done, total pages or objects; total is 0 while it is unknown.
    void progressed(int done, int total);
    void finished();

protected:
    explicit PDFRequest(QObject* parent);
    ~PDFRequest() override;

private:
    friend class PDFDocument;
    friend class PDFPageWork;
    enum class State
    {
        isRunning,
        isFinished
    };
    void finish(PDFFailure failure);
    /// Tells the engine's queue, once, that nobody waits any longer.
    void giveUp();

    State theState = State::isRunning;
    PDFFailure theFailure = PDFFailure::isNone;
    int theTimeLimit = pdfPageTimeLimit;
    std::function<void()> theGiveUp;
};

} // namespace tarnwick
