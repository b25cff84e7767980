#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tarnwick {

/// A drawn page: rows of pixels from the top, one behind the other.
struct Picture
{
    int width = 0; ///< in pixels
    int height = 0;
    std::span<const std::uint32_t> pixels; ///< width * height of them; fewer count as no picture
};

/// A part of a page, in pixels or in points of page space.
struct PictureArea
{
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    bool operator==(const PictureArea&) const = default;
};

/// Pixels of a cell's side: a word or two of usual size.
constexpr int cellSide = 16;
/// Areas of one page that are told apart; more make one.
constexpr std::size_t mostAreas = 256;

/// Where two pictures differ: boxes around neighbouring cells that hold another pixel, in pixels,
/// from the top. What lies outside of one picture alone differs.
std::vector<PictureArea> differingAreas(const Picture& before, const Picture& after);

} // namespace tarnwick
