#include "IccHeader.h"

#include <algorithm>

namespace tarnwick {

namespace {

using Fact = EngineFactKind;

constexpr std::size_t headSize = 128;
constexpr std::size_t readBytes = 1u << 20;
constexpr std::size_t mostTags = 100;

/// Big-endian; 0 beyond the end.
std::uint32_t numberAt(std::string_view bytes, std::size_t place)
{
    if (place > bytes.size() || bytes.size() - place < 4)
        return 0;
    std::uint32_t number = 0;
    for (const char one : bytes.substr(place, 4))
        number = number << 8 | static_cast<unsigned char>(one);
    return number;
}

/// Printable ASCII.
std::string plain(std::string_view text)
{
    std::string plain;
    std::copy_if(text.begin(), text.end(), std::back_inserter(plain),
        [](char one) { return one >= ' ' && one <= '~'; });
    return plain;
}

std::string signature(std::string_view bytes, std::size_t place)
{
    std::string text = plain(bytes.substr(place, 4));
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

/// The text of a description, of the first language: a "desc" or an "mluc", whose characters have
/// two bytes.
std::string textAt(std::string_view tag)
{
    if (tag.starts_with("desc"))
        return plain(tag.substr(std::min<std::size_t>(12, tag.size()), numberAt(tag, 8)));
    if (!tag.starts_with("mluc"))
        return {};
    return plain(
        tag.substr(std::min<std::size_t>(numberAt(tag, 24), tag.size()), numberAt(tag, 20)));
}

std::string description(std::string_view profile)
{
    const std::size_t count = std::min<std::size_t>(numberAt(profile, headSize), mostTags);
    for (std::size_t tag = 0; tag < count; ++tag) {
        const std::size_t entry = headSize + 4 + tag * 12;
        const std::size_t place = numberAt(profile, entry + 4);
        if (entry < profile.size() && profile.substr(entry, 4) == "desc" && place < profile.size())
            return textAt(profile.substr(place, numberAt(profile, entry + 8)));
    }
    return {};
}

} // namespace

void tellOfProfile(FactSheet& sheet, const ObjectView& stream, int number)
{
    const std::string profile = decodedBeginning(sheet.document(), number, readBytes);
    if (profile.size() < headSize || profile.compare(36, 4, "acsp") != 0)
        return;
    sheet.setKind(EngineObjectKind::isColourProfile);
    sheet.add(Fact::isName, description(profile));
    sheet.addValue(Fact::isComponents, stream.entry("N"));
    const auto version = static_cast<unsigned char>(profile[8]);
    const auto minor = static_cast<unsigned char>(profile[9]) >> 4;
    sheet.add(Fact::isType,
        signature(profile, 16) + " to " + signature(profile, 20) + ", class "
            + signature(profile, 12) + ", version " + std::to_string(version) + '.'
            + std::to_string(minor));
    sheet.addValue(Fact::isColours, stream.entry("Alternate"));
}

} // namespace tarnwick
