#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

/// A file's name cut in two. Bytes in the file system's encoding, whatever they are.
struct FileNameParts
{
    std::string base; ///< the last path component without its extension ("report")
    std::string extension; ///< without the dot ("pdf"); empty when the name has none
};

/// Cuts the last component of a path at its last dot. A dot that begins or ends the name marks no
/// extension: ".hidden" and "draft." are all base. Slashes that end the path are left out.
/// @returns both parts empty for a path without a component ("", "/").
FileNameParts fileNameParts(std::string_view path);

/// "." and the extension; empty for an empty extension. It ends the name of every version file.
std::string versionExtension(const FileNameParts& parts);

/// Name of the folder to propose for the versions of a file: "report-Copy-pdf", or "notes-Copy" for
/// a file without extension.
std::string versionFolderName(const FileNameParts& parts);

/// Name of one version's file: "report-002.pdf" for "report", 2 and ".pdf".
/// @param number counts from 1; written with at least three digits, more when it needs them.
/// @param extension with its dot, or empty (versionExtension()).
std::string versionFileName(std::string_view base, std::size_t number, std::string_view extension);

} // namespace tarnwick
