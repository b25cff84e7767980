#pragma once

#include "files/FileBytes.h"

#include <QString>

#include <cstddef>

namespace tarnwick {

/// A saved version of a file that is open, which is opened as a document of its own.
struct FileVersion
{
    std::size_t number = 0; ///< counted from 1
    FileBytes bytes; ///< the first of the file's bytes, up to the version's end
    QString password; ///< that opened the file; tried before anybody is asked; null without one

    /// A file of the same name that was read at another time has other versions.
    bool operator==(const FileVersion& other) const
    {
        return number == other.number && bytes.size() == other.bytes.size()
            && bytes.owner() == other.bytes.owner();
    }
};

} // namespace tarnwick
