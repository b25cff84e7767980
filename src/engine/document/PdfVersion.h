#pragma once

#include <compare>
#include <optional>
#include <string_view>

namespace tarnwick {

/// A version of PDF as files state it, "1.7": two numbers, each of one or two digits. 1.10 comes
/// after 1.9.
struct PdfVersion
{
    int major = 0;
    int minor = 0;

    auto operator<=>(const PdfVersion&) const = default;
};

/// The version that a text is, as a whole.
/// @returns nothing for any other text.
std::optional<PdfVersion> parsePdfVersion(std::string_view text);

/// The version in a file's header (ISO 32000-2, 7.5.2), which readers take anywhere in the first
/// 1024 bytes. What follows the two numbers does not matter.
/// @returns nothing when there is no header, or no version in it.
std::optional<PdfVersion> headerVersion(std::string_view file);

} // namespace tarnwick
