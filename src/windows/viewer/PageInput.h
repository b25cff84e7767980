#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// The page that a user's input names: the first page with that label, else the page of that
/// number, counted from 1. White space around it and the case of labels do not count.
/// @param ownLabel of a page index from 0 to pageCount - 1; nothing for a page whose label is its
///   number.
/// @returns a page index, or nothing when no page is meant.
std::optional<int> pageForInput(std::u16string_view input, int pageCount,
    const std::function<std::optional<std::u16string_view>(int)>& ownLabel);

/// A magnification as users write it: "150", "150 %" or "150%" are 1.5.
/// @returns nothing for anything else, and for magnifications outside [0.01, 100].
std::optional<double> scaleForInput(std::u16string_view input);

} // namespace tarnwick
