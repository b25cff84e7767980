#pragma once

#include "analysis/ReferenceScan.h"
#include "analysis/pdfObjectCatalog.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <stop_token>

namespace tarnwick {

/// Called with each reference and the object or trailer in which it stands, by its place in the
/// scan; nothing where the listing has no object there.
using TakeReference = std::function<void(const ScannedReference&, std::optional<std::size_t> user)>;

/// Goes through all references of a file, in its order: what ObjectUsers counts as uses, of every
/// object. May run on any thread; takes time in proportion to the file.
/// @param progress gets how many bytes have been looked at, a few times for each 64 MB; may be
///   empty.
/// @returns whether it has come to the end.
bool walkReferences(const pdfObjectCatalog& catalog, const TakeReference& take,
    const std::function<void(std::size_t bytesDone)>& progress = {},
    const std::stop_token& stop = {});

} // namespace tarnwick
