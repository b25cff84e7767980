#include "PiecePrinter.h"

#include "JsonText.h"

#include <array>

namespace tarnwick {

namespace {

constexpr std::size_t bufferSize = 1u << 16;

/// UTF-8 of a character of a piece, which is below U+10000 and no surrogate.
void appendUtf8(char16_t character, std::string& out)
{
    const unsigned code = character;
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

/// C0 controls as their pictures, C1 controls as the replacement character.
char16_t visible(char16_t character)
{
    if (character < 0x20 && character != u'\n' && character != u'\t')
        return static_cast<char16_t>(0x2400 + character);
    if (character == 0x7F)
        return u'\u2421';
    return character >= 0x80 && character < 0xA0 ? u'\uFFFD' : character;
}

std::string_view roleName(ColourRole role)
{
    constexpr std::array<std::string_view, 4> names{"default", "red", "green", "blue"};
    return names[static_cast<std::size_t>(role)];
}

std::string_view colourSequence(ColourRole role)
{
    constexpr std::array<std::string_view, 4> sequences{"", "\x1b[31m", "\x1b[32m", "\x1b[34m"};
    return sequences[static_cast<std::size_t>(role)];
}

} // namespace

PiecePrinter::PiecePrinter(std::FILE* output, PieceFormat format)
    : theOutput(output)
    , theFormat(format)
{
    theBuffer.reserve(2 * bufferSize);
}

void PiecePrinter::print(ColourRole role, std::u16string_view text)
{
    switch (theFormat) {
    case PieceFormat::isPlain:
        printPlain(text);
        break;
    case PieceFormat::isColoured:
        printColoured(role, text);
        break;
    case PieceFormat::isJson:
        printJson(role, text);
        break;
    }
    if (theBuffer.size() >= bufferSize)
        flush();
}

void PiecePrinter::printPlain(std::u16string_view text)
{
    for (const char16_t character : text)
        appendUtf8(character, theBuffer);
}

void PiecePrinter::printColoured(ColourRole role, std::u16string_view text)
{
    const std::string_view colour = colourSequence(role);
    theBuffer += colour;
    for (const char16_t character : text)
        appendUtf8(visible(character), theBuffer);
    if (!colour.empty())
        theBuffer += "\x1b[0m";
}

void PiecePrinter::printJson(ColourRole role, std::u16string_view text)
{
    theBuffer += "{\"role\":\"";
    theBuffer += roleName(role);
    theBuffer += "\",\"text\":\"";
    for (const char16_t character : text)
        appendJsonCharacter(character, theBuffer);
    theBuffer += "\"}\n";
}

void PiecePrinter::flush()
{
    if (std::fwrite(theBuffer.data(), 1, theBuffer.size(), theOutput) != theBuffer.size())
        hasFailed = true;
    theBuffer.clear();
}

bool PiecePrinter::finish()
{
    flush();
    if (std::fflush(theOutput) != 0)
        hasFailed = true;
    return !hasFailed;
}

} // namespace tarnwick
