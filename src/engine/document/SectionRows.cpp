#include "SectionRows.h"

#include <algorithm>
#include <limits>

namespace tarnwick {

bool SectionRows::take(
    EngineRowUse use, std::int64_t number, std::uint64_t place, std::uint64_t detail)
{
    if (theSeen == maximumSectionRows)
        return false;
    const bool isPacked = use == EngineRowUse::isPacked;
    if (number < 0 || number > maximumObjectNumber
        || (isPacked && place > std::uint64_t{maximumObjectNumber}))
        return true;
    if (theSeen++ < theFirst)
        return true;
    if (theRows.size() == maximumRows) {
        theIsWhole = false;
        return false;
    }
    EngineRow row;
    row.place = place;
    row.number = static_cast<std::uint32_t>(number);
    row.detail = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(detail, std::numeric_limits<std::uint32_t>::max()));
    row.use = static_cast<std::uint8_t>(use);
    theRows.push_back(row);
    return true;
}

} // namespace tarnwick
