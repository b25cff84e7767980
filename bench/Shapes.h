#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Made files: usual ones to measure speed on, and hostile ones whose cost must stay in proportion.
namespace shapes {

/// Takes the file's bytes, stretch after stretch.
using Sink = std::function<void(std::string_view)>;

struct Shape
{
    const char* name;
    const char* meaning; ///< what the file holds, and what the size counts
    std::size_t usualSize;
    bool isHostile;
    void (*write)(std::size_t size, const Sink& sink);
};

const std::vector<Shape>& all();

/// @returns null for an unknown name.
const Shape* named(std::string_view name);

/// The whole file in memory.
std::string made(const Shape& shape, std::size_t size);

} // namespace shapes

} // namespace tarnwick
