// The part of PlainTextView that paints.
#include "text/PlainTextView.h"

#include "LinkPointer.h"

#include <QPaintEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace tarnwick {

namespace {

QList<QTextLayout::FormatRange> markFormats(
    const QList<TextMark>& marks, const TextPalette& colours)
{
    QList<QTextLayout::FormatRange> formats;
    for (const TextMark& mark : marks) {
        QTextLayout::FormatRange format;
        format.start = static_cast<int>(mark.start);
        format.length = static_cast<int>(mark.length);
        // Without one, Qt leaves a stretch out that touches another.
        format.format.setBackground(QColor(Qt::transparent));
        if (mark.kind == TextMark::Kind::isAside) {
            format.format.setForeground(colours.aside());
        } else if (mark.kind == TextMark::Kind::isColoured) {
            format.format.setForeground(colours.colour(mark.role));
        } else {
            format.format.setForeground(colours.strayText());
            format.format.setBackground(colours.strayBackground());
            format.format.setFontUnderline(true); // not by colour alone
        }
        formats.append(format);
    }
    return formats;
}

QTextCharFormat coloured(const QColor& background, const QColor& text)
{
    QTextCharFormat look;
    look.setBackground(background);
    look.setForeground(text);
    return look;
}

} // namespace

/// The frame around the viewport tells which of several texts has the keyboard.
bool PlainTextView::event(QEvent* event)
{
    const bool isHandled = QAbstractScrollArea::event(event);
    if (event->type() == QEvent::Paint && hasFocus() && frameWidth() > 0) {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
    return isHandled;
}

void PlainTextView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    theShownLinks = shownLinks();
    theLayout.forEachVisible([&](const TextSegment& segment, QPointF origin) {
        paintSegment(painter, segment, origin);
        paintSelectedLineEnd(painter, segment, origin);
    });
    theLayout.forEachVisibleGap([&](std::size_t gap, qreal y) {
        paintGap(painter, theGaps.at(static_cast<qsizetype>(gap)).note, y);
    });
    if (hasFocus() && isCaretVisible)
        paintCaret(painter);
}

void PlainTextView::paintSegment(
    QPainter& painter, const TextSegment& segment, QPointF origin) const
{
    painter.setPen(theColours.colour(segment.role));
    const QRectF clip(QPointF(), QSizeF(viewport()->size()));
    segment.layout.draw(&painter, origin, formatsOf(segment), clip);
}

QList<QTextLayout::FormatRange> PlainTextView::formatsOf(const TextSegment& segment) const
{
    QList<QTextLayout::FormatRange> formats = markFormats(segment.marks, theColours);
    const auto add = [&](TextRange range, const QTextCharFormat& look) {
        const TextRange own{
            {segment.line, segment.start}, {segment.line, segment.start + segment.length}};
        const TextPosition begin = std::max(range.begin, own.begin);
        const TextPosition end = std::min(range.end, own.end);
        if (begin >= end)
            return;
        QTextLayout::FormatRange format;
        format.start = static_cast<int>(begin.unit - segment.start);
        format.length = static_cast<int>(end.unit - begin.unit);
        format.format = look;
        formats.append(format);
    };
    QTextCharFormat underlined;
    underlined.setFontUnderline(true);
    for (const TextRange& link : theShownLinks)
        add(link, underlined);
    const QPalette colours = palette();
    for (const TextRange& match : theVisibleMatches)
        add(match, coloured(theColours.matchBackground(), theColours.matchText()));
    for (const TextRange& selected : selectedRanges(segment.line)) {
        add(selected,
            coloured(colours.color(selectionGroup(), QPalette::Highlight),
                colours.color(selectionGroup(), QPalette::HighlightedText)));
    }
    return formats;
}

/// The link that Enter follows, and the one that a click does.
QList<TextRange> PlainTextView::shownLinks() const
{
    QList<TextRange> links;
    if (hasFocus() && !hasSelection()) {
        if (const std::optional<TextRange> link = linkAt(theCaret))
            links.append(*link);
    }
    if (theLinkPointer->link())
        links.append(*theLinkPointer->link());
    return links;
}

QList<TextRange> PlainTextView::selectedRanges(qsizetype line) const
{
    Q_UNUSED(line)
    return {selection()};
}

QPalette::ColorGroup PlainTextView::selectionGroup() const
{
    return hasFocus() && isActiveWindow() ? QPalette::Active : QPalette::Inactive;
}

/// Shows that a line's end belongs to the selection.
void PlainTextView::paintSelectedLineEnd(
    QPainter& painter, const TextSegment& segment, QPointF origin) const
{
    const TextPosition end{segment.line, segment.start + segment.length};
    const QList<TextRange> ranges = selectedRanges(segment.line);
    const bool isSelected = std::any_of(ranges.begin(), ranges.end(),
        [end](const TextRange& range) { return range.begin <= end && range.end > end; });
    if (!segment.endsLine || !isSelected)
        return;
    const QTextLine row = segment.layout.lineAt(segment.rows() - 1);
    const qreal width = theLayout.characterWidth() / 2;
    const bool isRightToLeft = segment.layout.text().isRightToLeft();
    const qreal x = row.x() + (isRightToLeft ? -width : row.naturalTextWidth());
    painter.fillRect(
        QRectF(origin.x() + x, origin.y() + (segment.rows() - 1) * theLayout.rowHeight(), width,
            theLayout.rowHeight()),
        palette().color(selectionGroup(), QPalette::Highlight));
}

void PlainTextView::paintCaret(QPainter& painter) const
{
    const std::optional<QRectF> caret = theLayout.caretAt(theCaret);
    if (!caret)
        return;
    const int width = style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this);
    painter.fillRect(
        QRectF(caret->topLeft(), QSizeF(width, caret->height())), palette().color(QPalette::Text));
}

} // namespace tarnwick
