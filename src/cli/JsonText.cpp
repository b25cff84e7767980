#include "JsonText.h"

namespace tarnwick {

namespace {

void appendEscaped(char16_t character, std::string& out)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const unsigned code = character;
    out += "\\u";
    for (unsigned shift = 16; shift > 0; shift -= 4)
        out += digits[(code >> (shift - 4)) & 0xF];
}

} // namespace

void appendJsonCharacter(char16_t character, std::string& out)
{
    switch (character) {
    case u'"':
        out += "\\\"";
        return;
    case u'\\':
        out += "\\\\";
        return;
    case u'\n':
        out += "\\n";
        return;
    case u'\t':
        out += "\\t";
        return;
    default:
        break;
    }
    if (character < 0x20 || character >= 0x7F)
        appendEscaped(character, out);
    else
        out += static_cast<char>(character);
}

void appendJsonString(std::string_view bytes, std::string& out)
{
    out += '"';
    for (const char byte : bytes)
        appendJsonCharacter(static_cast<unsigned char>(byte), out);
    out += '"';
}

JsonText JsonText::ofCommand(std::string_view schema, std::int64_t version)
{
    JsonText json;
    json.open('{').key("schema").string(schema).key("schemaVersion").number(version);
    return json;
}

void JsonText::separate()
{
    if (needsComma)
        theText += ',';
    needsComma = true;
}

JsonText& JsonText::value(std::string_view text)
{
    separate();
    theText += text;
    return *this;
}

JsonText& JsonText::key(std::string_view name)
{
    separate();
    theText += '"';
    theText += name;
    theText += "\":";
    needsComma = false;
    return *this;
}

JsonText& JsonText::string(std::string_view bytes)
{
    separate();
    appendJsonString(bytes, theText);
    return *this;
}

JsonText& JsonText::number(std::int64_t number)
{
    return value(std::to_string(number));
}

JsonText& JsonText::number(std::size_t number)
{
    return value(std::to_string(number));
}

JsonText& JsonText::boolean(bool boolean)
{
    return value(boolean ? "true" : "false");
}

JsonText& JsonText::null()
{
    return value("null");
}

JsonText& JsonText::open(char bracket)
{
    separate();
    theText += bracket;
    needsComma = false;
    return *this;
}

JsonText& JsonText::close(char bracket)
{
    theText += bracket;
    needsComma = true;
    return *this;
}

} // namespace tarnwick
