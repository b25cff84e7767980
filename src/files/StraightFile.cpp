#include "files/StraightFile.h"

#include "FileSizeSignalBlock.h"
#include "WriteAll.h"
#include "files/OpenedFiles.h"
#include "files/OutputPlace.h"
#include "files/WholeFile.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnwick {

StraightFile::StraightFile(std::string path)
    : thePath(std::move(path))
{
}

StraightFile::StraightFile(int descriptor)
    : theDescriptor(descriptor)
{
}

StraightFile::~StraightFile()
{
    if (ownsDescriptor && theDescriptor >= 0)
        ::close(theDescriptor);
}

int StraightFile::open()
{
    if (!thePath.empty()) {
        // Before it is opened for writing: that alone may change it.
        if (OpenedFiles::contains(thePath))
            return isOpenedFile;
        if (const int error = openPath())
            return error;
    }
    return OpenedFiles::contains(theDescriptor) ? isOpenedFile : 0;
}

int StraightFile::openPath()
{
    OutputPlace place;
    if (const int error = place.find(AT_FDCWD, thePath))
        return error;
    // Opened anew, a file would be written from its beginning.
    theDescriptor = place.descriptor() ? ::fcntl(*place.descriptor(), F_DUPFD_CLOEXEC, 3)
                                       : ::open(thePath.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    ownsDescriptor = theDescriptor >= 0;
    return ownsDescriptor ? 0 : errno;
}

int StraightFile::append(std::string_view bytes)
{
    const FileSizeSignalBlock block;
    return writeAll(bytes, [this](std::string_view rest, std::size_t) {
        return ::write(theDescriptor, rest.data(), rest.size());
    });
}

int StraightFile::commit()
{
    // Some file systems say only now that they cannot keep what they have taken.
    if (ownsDescriptor && ::close(std::exchange(theDescriptor, -1)) != 0)
        return errno;
    return 0;
}

std::unique_ptr<OutputFile> outputFileFor(const std::string& path)
{
    OutputPlace place;
    const bool isFound = place.find(AT_FDCWD, path) == 0 && place.standing();
    const bool isStraight = isFound && !S_ISDIR(place.standing()->st_mode)
        && (!S_ISREG(place.standing()->st_mode) || place.isOfProcess());
    if (isStraight)
        return std::make_unique<StraightFile>(path);
    return std::make_unique<WholeFile>(path);
}

} // namespace tarnwick
