#pragma once

#include "text/GlyphSubstitution.h"
#include "text/TextPosition.h"
#include "text/TextStorage.h"

#include <QCache>
#include <QFont>
#include <QTextLayout>

#include <memory>

namespace tarnwick {

/// A stretch of a line, laid out: one row, or several where it is wrapped.
///
/// Rows have one height and one baseline whatever fonts their characters came from. Coordinates are
/// pixels from the segment's top left corner; cursor positions count from its first unit.
struct TextSegment
{
    TextSegment(const QString& shownText, const QFont& font, QPaintDevice* device)
        : layout(shownText, font, device)
    {
    }

    qsizetype line = 0;
    qsizetype start = 0; ///< UTF-16 units of the line before it
    qsizetype length = 0;
    bool endsLine = true;
    ColourRole role = ColourRole::isDefault;
    QList<TextMark> marks; ///< their places count from the segment's first unit
    QTextLayout layout;
    qreal width = 0; ///< of its widest row

    int rows() const { return layout.lineCount(); }
    /// The row of a cursor position in [0, length].
    int rowOf(qsizetype cursor) const;
    qreal xOf(qsizetype cursor) const;
    /// The cursor position nearest to x in a row. A wrapped row's last place belongs to the next.
    qsizetype cursorAt(int row, qreal x) const;

private:
    int nearestFrom(int cursor, const QTextLine& textLine, qreal x) const;
};

/// Cuts the lines of a text into segments and lays out those that are asked for.
///
/// A line of usual length is one segment. Longer ones are cut near multiples of a fixed length, at
/// a space or between two user-perceived characters, so that any part of a line of a gigabyte is
/// found without looking at what stands before it.
class TextSegments
{
public:
    struct Style
    {
        QFont font;
        /// Pixels that a row may be wide, or 0 where lines are not wrapped.
        qreal wrapWidth = 0;
        /// What the text is drawn on where that is no screen; borrowed.
        QPaintDevice* device = nullptr;
    };

    void setStorage(std::shared_ptr<const TextStorage> storage);
    void setStyle(const Style& style);

    const TextStorage& storage() const { return *theStorage; }
    bool isWrapped() const { return theStyle.wrapWidth > 0; }
    qreal wrapWidth() const { return theStyle.wrapWidth; }
    const QFont& font() const { return theStyle.font; }

    qreal rowHeight() const { return theRowHeight; }
    /// Width of a character of usual width; of all of them in a fixed-pitch font.
    qreal characterWidth() const { return theCharacterWidth; }

    /// Units that a segment has, about.
    qsizetype segmentSize() const;
    /// Number of segments of a line, at least 1.
    qsizetype count(qsizetype line) const;
    /// Where a segment begins; the line's length for the index behind the last one.
    qsizetype start(qsizetype line, qsizetype index) const;
    /// The segment that a place is in; a place between two is in the latter.
    qsizetype indexOf(TextPosition position) const;

    /// Never null; stays as it is as long as it is held.
    std::shared_ptr<const TextSegment> segment(qsizetype line, qsizetype index) const;

private:
    std::shared_ptr<TextSegment> make(qsizetype line, qsizetype index) const;
    void layOut(TextSegment& segment) const;

    std::shared_ptr<const TextStorage> theStorage;
    Style theStyle;
    GlyphSubstitution theSubstitution;
    qreal theRowHeight = 1;
    qreal theBaseline = 0;
    qreal theCharacterWidth = 1;
    qreal theTabWidth = 8;

    using Key = std::pair<qsizetype, qsizetype>;
    /// Layouts take about 40 bytes per unit.
    mutable QCache<Key, std::shared_ptr<TextSegment>> theCache{300'000};
};

} // namespace tarnwick
