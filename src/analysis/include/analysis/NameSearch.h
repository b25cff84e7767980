#pragma once

#include "analysis/pdfObjectCatalog.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string_view>

namespace tarnwick {

/// A name found in a file's code.
struct FoundName
{
    std::size_t which = 0; ///< of the names that were looked for
    std::size_t offset = 0; ///< of its slash
    std::optional<std::size_t> object; ///< in whose value it stands, by its place in the scan
    /// Where the object stands: its record's range; of one that the listing has no record of, from
    /// the nearest "obj" before the name.
    ByteRange range;
};

/// Finds names in the code of a file in one pass, also where they are spelled with "#xx" (ISO
/// 32000-2, 7.3.5): what must not be overlooked is spelled so. Names within strings, comments and
/// streams are none. Takes time in proportion to the file, and keeps nothing.
/// @param names without slash, not empty. @param take gets them in the order of the file.
/// @returns false when it was stopped.
bool findNames(const pdfObjectCatalog& catalog, std::span<const std::string_view> names,
    const std::function<void(const FoundName&)>& take, std::stop_token stop = {});

/// What the listing cannot show: objects within object streams (ISO 32000-2, 7.5.7).
struct HiddenObjects
{
    std::size_t streams = 0; ///< object streams in all saved versions
    std::size_t objects = 0; ///< that they say they hold, where they say so sensibly
};
HiddenObjects hiddenObjects(const pdfObjectCatalog& catalog);

} // namespace tarnwick
