#pragma once

#include <cstdint>
#include <string_view>

namespace tarnwick {

/// The numbers of an object's header line, "12 0 obj".
struct HeaderNumbers
{
    std::int64_t objNo = 0;
    std::int64_t objGen = 0;
};

/// The header's first two pieces between single spaces, where there is a third; 0 for one that is
/// no number.
HeaderNumbers headerNumbers(std::string_view header);

} // namespace tarnwick
