#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace tarnwick {

/// Where the lines of a text begin, in little memory.
///
/// Only some line starts are kept, the rest is found by reading on from the one before. They lie at
/// most 32 lines or, where lines are long, one line behind 64 Ki characters apart, so that finding
/// a line reads little and the end of a long line is never searched for.
class LineIndex
{
public:
    struct Start
    {
        std::size_t line = 0;
        std::size_t offset = 0;
    };

    /// Of a text of one line that begins at 0.
    LineIndex() { theStarts.push_back({}); }

    /// The next line begins here. Precondition: offset is behind all earlier ones.
    void append(std::size_t offset)
    {
        ++theLast;
        const Start& kept = theStarts.back();
        if (theLast - kept.line >= lineStride || offset - kept.offset >= offsetStride)
            theStarts.push_back({theLast, offset});
    }

    void shrink() { theStarts.shrink_to_fit(); }

    std::size_t lineCount() const { return theLast + 1; }

    /// The last kept start that is not behind a line. Precondition: line < lineCount().
    Start before(std::size_t line) const;

    /// Where a line begins, when that is kept.
    std::optional<std::size_t> kept(std::size_t line) const;

private:
    static constexpr std::size_t lineStride = 32;
    static constexpr std::size_t offsetStride = std::size_t{1} << 16;

    std::vector<Start> theStarts;
    std::size_t theLast = 0;
};

} // namespace tarnwick
