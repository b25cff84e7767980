#include "files/ErrorText.h"

#include "files/OutputFile.h"

#include <system_error>

namespace tarnwick {

std::string errorText(int error)
{
    switch (error) {
    case OutputFile::isOpenedFile:
        return "It is open, and an opened file is never written";
    case OutputFile::isNoRegularFile:
        return "Not a regular file";
    case OutputFile::isDanglingLink:
        return "The link leads to no file";
    default:
        return std::generic_category().message(error);
    }
}

} // namespace tarnwick
