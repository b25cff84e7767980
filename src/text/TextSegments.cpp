#include "text/TextSegments.h"

#include "text/PlainTextStorage.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QTextBoundaryFinder>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick {

namespace {

// Without wrapping every visible line may show a segment or two, so they are just wider than a
// large window. With it a few segments fill the window; each begins a row, so they should not be
// small.
constexpr qsizetype unwrappedSize = 512;
constexpr qsizetype wrappedSize = 4096;
/// More than a segment of tabs at the largest zoom takes, less than layouts can count.
constexpr qreal unlimitedWidth = 4'000'000;
/// How far before its usual place a cut may be moved, in units.
constexpr qsizetype cutWindow = 64;

/// Where to cut a stretch of text near its middle: behind the last space before it, else before the
/// user-perceived character that the middle is in.
qsizetype bestCut(const QString& text, qsizetype middle)
{
    for (qsizetype at = middle; at > 0; --at) {
        if (text.at(at - 1) == u' ')
            return at;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(middle);
    if (finder.isAtBoundary())
        return middle;
    const qsizetype before = finder.toPreviousBoundary();
    if (before > 0)
        return before;
    // A character with more marks than the window holds is cut, but no surrogate pair is.
    return text.at(middle).isLowSurrogate() && middle > 1 ? middle - 1 : middle;
}

qreal usualWidth(const QFontMetricsF& metrics, const QFont& font)
{
    // Advances are rounded to pixels only when a text is laid out.
    constexpr int sample = 64;
    return QFontInfo(font).fixedPitch() ? metrics.horizontalAdvance(QString(sample, u'0')) / sample
                                        : metrics.averageCharWidth();
}

} // namespace

int TextSegment::rowOf(qsizetype cursor) const
{
    return layout.lineForTextPosition(static_cast<int>(cursor)).lineNumber();
}

qreal TextSegment::xOf(qsizetype cursor) const
{
    return layout.lineForTextPosition(static_cast<int>(cursor)).cursorToX(static_cast<int>(cursor));
}

qsizetype TextSegment::cursorAt(int row, qreal x) const
{
    const QTextLine textLine = layout.lineAt(row);
    const int first = textLine.textStart();
    const int end = first + textLine.textLength();
    const int cursor = nearestFrom(std::clamp(textLine.xToCursor(x), first, end), textLine, x);
    const bool isNextRow = row + 1 < rows() && cursor >= end;
    return isNextRow ? layout.previousCursorPosition(cursor) : cursor;
}

/// Qt looks beside the point, by the width of the spaces that a right-to-left row ends with, and
/// takes the row's end for what follows an emoji of several.
int TextSegment::nearestFrom(int cursor, const QTextLine& textLine, qreal x) const
{
    const int first = textLine.textStart();
    const int end = first + textLine.textLength();
    const auto distance
        = [&textLine, x](int place) { return std::abs(textLine.cursorToX(place) - x); };
    for (;;) {
        const int before = std::max(first, layout.previousCursorPosition(cursor));
        const int after = std::min(end, layout.nextCursorPosition(cursor));
        const int nearer = distance(before) < distance(after) ? before : after;
        if (distance(nearer) >= distance(cursor))
            return cursor;
        cursor = nearer;
    }
}

void TextSegments::setStorage(std::shared_ptr<const TextStorage> storage)
{
    theCache.clear();
    theStorage = std::move(storage);
}

void TextSegments::setStyle(const Style& style)
{
    theCache.clear();
    theStyle = style;
    theSubstitution = GlyphSubstitution(style.font);
    const QFontMetricsF metrics
        = style.device ? QFontMetricsF(style.font, style.device) : QFontMetricsF(style.font);
    theRowHeight = std::max(1.0, std::ceil(metrics.lineSpacing()));
    theBaseline = std::round(metrics.ascent() + metrics.leading() / 2);
    theCharacterWidth = std::max(1.0, usualWidth(metrics, style.font));
    // The layout scales tabs, and nothing else, from the screen to the device itself.
    theTabWidth = 8 * std::max(1.0, usualWidth(QFontMetricsF(style.font), style.font));
}

qsizetype TextSegments::segmentSize() const
{
    return isWrapped() ? wrappedSize : unwrappedSize;
}

qsizetype TextSegments::count(qsizetype line) const
{
    const qsizetype length = theStorage->lineLength(line);
    return std::max<qsizetype>(1, (length + segmentSize() - 1) / segmentSize());
}

qsizetype TextSegments::start(qsizetype line, qsizetype index) const
{
    const qsizetype usual = index * segmentSize();
    if (index == 0 || usual >= theStorage->lineLength(line))
        return std::min(usual, theStorage->lineLength(line));
    const qsizetype from = usual - cutWindow;
    return from + bestCut(theStorage->line(line, from, 2 * cutWindow).text, cutWindow);
}

qsizetype TextSegments::indexOf(TextPosition position) const
{
    const qsizetype last = count(position.line) - 1;
    const qsizetype usual = std::min(position.unit / segmentSize(), last);
    return usual < last && position.unit >= start(position.line, usual + 1) ? usual + 1 : usual;
}

std::shared_ptr<const TextSegment> TextSegments::segment(qsizetype line, qsizetype index) const
{
    const Key key(line, index);
    if (const auto* known = theCache.object(key))
        return *known;
    auto made = make(line, index);
    const qsizetype cost = made->length + 32;
    theCache.insert(key, new std::shared_ptr<TextSegment>(made), cost);
    return made;
}

std::shared_ptr<TextSegment> TextSegments::make(qsizetype line, qsizetype index) const
{
    const qsizetype begin = start(line, index);
    const qsizetype length = start(line, index + 1) - begin;
    const TextLine text = theStorage->line(line, begin, length);
    auto made = std::make_shared<TextSegment>(
        theSubstitution.shown(text.text), theStyle.font, theStyle.device);
    made->line = line;
    made->start = begin;
    made->length = length;
    made->endsLine = index + 1 == count(line);
    made->role = text.role;
    made->marks = text.marks;
    layOut(*made);
    return made;
}

void TextSegments::layOut(TextSegment& segment) const
{
    QTextOption option;
    option.setWrapMode(
        isWrapped() ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
    option.setTabStopDistance(theTabWidth);
    QTextLayout& layout = segment.layout;
    layout.setTextOption(option);
    layout.setCacheEnabled(true);
    layout.beginLayout();
    for (QTextLine row = layout.createLine(); row.isValid(); row = layout.createLine()) {
        row.setLineWidth(isWrapped() ? theStyle.wrapWidth : unlimitedWidth);
        segment.width = std::max(segment.width, row.naturalTextWidth());
    }
    layout.endLayout();
    const bool isRightAligned = isWrapped() && layout.text().isRightToLeft();
    for (int number = 0; number < layout.lineCount(); ++number) {
        QTextLine row = layout.lineAt(number);
        const qreal x
            = isRightAligned ? std::max(0.0, theStyle.wrapWidth - row.naturalTextWidth()) : 0;
        row.setPosition({x, number * theRowHeight + theBaseline - row.ascent()});
    }
}

} // namespace tarnwick
