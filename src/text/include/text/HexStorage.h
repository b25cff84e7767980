#pragma once

#include "analysis/SharedBytes.h"
#include "analysis/StrayBytes.h"
#include "text/TextPosition.h"
#include "text/TextStorage.h"

#include <cstddef>

namespace tarnwick {

/// Bytes as a text of 16 of them a line: the first one's offset, the bytes in two groups of eight,
/// and what they are as ASCII, a middle dot standing for those that are no printable character.
///
///     0000090D  25 50 44 46 2D 31 2E 37  0A 25 E2 E3 CF D3 0A 31  %PDF-1.7·%····1
///
/// The last line tells the number of bytes: a whole number of 16 leaves it without any. Nothing is
/// copied and nothing kept: a line is made in 0.1 us when it is asked for, so a gigabyte is as
/// quick as a page.
class HexStorage : public TextStorage
{
public:
    static constexpr std::size_t bytesPerLine = 16;

    /// @param stray bytes to be marked as such.
    explicit HexStorage(SharedBytes bytes, const StrayBytes& stray = {});

    const SharedBytes& bytes() const { return theBytes; }
    std::size_t size() const { return theBytes.view.size(); }
    const StrayBytes& stray() const { return theStray; }

    qsizetype lineCount() const override;
    qsizetype lineLength(qsizetype index) const override;
    TextLine line(
        qsizetype index, qsizetype position = 0, qsizetype count = 1'000'000) const override;
    std::optional<std::size_t> lineOffset(qsizetype index) const override;

    /// A byte stands in two columns.
    enum class Column
    {
        isHex,
        isText,
    };
    /// Where a byte begins in a column; of size(), where a further one would.
    /// Precondition: byte <= size().
    TextPosition positionOf(std::size_t byte, Column column) const;
    /// The byte that a place lies on or is nearest to in its line; size() behind the last.
    /// Precondition: the place is in the text.
    std::size_t byteAt(TextPosition position) const;
    /// The column that a place lies in; offsets belong to the hexadecimal one.
    Column columnOf(TextPosition position) const;
    /// The characters of bytes of one line in a column, both ends without blanks around them.
    /// Precondition: begin < end, and both lie in one line.
    TextRange rangeOf(std::size_t begin, std::size_t end, Column column) const;

private:
    qsizetype hexColumn() const { return theDigits + 2; }
    qsizetype textColumn() const;
    std::size_t bytesIn(qsizetype line) const;
    QString wholeLine(qsizetype index) const;
    QList<TextMark> marksOf(qsizetype index) const;
    void addStray(std::size_t begin, std::size_t end, QList<TextMark>& marks) const;

    SharedBytes theBytes;
    StrayBytes theStray;
    qsizetype theDigits; ///< of an offset
};

} // namespace tarnwick
