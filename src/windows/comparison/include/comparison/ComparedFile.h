#pragma once

#include "frame/FileVersion.h"

#include <QString>

#include <optional>

namespace tarnwick {

class Document;

/// A file, or a saved version of one, that is to be compared.
struct ComparedFile
{
    /// The opened document that it is, borrowed; null for one that is still to be opened.
    Document* document = nullptr;
    QString path; ///< of a file to open
    std::optional<FileVersion> version; ///< of that file; none for the whole of it
};

} // namespace tarnwick
