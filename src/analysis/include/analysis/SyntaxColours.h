#pragma once

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <string_view>
#include <vector>

namespace tarnwick {

/// What a stretch of PDF syntax is to whoever reads it.
enum class SyntaxRole : unsigned char
{
    isPlain, ///< numbers, brackets, references, white space
    isOperator, ///< and any other word, as "obj"
    isName,
    isString,
    isComment,
    isData, ///< of an inline image (ISO 32000-2, 8.9.7)
};

/// Where in an inline image a place is: what follows depends on it.
enum class SyntaxPlace : unsigned char
{
    isUsual, ///< in none, or in its data
    isInImage, ///< between BI and ID
    isBeforeData, ///< behind ID
};

struct SyntaxStretch
{
    std::size_t begin = 0; ///< offset in the text
    std::size_t end = 0;
    SyntaxRole role = SyntaxRole::isPlain;

    bool operator==(const SyntaxStretch&) const = default;
};

/// Which stretches of a content stream, or of an object's source, are names, strings, operators.
///
/// One pass over the text keeps 16 bytes for each 4 KB of it: from there on any stretch is taken
/// apart again when it shows, however long the strings and images before it are. Has an answer for
/// any bytes whatever. Immutable once made; any thread may read.
class SyntaxColours
{
public:
    /// @param text borrowed for this object's life. @param stop ends the pass: what lies behind is
    ///   plain.
    explicit SyntaxColours(std::string_view text, const std::stop_token& stop = {});

    /// What is not plain between two offsets, in order, cut at both.
    /// Precondition: begin <= end <= text.size().
    std::vector<SyntaxStretch> stretches(std::size_t begin, std::size_t end) const;

    /// Whether bytes read as a content stream, a CMap or objects do: of the words in their
    /// beginning at least half are such as these have.
    static bool areSyntax(std::string_view text);

private:
    static constexpr std::size_t blockSize = 4096;

    /// How to go on from the beginning of a block.
    struct Block
    {
        std::size_t resume = 0; ///< where a token can begin; up to there all is of role
        SyntaxRole role = SyntaxRole::isPlain;
        SyntaxPlace place = SyntaxPlace::isUsual; ///< at resume
    };

    std::string_view theText;
    std::vector<Block> theBlocks;
};

} // namespace tarnwick
