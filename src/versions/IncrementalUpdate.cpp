#include "versions/IncrementalUpdate.h"

namespace tarnwick {

namespace {

constexpr std::string_view marker = "%%EOF";
constexpr std::size_t tail = 20; // a last marker and its line end lie within these bytes

} // namespace

bool isIncrementallyUpdated(std::string_view bytes)
{
    if (bytes.size() < tail)
        return false;
    return bytes.substr(0, bytes.size() - tail).find(marker) != std::string_view::npos;
}

} // namespace tarnwick
