#include "analysis/HeaderNumbers.h"

#include "DecimalInteger.h"

#include <cstddef>

namespace tarnwick {

HeaderNumbers headerNumbers(std::string_view header)
{
    const std::size_t first = header.find(' ');
    if (first == std::string_view::npos)
        return {};
    const std::size_t second = header.find(' ', first + 1);
    if (second == std::string_view::npos)
        return {};
    return {decimalInteger(header.substr(0, first)).value_or(0),
        decimalInteger(header.substr(first + 1, second - first - 1)).value_or(0)};
}

} // namespace tarnwick
