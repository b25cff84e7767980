#include "versions/VersionCuts.h"

#include <algorithm>
#include <cstring>

namespace tarnwick {

std::vector<std::size_t> versionCuts(std::string_view bytes)
{
    constexpr std::string_view marker = "%%EOF";
    std::vector<std::size_t> cuts;
    std::size_t start = 0;
    while (start < bytes.size()) {
        const std::string_view rest = bytes.substr(start);
        // memmem stays linear on files full of "%", where a search for the first byte does not.
        const void* found = ::memmem(rest.data(), rest.size(), marker.data(), marker.size());
        if (!found)
            break;
        const auto offset
            = static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data());
        start = std::min(bytes.size(), offset + marker.size() + 1);
        cuts.push_back(start);
    }
    return cuts;
}

} // namespace tarnwick
