#pragma once

#include "files/FileBytes.h"
#include "protocol/EngineProtocol.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <optional>
#include <string_view>

class QProcess;
class QSocketNotifier;

namespace tarnwick {

/// Path of the engine's executable (helperProgram).
QString pdfEnginePath();
/// For tests: another program to be run as the engine from now on; empty for the usual one.
void setPDFEnginePathForTests(const QString& path);

/// One running engine and the pipes to it.
///
/// The answers come through a pipe of our own, a portion at each turn of the event loop and
/// straight to where they stay: QProcess gathers all that there is, and copies it, in one.
///
/// Destroying it ends the engine at once, without waiting for it. Main thread only.
class PDFEngineProcess : public QObject
{
    Q_OBJECT

public:
    explicit PDFEngineProcess(QObject* parent = nullptr);
    ~PDFEngineProcess() override;

    /// Starts the engine on a file. It gets nothing of the program's environment.
    /// @param writesFile it also gets shared memory to write the flattened or printed document
    /// into:
    ///   of the size of largestWrittenFile(), which nothing can make larger. @returns false
    ///   when the system does not let it start.
    bool start(const FileBytes& bytes, bool writesFile);

    /// Sends a request; the number comes back with its answers. One at a time: what comes when the
    /// request has been answered, or carries another number, is no answer.
    /// @param largest bytes that the result may have. @param processorTime milliseconds that the
    ///   engine may compute; without a request it may for a second or two, after which it ends.
    void send(std::uint32_t number, EngineRequest kind, std::string_view payload,
        std::uint32_t largest, int processorTime);

    /// Seals and takes over what the engine has written. @param size bytes of it, as it says.
    /// @returns nothing when there is no room for so many, or when it was taken before.
    std::optional<FileBytes> takeFile(std::size_t size);

    /// Whether there is, or was, an engine at all.
    bool hasStarted() const { return theStart; }

    /// For tests: the engine's process id, 0 when it does not run.
    qint64 processId() const;

signals:
    /// An answer to the request. The frame's size and kind have been checked, what the payload says
    /// has not.
    void answered(EngineAnswer kind, const QByteArray& payload);
    /// The engine has gone, or sent what is no answer. Emitted once.
    void ended(bool sentNonsense);

private:
    bool makePipe();
    bool makeOutput(std::size_t fileSize);
    void readAnswers();
    void readRest();
    bool readSome(std::size_t& budget);
    bool isAnswer(const EngineFrame& frame) const;
    bool takeHead();
    void takePayload();
    void end(bool sentNonsense = false);

    QProcess* theProcess; ///< outlives this object until the system has reaped the engine
    int theAnswers = -1; ///< our end of the pipe
    int theAnswersWriteEnd = -1; ///< the engine's, until it has started
    QSocketNotifier* theNotifier = nullptr;
    EngineFrame theFrame; ///< head of the answer that is on its way
    std::size_t theHeadSize = 0; ///< bytes of it that have come
    QByteArray thePayload;
    std::size_t thePayloadSize = 0; ///< bytes of it that have come
    int theOutput = -1;
    bool theStart = false;
    bool theEnd = false;
    bool theRequestIsOpen = false; ///< sent, and without its last answer
    std::uint32_t theRequest = 0;
    std::uint32_t theLargestResult = 0;
};

} // namespace tarnwick
