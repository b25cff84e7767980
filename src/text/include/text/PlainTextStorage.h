#pragma once

#include "analysis/SharedBytes.h"
#include "text/LineIndex.h"
#include "text/TextStorage.h"

#include <variant>

namespace tarnwick {

/// A text in the default colour: a string, or a file's bytes with one character per byte.
///
/// Lines end at U+000A to U+000D, U+0085 and, in strings, U+2028 and U+2029. CR LF is one line end
/// here: a file written with it does not show an empty line after every line.
///
/// Making one reads the whole text once (1 GB of bytes in short lines: 0.8 s) and may be done in
/// any thread. Besides the text itself it takes about half a byte per line.
class PlainTextStorage : public TextStorage
{
public:
    explicit PlainTextStorage(const QString& text = {});
    /// Bytes are not copied; they are kept alive by their owner.
    explicit PlainTextStorage(const SharedBytes& bytes);

    qsizetype lineCount() const override;
    qsizetype lineLength(qsizetype index) const override;
    TextLine line(
        qsizetype index, qsizetype position = 0, qsizetype count = 1'000'000) const override;
    QString lineEnd(qsizetype index) const override;
    /// Of bytes.
    std::optional<std::size_t> lineOffset(qsizetype index) const override;

    /// The line that a unit of the text belongs to, a line end to the line that it ends; the last
    /// line for positions behind the text. Precondition: position >= 0.
    qsizetype lineAt(qsizetype position) const;
    /// The place of a unit of the text, and the way back. Places in a line's end are that line's.
    /// Precondition: as for lineAt(); a place of the text.
    /// @{
    TextPosition placeOf(qsizetype position) const;
    qsizetype positionOf(TextPosition place) const;
    /// @}

private:
    struct Extent
    {
        std::size_t begin;
        std::size_t end;
    };
    Extent extent(std::size_t index) const;
    QString characters(qsizetype begin, qsizetype length) const;

    std::variant<QString, SharedBytes> theText;
    LineIndex theIndex;
};

} // namespace tarnwick
