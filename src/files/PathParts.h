#pragma once

#include <string>

namespace tarnwick {

/// A path cut at its last slash.
struct PathParts
{
    std::string folder; ///< "." where the path has none
    std::string name; ///< empty for a path that ends in a slash
};

inline PathParts splitPath(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return {".", path};
    return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

} // namespace tarnwick
