#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick {

/// Appends a character as it stands in a string of JSON; ASCII only.
void appendJsonCharacter(char16_t character, std::string& out);

/// Appends bytes of a file as a string of JSON, quotes included: byte value = character number.
void appendJsonString(std::string_view bytes, std::string& out);

/// One JSON object or array, written member after member; what is asked for first comes first.
class JsonText
{
public:
    /// Opens the object that a command prints, with the name and the version of its form.
    /// @param version goes up when the form changes so that a reader could misunderstand it.
    static JsonText ofCommand(std::string_view schema, std::int64_t version = 1);

    JsonText& key(std::string_view name); ///< ASCII without quotes
    JsonText& string(std::string_view bytes);
    JsonText& number(std::int64_t value);
    JsonText& number(std::size_t value);
    JsonText& boolean(bool value);
    JsonText& null();
    JsonText& open(char bracket); ///< '{' or '['
    JsonText& close(char bracket); ///< '}' or ']'

    const std::string& text() const { return theText; }

private:
    JsonText& value(std::string_view text);
    void separate();

    std::string theText;
    bool needsComma = false;
};

} // namespace tarnwick
