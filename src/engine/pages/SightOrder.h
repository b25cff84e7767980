#pragma once

#include "LineUnits.h"

#include <vector>

namespace tarnwick {

/// A line's units in the order of sight, from left to right.
///
/// Units that were drawn side by side, from left to right or from right to left, stay neighbours.
/// What was drawn again over what stands there already, as for bold, is a line of its own.
/// Time grows with n log n.
/// @param units in the order in which they were drawn. @param size of the letters, positive.
/// @returns at least one line if there are units; each unit stands in one.
std::vector<std::vector<LineUnit>> sightOrder(const std::vector<LineUnit>& units, double size);

} // namespace tarnwick
