#include "analysis/SyntaxColours.h"

#include "SyntaxWalk.h"

#include <algorithm>
#include <array>

namespace tarnwick {

namespace {

constexpr std::size_t stretchesBetweenLooks = 4096; ///< at the stop token
/// Read behind the end of what is asked for, so that a token that is cut there is what it is.
constexpr std::size_t slack = 128;
constexpr std::size_t judgedBytes = 4096;

/// Operators of content streams (ISO 32000-2, annex A), words of CMaps and of objects; in order.
constexpr std::array<std::string_view, 97> knownWords = {"\"", "'", "B", "B*", "BDC", "BI", "BMC",
    "BT", "BX", "CMapName", "CS", "DP", "Do", "EI", "EMC", "ET", "EX", "F", "G", "ID", "J", "K",
    "M", "MP", "Q", "R", "RG", "S", "SC", "SCN", "T*", "TD", "TJ", "TL", "Tc", "Td", "Tf", "Tj",
    "Tm", "Tr", "Ts", "Tw", "Tz", "W", "W*", "b", "b*", "begin", "beginbfchar", "beginbfrange",
    "begincidrange", "begincmap", "begincodespacerange", "c", "cm", "cs", "currentdict", "d", "d0",
    "d1", "def", "defineresource", "dict", "dup", "end", "endbfchar", "endbfrange", "endcidrange",
    "endcmap", "endcodespacerange", "f", "f*", "false", "findresource", "g", "gs", "h", "i", "j",
    "k", "l", "m", "n", "null", "pop", "q", "re", "rg", "ri", "s", "sc", "scn", "sh", "true", "v",
    "w", "y"};
static_assert(std::is_sorted(knownWords.begin(), knownWords.end()));

} // namespace

SyntaxColours::SyntaxColours(std::string_view text, const std::stop_token& stop)
    : theText(text)
{
    theBlocks.reserve(text.size() / blockSize + 1);
    SyntaxWalk walk(text, 0, text.size());
    std::size_t count = 0;
    SyntaxPlace place = SyntaxPlace::isUsual;
    const auto addBlocks = [&](std::size_t end, const Block& block) {
        while (theBlocks.size() * blockSize < end)
            theBlocks.push_back(block);
    };
    while (const auto stretch = walk.next()) {
        if (++count % stretchesBetweenLooks == 0 && stop.stop_requested())
            break;
        addBlocks(stretch->begin, {stretch->begin, SyntaxRole::isPlain, place});
        place = walk.place();
        addBlocks(stretch->end, {stretch->end, stretch->role, place});
    }
    addBlocks(text.size() + 1, Block{text.size(), SyntaxRole::isPlain, SyntaxPlace::isUsual});
}

std::vector<SyntaxStretch> SyntaxColours::stretches(std::size_t begin, std::size_t end) const
{
    std::vector<SyntaxStretch> found;
    const auto add = [&](const SyntaxStretch& stretch) {
        const SyntaxStretch part{
            std::max(stretch.begin, begin), std::min(stretch.end, end), stretch.role};
        if (part.role != SyntaxRole::isPlain && part.begin < part.end)
            found.push_back(part);
    };
    const Block& block = theBlocks[begin / blockSize];
    add({begin, block.resume, block.role});
    if (block.resume >= end)
        return found;
    SyntaxWalk walk(theText, block.resume, std::min(end + slack, theText.size()), block.place);
    for (auto stretch = walk.next(); stretch && stretch->begin < end; stretch = walk.next())
        add(*stretch);
    return found;
}

bool SyntaxColours::areSyntax(std::string_view text)
{
    std::size_t known = 0;
    std::size_t unknown = 0;
    const std::string_view judged = text.substr(0, judgedBytes);
    SyntaxWalk walk(judged, 0, judged.size());
    while (const auto stretch = walk.next()) {
        const std::string_view word = judged.substr(stretch->begin, stretch->end - stretch->begin);
        if (word == "<<")
            ++known;
        else if (stretch->role == SyntaxRole::isOperator && stretch->end < judged.size())
            ++(std::binary_search(knownWords.begin(), knownWords.end(), word) ? known : unknown);
    }
    return known > 0 && known >= unknown;
}

} // namespace tarnwick
