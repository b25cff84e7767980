#pragma once

#include <memory>
#include <string>

namespace tarnwick {

/// The files that the program has opened and therefore never writes: what it shows is evidence.
///
/// Whoever reads a file counts it in (FileBytes does, and keeps it as long as its bytes live);
/// whoever writes one asks here (WholeFile does). A file is remembered as it was at its opening and
/// by its paths: one that has been moved counts, and so does the place of one that has been
/// replaced or deleted meanwhile.
///
/// Any thread.
namespace OpenedFiles {

/// Counts a file in while it and its copies live.
using Entry = std::shared_ptr<const void>;

/// @param descriptor of the open file. @param path that it was opened by.
/// @returns null for what is neither a regular file nor a block device: nothing can be lost there.
Entry add(int descriptor, const std::string& path);

/// Whether a path leads to an opened file, or to the place of one.
/// @param folder descriptor that a relative path starts from, or AT_FDCWD.
bool contains(int folder, const std::string& path);
bool contains(const std::string& path);
/// Whether an open file is one of them.
bool contains(int descriptor);

} // namespace OpenedFiles

} // namespace tarnwick
