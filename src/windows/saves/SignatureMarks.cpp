#include "SignatureMarks.h"

#include "analysis/SourceLexer.h"

#include <algorithm>
#include <cstring>

namespace tarnwick {

namespace {

constexpr std::string_view key = "/ByteRange";
constexpr std::size_t portion = 64U << 20U; ///< bytes between two looks at the stop token

bool isFollowedByArray(std::string_view bytes, std::size_t place)
{
    while (place < bytes.size() && isSourceSpace(bytes[place]))
        ++place;
    return place < bytes.size() && bytes[place] == '[';
}

} // namespace

std::vector<std::size_t> countSignatures(
    std::string_view bytes, const std::vector<std::size_t>& ends, const std::stop_token& stop)
{
    std::vector<std::size_t> counts;
    std::size_t place = 0;
    for (const std::size_t end : ends) {
        std::size_t count = 0;
        while (place < end && !stop.stop_requested()) {
            const std::string_view part = bytes.substr(place, std::min(portion, end - place));
            const void* const found = ::memmem(part.data(), part.size(), key.data(), key.size());
            if (!found) {
                // A key may begin at the end of this portion and end in the next.
                const bool isLast = part.size() == end - place || part.size() <= key.size();
                place += isLast ? part.size() : part.size() - key.size();
                continue;
            }
            place = static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data())
                + key.size();
            if (isFollowedByArray(bytes, place))
                ++count;
        }
        if (stop.stop_requested())
            break;
        counts.push_back(count);
    }
    return counts;
}

} // namespace tarnwick
