#pragma once

#include "files/FileBytes.h"
#include "protocol/EngineProtocol.h"

#include <QByteArray>
#include <QObject>

#include <optional>
#include <string_view>

namespace tarnwick {

/// One running engine, as whoever keeps it at work sees it. Destroying it ends the engine at once,
/// without waiting for it. Main thread only.
class PDFEngine : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Starts the engine on a file.
    /// @param writtenSize bytes of shared memory that it also gets to write a file into, which
    ///   nothing can make larger; 0 for none. @returns false when the system does not let it start.
    virtual bool start(const FileBytes& bytes, std::uint64_t writtenSize) = 0;

    /// Sends a request; the number comes back with its answers. One at a time: what comes when the
    /// request has been answered, or carries another number, is no answer.
    /// @param largest bytes that the result may have. @param processorTime milliseconds that the
    ///   engine may compute; without a request it may for a second or two, after which it ends.
    virtual void send(std::uint32_t number, EngineRequest kind, std::string_view payload,
        std::uint32_t largest, int processorTime)
        = 0;

    /// Seals and takes over what the engine has written. @param size bytes of it, as it says.
    /// @returns nothing when there is no room for so many, or when it was taken before.
    virtual std::optional<FileBytes> takeFile(std::size_t size) = 0;

    /// Bytes that the engine has written so far, before it says how many there are.
    virtual std::size_t writtenSoFar() const { return 0; }

    /// Whether there is, or was, an engine at all.
    virtual bool hasStarted() const = 0;

    /// For tests: the engine's process id, 0 when it does not run.
    virtual qint64 processId() const = 0;

signals:
    /// An answer to the request. The frame's size and kind have been checked, what the payload says
    /// has not.
    void answered(EngineAnswer kind, const QByteArray& payload);
    /// The engine has gone, or sent what is no answer. Emitted once.
    void ended(bool sentNonsense);
};

} // namespace tarnwick
