#include "ValueSpelling.h"

#include "analysis/StructureWords.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <span>

namespace tarnwick {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";

bool holds(std::string_view text, std::string_view word)
{
    return text.find(word) != std::string_view::npos;
}

bool holdsAny(std::string_view text, std::span<const std::string_view> words)
{
    for (const std::string_view word : words) {
        if (holds(text, word))
            return true;
    }
    return false;
}

bool isRegular(char one)
{
    return one > ' ' && one < 127 && std::string_view("()<>[]{}/%#").find(one) == std::string::npos;
}

void appendHex(std::string& text, char one)
{
    const auto byte = static_cast<unsigned char>(one);
    text += hexDigits[byte >> 4];
    text += hexDigits[byte & 15];
}

/// Names that show another kind: those that are looked for before a kind's own name, and all of
/// them for an object that is of no kind.
std::span<const ObjectTypeName> foreignNames(ObjectType type)
{
    const auto own = std::find_if(objectTypeNames.begin(), objectTypeNames.end(),
        [type](const ObjectTypeName& name) { return name.type == type; });
    return {objectTypeNames.begin(), own};
}

} // namespace

ValueSpelling::ValueSpelling(ObjectType kind, bool isStrict)
    : theKind(kind)
    , theIsStrict(isStrict)
{
}

std::string ValueSpelling::name(std::string_view name) const
{
    std::string isHidden(name.size(), '\0'); // most names are short enough to need no memory
    const auto hide = [&](std::string_view word) {
        for (std::size_t place = name.find(word); place != std::string_view::npos;
             place = name.find(word, place + 1))
            isHidden[place] = 1;
    };
    const auto hideBeginning = [&](std::string_view word) {
        if (name.starts_with(word))
            isHidden[0] = 1;
    };
    for (const std::string_view word : LineWord::shortest)
        hide(word);
    for (const std::string_view word : theWords)
        hide(word);
    if (theIsStrict) {
        for (const ObjectTypeName& foreign : foreignNames(theKind))
            hideBeginning(foreign.name.substr(1));
    }
    if (!allowsXml)
        hideBeginning(std::string_view(LineWord::xml).substr(1));
    std::string text = "/";
    for (std::size_t index = 0; index < name.size(); ++index) {
        if (isRegular(name[index]) && !isHidden[index]) {
            text += name[index];
        } else {
            text += '#';
            appendHex(text, name[index]);
        }
    }
    return text;
}

/// Only what fits on one line as it is; "/" would start a name in the eyes of a reader by keywords.
bool ValueSpelling::isLiteral(std::string_view bytes) const
{
    for (const char one : bytes) {
        if (one < ' ' || one > '~')
            return false;
    }
    return !holdsAny(bytes, LineWord::shortest) && !holdsAny(bytes, theWords)
        && !holds(bytes, LineWord::xml) && !(theIsStrict && holds(bytes, "/"));
}

std::string ValueSpelling::string(std::string_view bytes) const
{
    std::string text;
    if (!isLiteral(bytes)) {
        text += '<';
        for (const char one : bytes)
            appendHex(text, one);
        return text + '>';
    }
    text += '(';
    for (const char one : bytes) {
        if (one == '(' || one == ')' || one == '\\')
            text += '\\';
        text += one;
    }
    return text + ')';
}

ObjectType ValueSpelling::kindOf(std::string_view line)
{
    return holds(line, LineWord::type) ? objectTypeNamed(line) : ObjectType::isPlain;
}

bool ValueSpelling::endsStream(std::string_view data)
{
    return holds(data, LineWord::stream);
}

bool ValueSpelling::looksLikeObjects(std::string_view data)
{
    return holdsAny(data, LineWord::shortest) || holds(data, LineWord::type);
}

std::string realText(float number)
{
    if (!std::isfinite(number) || number == 0)
        return "0";
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, number, std::chars_format::fixed).ptr;
    return std::string(text, end);
}

} // namespace tarnwick
