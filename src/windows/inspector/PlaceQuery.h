#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tarnwick {

/// An object that somebody asks for by its number.
struct ObjectQuery
{
    std::int64_t objNo = 0;
    std::optional<std::int64_t> objGen;
    std::optional<std::int64_t> objVer; ///< saved version: the latest at or before it

    bool operator==(const ObjectQuery&) const = default;
};

/// A place in the file, in bytes from its start.
struct OffsetQuery
{
    std::size_t offset = 0;

    bool operator==(const OffsetQuery&) const = default;
};

/// A page, counted from 1.
struct PageQuery
{
    int page = 1;

    bool operator==(const PageQuery&) const = default;
};

/// Why a text names no place.
enum class PlaceMistake
{
    isEmpty,
    isNoPlace, ///< none of the forms
    isTooLarge, ///< a number that no file has
};

/// A place as typed: "17", "17 0" and "17 0 R" (object and generation), "17 v2" (as of a saved
/// version), "@2317" and "@0x90D" (byte offset, as OffsetInput.h reads them), "p12" (page). Upper
/// and lower case, and white space at the ends and between the parts, do not matter.
using PlaceQuery = std::variant<ObjectQuery, OffsetQuery, PageQuery>;
std::variant<PlaceQuery, PlaceMistake> parsePlaceQuery(std::u16string_view text);

} // namespace tarnwick
