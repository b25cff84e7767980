// The PDF engine: reads one document from shared memory and answers requests on its pipes.
//
// tarnwick-pdf-engine BYTES SIZE [OUTPUT]
//   BYTES    descriptor of sealed shared memory with the file
//   SIZE     its first bytes that are the document: a saved version is less than the file
//   OUTPUT   descriptor of empty shared memory for the flattened or printed document

#include "EngineServer.h"
#include "Lockdown.h"

#include <charconv>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tarnwick;

namespace {

constexpr int pipeSize = 1 << 20;

/// @returns the number that an argument is, or nothing.
template<class Number> std::optional<Number> numberOf(const char* argument)
{
    Number number = {};
    const char* const end = argument + std::strlen(argument);
    const auto [parsed, error] = std::from_chars(argument, end, number);
    return error == std::errc() && parsed == end ? std::optional(number) : std::nullopt;
}

/// @returns the descriptor that an argument names, -1 when it names none.
int descriptorOf(const char* argument)
{
    const int number = numberOf<int>(argument).value_or(-1);
    struct stat status = {};
    return ::fstat(number, &status) == 0 ? number : -1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3 || argc > 4)
        return 2;
    const int bytes = descriptorOf(argv[1]);
    const std::optional<std::size_t> wanted = numberOf<std::size_t>(argv[2]);
    const int output = argc == 4 ? descriptorOf(argv[3]) : -1;
    struct stat status = {};
    if (bytes < 0 || !wanted || (argc == 4 && output < 0) || ::fstat(bytes, &status) != 0
        || *wanted > static_cast<std::size_t>(status.st_size))
        return 2;
    const std::size_t size = *wanted;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::fcntl(STDOUT_FILENO, F_SETPIPE_SZ, pipeSize);
    void* address = nullptr;
    if (size > 0) {
        address = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, bytes, 0);
        if (address == MAP_FAILED)
            return 3;
    }
    if (!lockDown({size, output}))
        return 3;
    EngineServer server({static_cast<const char*>(address), size}, output);
    server.run();
    // Freeing a large document object by object takes seconds; the system does it at once.
    ::_exit(0);
}
