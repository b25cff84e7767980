#include "platform/engine/FlatSpelling.h"

#include <array>
#include <charconv>
#include <cmath>
#include <span>
#include <utility>

namespace {

/// Words that are read as structure wherever they stand; "endobj", "endstream" and "startxref" hold
/// one of them.
constexpr std::array<std::string_view, 5> lineWords{"stream", "obj", "xref", "trailer", "%%EOF"};

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

/// Beginnings of names that show a kind: those that are looked for before a kind's own name, and
/// all of them for an object that is of no kind. "Page" begins "Pages" as well.
std::span<const std::string_view> foreignNames(FlatKind kind)
{
    static constexpr std::array<std::string_view, 4> inOrder{"Catalog", "Page", "Info", "Names"};
    static constexpr std::array<std::string_view, 2> beforePage{"Catalog", "Pages"};
    switch (kind) {
    case FlatKind::isCatalog:
        return {};
    case FlatKind::isPages:
        return std::span(inOrder).first(1);
    case FlatKind::isPage:
        return beforePage;
    case FlatKind::isInfo:
        return std::span(inOrder).first(2);
    case FlatKind::isNames:
        return std::span(inOrder).first(3);
    case FlatKind::isPlain:
        break;
    }
    return inOrder;
}

} // namespace

FlatSpelling::FlatSpelling(FlatKind kind, bool isStrict)
    : theKind(kind)
    , theStrict(isStrict)
{
}

std::string FlatSpelling::name(std::string_view name) const
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
    for (const std::string_view word : lineWords)
        hide(word);
    for (std::size_t index = 0; index < theWordCount; ++index)
        hide(theWords[index]);
    if (theStrict) {
        for (const std::string_view word : foreignNames(theKind))
            hideBeginning(word);
    }
    if (!theXmlIsAllowed)
        hideBeginning("XML");
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
bool FlatSpelling::isLiteral(std::string_view bytes) const
{
    for (const char one : bytes) {
        if (one < ' ' || one > '~')
            return false;
    }
    return !holdsAny(bytes, lineWords) && !holdsAny(bytes, std::span(theWords).first(theWordCount))
        && !holds(bytes, "/XML") && !(theStrict && holds(bytes, "/"));
}

std::string FlatSpelling::string(std::string_view bytes) const
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

FlatKind FlatSpelling::kindOf(std::string_view line)
{
    static constexpr std::pair<std::string_view, FlatKind> names[] = {
        {"/Catalog", FlatKind::isCatalog}, {"/Pages", FlatKind::isPages},
        {"/Page", FlatKind::isPage}, {"/Info", FlatKind::isInfo}, {"/Names", FlatKind::isNames}};
    if (!holds(line, "/Type"))
        return FlatKind::isPlain;
    for (const auto& [name, kind] : names) {
        if (holds(line, name))
            return kind;
    }
    return FlatKind::isPlain;
}

bool FlatSpelling::endsStream(std::string_view data)
{
    return holds(data, "stream");
}

bool FlatSpelling::looksLikeObjects(std::string_view data)
{
    return holdsAny(data, lineWords) || holds(data, "/Type");
}

std::string flatReal(float number)
{
    if (!std::isfinite(number) || number == 0)
        return "0";
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, number, std::chars_format::fixed).ptr;
    return std::string(text, end);
}
