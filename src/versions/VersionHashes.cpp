#include "versions/VersionHashes.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::size_t portion = 4U << 20U; ///< bytes between two looks at the stop token

} // namespace

bool hashVersions(std::string_view bytes, const std::vector<std::size_t>& ends,
    const std::function<void(std::size_t index, const Sha256::Digest& digest)>& take,
    const std::stop_token& stop,
    const std::function<void(std::uint64_t done, std::uint64_t total)>& progress)
{
    Sha256 hash;
    std::size_t done = 0;
    for (std::size_t index = 0; index < ends.size(); ++index) {
        while (done < ends[index]) {
            if (stop.stop_requested())
                return false;
            const std::size_t size = std::min(portion, ends[index] - done);
            hash.add(bytes.substr(done, size));
            done += size;
            if (progress)
                progress(done, ends.back());
        }
        take(index, hash.digest());
    }
    return true;
}

} // namespace tarnwick
