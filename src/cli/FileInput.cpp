#include "FileInput.h"

#include "files/ErrorText.h"
#include "files/LargePages.h"
#include "files/OpenedFiles.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnwick {

namespace {

/// Memory that grows to the size of the input; realloc() moves its pages instead of copying them.
class GrowingBuffer
{
public:
    GrowingBuffer() = default;
    GrowingBuffer(const GrowingBuffer&) = delete;
    GrowingBuffer& operator=(const GrowingBuffer&) = delete;
    ~GrowingBuffer() { std::free(theBytes); }

    bool reserve(std::size_t capacity)
    {
        void* bytes = std::realloc(theBytes, capacity);
        if (!bytes)
            return false;
        theBytes = static_cast<char*>(bytes);
        theCapacity = capacity;
        preferLargePages(theBytes + theSize, theCapacity - theSize);
        return true;
    }

    /// Reads to the end of the input. @returns 0 or an errno value.
    int fill(int input)
    {
        for (;;) {
            if (theSize == theCapacity && !reserve(theCapacity * 2))
                return ENOMEM;
            const ssize_t got = ::read(input, theBytes + theSize, theCapacity - theSize);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                return errno;
            if (got == 0)
                return 0;
            theSize += static_cast<std::size_t>(got);
        }
    }

    SharedBytes release()
    {
        const std::shared_ptr<const void> owner(theBytes, [](void* bytes) { std::free(bytes); });
        const std::string_view view(theBytes, theSize);
        theBytes = nullptr;
        return {view, owner};
    }

private:
    char* theBytes = nullptr;
    std::size_t theSize = 0;
    std::size_t theCapacity = 0;
};

/// @returns 0 or an errno value.
int readAll(int input, GrowingBuffer& buffer)
{
    struct stat status = {};
    if (::fstat(input, &status) != 0)
        return errno;
    if (S_ISDIR(status.st_mode))
        return EISDIR;
    // One byte more than the file has, so that its end is seen without growing.
    const auto expected = S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
    if (!buffer.reserve(expected + 65536))
        return ENOMEM;
    return buffer.fill(input);
}

} // namespace

void neverWrite(int input, const std::string& path)
{
    static auto& entries = *new std::vector<OpenedFiles::Entry>; // kept to the end of the program
    entries.push_back(OpenedFiles::add(input, path));
}

void neverWrite(const std::string& path)
{
    // Not for reading: a pipe's writer would find its reader gone afterwards.
    const int file = ::open(path.c_str(), O_PATH | O_CLOEXEC);
    if (file < 0)
        return;
    neverWrite(file, path);
    ::close(file);
}

std::optional<SharedBytes> readInput(const std::string& path, std::string& reason)
{
    const bool isStandardInput = path == "-";
    const int input = isStandardInput ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (input >= 0)
        neverWrite(input, isStandardInput ? std::string() : path);
    GrowingBuffer buffer;
    const int error = input < 0 ? errno : readAll(input, buffer);
    if (input >= 0 && !isStandardInput)
        ::close(input);
    if (error != 0) {
        reason = errorText(error);
        return std::nullopt;
    }
    return buffer.release();
}

} // namespace tarnwick
