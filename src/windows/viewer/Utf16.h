#pragma once

#include <QString>

#include <string_view>

namespace tarnwick {

/// The UTF-16 units of a string, for the logic that knows no Qt; valid as long as the string.
inline std::u16string_view unitsOf(QStringView text)
{
    return {text.utf16(), static_cast<std::size_t>(text.size())};
}

} // namespace tarnwick
