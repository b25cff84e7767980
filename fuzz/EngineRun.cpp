#include "EngineRun.h"

#include "FuzzTarget.h"

#include "EngineServer.h"

#include <sys/mman.h>
#include <unistd.h>

namespace tarnwick {

namespace {

/// A file in memory that stays open for the process's life and is used again.
int emptied(int& descriptor)
{
    if (descriptor < 0)
        descriptor = ::memfd_create("fuzz", MFD_CLOEXEC);
    require(descriptor >= 0 && ::ftruncate(descriptor, 0) == 0, "no memory for a file");
    ::lseek(descriptor, 0, SEEK_SET);
    return descriptor;
}

std::string contentOf(int descriptor)
{
    std::string bytes(static_cast<std::size_t>(::lseek(descriptor, 0, SEEK_END)), '\0');
    const ssize_t got = ::pread(descriptor, bytes.data(), bytes.size(), 0);
    require(got == static_cast<ssize_t>(bytes.size()), "a file's content");
    return bytes;
}

std::vector<EngineRun::Answer> answersIn(std::string_view bytes)
{
    std::vector<EngineRun::Answer> answers;
    while (!bytes.empty()) {
        EngineRun::Answer answer;
        require(bytes.size() >= sizeof answer.frame, "half a frame");
        std::memcpy(&answer.frame, bytes.data(), sizeof answer.frame);
        bytes.remove_prefix(sizeof answer.frame);
        require(answer.frame.size <= bytes.size(), "a frame without its payload");
        answer.payload = bytes.substr(0, answer.frame.size);
        bytes.remove_prefix(answer.frame.size);
        answers.push_back(std::move(answer));
    }
    return answers;
}

} // namespace

EngineRun::EngineRun(std::string_view file, std::string_view requests)
{
    static int input = -1;
    static int output = -1;
    static int flat = -1;
    const auto size = static_cast<ssize_t>(requests.size());
    require(::write(emptied(input), requests.data(), requests.size()) == size, "no requests");
    ::lseek(input, 0, SEEK_SET);
    require(::dup2(input, STDIN_FILENO) >= 0 && ::dup2(emptied(output), STDOUT_FILENO) >= 0,
        "no descriptors");
    EngineServer(file, emptied(flat)).run();
    theAnswers = answersIn(contentOf(output));
    theWritten = contentOf(flat);
}

} // namespace tarnwick
