#include "support/AnalysisDifferences.h"

#include "analysis/SourceText.h"
#include "versions/VersionCuts.h"

#include <algorithm>
#include <memory>

using namespace std::string_literals;

namespace tarnwick {

using plain::ColouredText;

namespace {

/// @param unit of the Basic Multilingual Plane: source has no others.
void appendUtf8(std::string& text, char16_t unit)
{
    const auto append = [&text](int bits) { text += static_cast<char>(bits); };
    if (unit < 0x80)
        return append(unit);
    if (unit < 0x800) {
        append(0xc0 | unit >> 6);
    } else {
        append(0xe0 | unit >> 12);
        append(0x80 | (unit >> 6 & 0x3f));
    }
    append(0x80 | (unit & 0x3f));
}

char letter(ColourRole role)
{
    return "drgb"[static_cast<std::size_t>(role)];
}

std::vector<ColouredText> piecesOf(const StyledText& text)
{
    std::vector<ColouredText> pieces;
    text.forEachPiece([&](ColourRole role, std::u16string_view characters) {
        pieces.push_back({letter(role), std::u16string(characters)});
    });
    return pieces;
}

/// Bytes with nothing behind them (the sanitizer guards their end), or amid others that would
/// complete a keyword begun at the end.
SharedBytes placed(const std::string& bytes, bool amidOthers)
{
    if (!amidOthers) {
        auto exact = std::make_shared<std::vector<char>>(bytes.begin(), bytes.end());
        return {{exact->data(), exact->size()}, exact};
    }
    const std::size_t before = bytes.size() % 67;
    auto whole
        = std::make_shared<std::string>(std::string(before, 'e') + bytes + "obj\nendstream\n");
    return {std::string_view(*whole).substr(before, bytes.size()), whole};
}

std::string firstDifference(const char* what, const std::vector<ColouredText>& actual,
    const std::vector<ColouredText>& expected)
{
    if (actual == expected)
        return {};
    std::size_t index = 0;
    while (index < std::min(actual.size(), expected.size()) && actual[index] == expected[index])
        ++index;
    const auto at = [index](const std::vector<ColouredText>& pieces) {
        return index < pieces.size() ? shownPieces({pieces[index]}).substr(0, 300) : "(no piece)"s;
    };
    return what + " piece "s + std::to_string(index) + ": got " + at(actual) + ", expected "
        + at(expected);
}

/// The lines that pieces make up, each with the role of the piece that ends it.
std::vector<ColouredText> linesOf(const std::vector<ColouredText>& pieces)
{
    std::vector<ColouredText> lines{{'d', u""}};
    for (const ColouredText& piece : pieces) {
        for (const char16_t character : piece.text) {
            if (character != u'\n') {
                lines.back().text += character;
                continue;
            }
            lines.back().role = piece.role;
            lines.push_back({'d', u""});
        }
    }
    return lines;
}

/// The lines of a text, each asked for in three stretches; '?' for one of another length than said.
std::vector<ColouredText> linesOf(const StyledText& text)
{
    std::vector<ColouredText> lines;
    for (std::size_t index = 0; index < text.lineCount(); ++index) {
        const std::size_t length = text.lineLength(index);
        const std::size_t first = (7 * index + length / 3) % (length + 1);
        const std::size_t second = first + index % (length - first + 1);
        ColouredText line{'?', u""};
        text.appendLine(index, 0, first, line.text);
        text.appendLine(index, first, second - first, line.text);
        const ColourRole role = text.appendLine(index, second, length, line.text);
        if (line.text.size() == length)
            line.role = letter(role);
        lines.push_back(line);
    }
    return lines;
}

} // namespace

std::string shownPieces(const std::vector<ColouredText>& pieces)
{
    std::string text;
    for (const ColouredText& piece : pieces) {
        text += piece.role;
        for (const char16_t unit : piece.text)
            appendUtf8(text, unit);
    }
    return text;
}

std::string analysisDifferences(const std::string& bytes)
{
    const plain::Analysis expected = plain::analyse(bytes);
    std::vector<ColouredText> whole = expected.listing;
    whole.insert(whole.end(), expected.objectList.begin(), expected.objectList.end());

    SourceText source(placed(bytes, false));
    const StyledText listing = source.makeListing(true);
    SourceText otherSource(placed(bytes, true));
    const StyledText objectList = otherSource.makeListing(false);

    for (const std::string& difference : {
             firstDifference("listing", piecesOf(listing), whole),
             firstDifference("object list", piecesOf(objectList), expected.objectList),
             firstDifference("listing's lines", linesOf(listing), linesOf(whole)),
             firstDifference(
                 "object list's lines", linesOf(objectList), linesOf(expected.objectList)),
         })
        if (!difference.empty())
            return difference;
    if (listing.pieceCount() != whole.size())
        return "piece count " + std::to_string(listing.pieceCount());
    if (source.theCatalog().makeSummary() != expected.summary)
        return "summary: got " + source.theCatalog().makeSummary();
    if (versionCuts(bytes) != plain::cuts(bytes))
        return "cuts";
    return {};
}

} // namespace tarnwick
