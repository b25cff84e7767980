#include "EnginePipe.h"

#include <cerrno>

#include <unistd.h>

namespace tarnwick {

namespace {

bool readWhole(void* target, std::size_t size)
{
    char* place = static_cast<char*>(target);
    while (size > 0) {
        const ssize_t got = ::read(STDIN_FILENO, place, size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        place += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

void writeWhole(const void* source, std::size_t size)
{
    const char* place = static_cast<const char*>(source);
    while (size > 0) {
        const ssize_t written = ::write(STDOUT_FILENO, place, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            ::_exit(1);
        place += written;
        size -= static_cast<std::size_t>(written);
    }
}

} // namespace

std::optional<EnginePipe::Request> EnginePipe::read()
{
    EngineFrame frame;
    if (!readWhole(&frame, sizeof frame) || frame.size > EngineRequests::largestRequest())
        return std::nullopt;
    Request request{frame.request, static_cast<EngineRequest>(frame.kind), {}};
    request.payload.resize(frame.size);
    if (!readWhole(request.payload.data(), request.payload.size()))
        return std::nullopt;
    return request;
}

void EnginePipe::answer(std::uint32_t number, EngineAnswer kind, std::string_view payload)
{
    EngineFrame frame;
    frame.size = static_cast<std::uint32_t>(payload.size());
    frame.request = number;
    frame.kind = static_cast<std::uint8_t>(kind);
    writeWhole(&frame, sizeof frame);
    writeWhole(payload.data(), payload.size());
}

} // namespace tarnwick
