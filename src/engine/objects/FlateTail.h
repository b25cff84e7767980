#pragma once

#include "Attempt.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace tarnwick {

/// Unpacks deflated data (ISO 32000-2, 7.4.4) to the very byte where it makes no sense: the library
/// gives up the kilobytes before a damage as well.
/// @param packed borrowed, read from its place on. @param skip bytes that are there already.
/// @param take gets the bytes behind those. @returns nothing: what cannot be read ends it.
void unpackTail(fz_context* ctx, fz_stream* packed, std::uint64_t skip,
    const std::function<void(std::string_view)>& take);

} // namespace tarnwick
