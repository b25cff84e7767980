#include "FileOutput.h"

#include <cerrno>

#include <unistd.h>

namespace tarnwick {

namespace {

constexpr std::size_t bufferSize = 1u << 20;

} // namespace

void FileOutput::write(std::string_view bytes)
{
    thePosition += bytes.size();
    if (theBuffer.size() + bytes.size() > bufferSize)
        finish();
    if (bytes.size() > bufferSize)
        writeOut(bytes);
    else
        theBuffer.append(bytes);
}

bool FileOutput::finish()
{
    writeOut(theBuffer);
    theBuffer.clear();
    return theIsGood;
}

void FileOutput::writeOut(std::string_view bytes)
{
    while (theIsGood && !bytes.empty()) {
        const ssize_t written = ::write(theDescriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            theIsGood = false;
        else
            bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace tarnwick
