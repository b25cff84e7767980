#pragma once

#include <QString>

#include <string_view>

/// The UTF-16 units of a string, for the logic that knows no Qt; valid as long as the string.
inline std::u16string_view unitsOf(const QString& text)
{
    return {
        reinterpret_cast<const char16_t*>(text.constData()), static_cast<std::size_t>(text.size())};
}
