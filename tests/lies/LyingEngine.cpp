// An engine that lies, for tests: it takes any file for a document of three pages and answers every
// request as an engine should, but for the lie that the file's second line names ("%lie NAME").
//
// lying-pdf-engine BYTES [OUTPUT]   descriptors, as the engine gets them

#include "Lies.h"

#include <algorithm>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

using namespace tarnwick;

namespace {

bool readWhole(void* target, std::size_t size)
{
    for (char* place = static_cast<char*>(target); size > 0;) {
        const ssize_t got = ::read(STDIN_FILENO, place, size);
        if (got <= 0)
            return false;
        place += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

/// What the file's second line names.
std::string lieIn(int descriptor)
{
    std::string bytes(200, '\0');
    const ssize_t got = ::pread(descriptor, bytes.data(), bytes.size(), 0);
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    constexpr std::string_view mark = "\n%lie ";
    const std::size_t start = bytes.find(mark);
    if (start == std::string::npos)
        return {};
    const std::string rest = bytes.substr(start + mark.size());
    return rest.substr(0, rest.find('\n'));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    ::fcntl(STDOUT_FILENO, F_SETPIPE_SZ, 1 << 20);
    Teller teller(lieIn(std::atoi(argv[1])), argc > 2 ? std::atoi(argv[2]) : -1);
    EngineFrame frame;
    while (readWhole(&frame, sizeof frame)) {
        std::string payload(frame.size, '\0');
        if (!readWhole(payload.data(), payload.size()))
            break;
        teller.take({frame.request, static_cast<EngineRequest>(frame.kind), payload});
    }
    return 0;
}
