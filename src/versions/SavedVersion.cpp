#include "versions/SavedVersion.h"

#include <algorithm>

namespace tarnwick {

std::string_view nameOf(VersionFlag flag)
{
    static constexpr std::array<std::string_view, versionFlagCount> names{"linearized-first-part",
        "marker-in-stream", "marker-in-object", "no-cross-reference", "repaired", "behind-unknown",
        "beyond-limits", "not-in-chain", "chain-loop", "bytes-before-header",
        "bytes-behind-marker"};
    return names[static_cast<std::size_t>(flag)];
}

bool SavedVersion::has(VersionFlag flag) const
{
    return std::binary_search(flags.begin(), flags.end(), flag);
}

} // namespace tarnwick
