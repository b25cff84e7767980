// The PDF engine: reads one document from shared memory and answers requests on its pipes.
//
// tarnwick-pdf-engine BYTES [OUTPUT]
//   BYTES  descriptor of sealed shared memory with the file
//   OUTPUT   descriptor of empty shared memory that the flattened or printed document is written to

#include "EngineServer.h"
#include "Lockdown.h"

#include <charconv>
#include <csignal>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tarnwick;

namespace {

constexpr int pipeSize = 1 << 20;

/// @returns the descriptor that an argument names, -1 when it names none.
int descriptorOf(const char* argument)
{
    int number = -1;
    const char* const end = argument + std::strlen(argument);
    const auto [parsed, error] = std::from_chars(argument, end, number);
    struct stat status = {};
    return error == std::errc() && parsed == end && ::fstat(number, &status) == 0 ? number : -1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3)
        return 2;
    const int bytes = descriptorOf(argv[1]);
    const int output = argc == 3 ? descriptorOf(argv[2]) : -1;
    struct stat status = {};
    if (bytes < 0 || (argc == 3 && output < 0) || ::fstat(bytes, &status) != 0)
        return 2;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::fcntl(STDOUT_FILENO, F_SETPIPE_SZ, pipeSize);
    const auto size = static_cast<std::size_t>(status.st_size);
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
