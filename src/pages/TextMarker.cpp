#include "TextMarker.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

constexpr qsizetype mostOutlines = 10'000;
constexpr qsizetype mostCharacters = 500'000;
constexpr double mostLayers = 20; ///< times that all that shows may be painted over
constexpr double smallestCharacter = 2; ///< square pixels

double area(const QRectF& rect)
{
    return std::max(0.0, rect.width()) * std::max(0.0, rect.height());
}

} // namespace

TextMarker::TextMarker(
    QPainter& painter, const PDFPageText& text, const QRectF& area, ToView toView)
    : thePainter(painter)
    , theText(text)
    , theArea(area)
    , theToView(std::move(toView))
    , theStretches(PageTextGeometry::stretchesIn(text, area))
    , theOutlinesLeft(mostOutlines)
    , theCharactersLeft(mostCharacters)
    , theAreaLeft(mostLayers * tarnwick::area(area))
{
    const QRectF unit = theToView(QRectF(0, 0, 1, 1)).boundingRect();
    theSmallest = smallestCharacter / std::max(1e-9, tarnwick::area(unit));
}

bool TextMarker::isSpent() const
{
    return theOutlinesLeft <= 0 || theCharactersLeft <= 0 || theAreaLeft <= 0;
}

void TextMarker::draw(const QPolygonF& polygon)
{
    --theOutlinesLeft;
    const QRectF box = polygon.boundingRect();
    // What lies outside costs nothing.
    const QRectF shown(
        QPointF(std::max(box.left(), theArea.left()), std::max(box.top(), theArea.top())),
        QPointF(std::min(box.right(), theArea.right()), std::min(box.bottom(), theArea.bottom())));
    theAreaLeft -= area(shown);
    thePainter.drawPolygon(theToView(polygon));
}

/// A block of characters that are too small to be told apart is marked as one.
/// @returns false when its characters are to be marked.
bool TextMarker::fillBlock(qsizetype start, qsizetype end)
{
    constexpr qsizetype step = PDFPageText::quadBlock;
    const qsizetype block = start / step;
    const bool isWhole
        = start == block * step && end == std::min(start + step, theText.quads.size());
    if (!isWhole || block >= theText.blocks.size()
        || area(theText.blocks.at(block)) > theSmallest * static_cast<double>(end - start))
        return false;
    draw(theText.blocks.at(block));
    return true;
}

void TextMarker::fillCharacters(qsizetype start, qsizetype end)
{
    theCharactersLeft -= end - start;
    const QList<QPolygonF> outlines = PageTextGeometry::outlines(theText, start, end - start);
    for (const QPolygonF& outline : outlines) {
        if (isSpent())
            return;
        draw(outline);
    }
}

void TextMarker::fill(const PDFSelection::Range& range, const QColor& colour)
{
    thePainter.setBrush(colour);
    constexpr qsizetype step = PDFPageText::quadBlock;
    for (const PageTextGeometry::Stretch& stretch : std::as_const(theStretches)) {
        qsizetype start = std::max(stretch.start, range.start);
        const qsizetype end = std::min(stretch.end, range.start + range.length);
        while (start < end && !isSpent()) {
            // Small blocks as they are, others together: so that lines are marked in one.
            qsizetype next = std::min(end, (start / step + 1) * step);
            if (!fillBlock(start, next)) {
                next = std::min(end, (start / step + 16) * step);
                fillCharacters(start, next);
            }
            start = next;
        }
    }
}

void TextMarker::fillMatches(const QList<PDFSelection>& matches, int page, const QColor& colour)
{
    const auto endsBefore = [page](const PDFSelection& match, qsizetype place) {
        if (match.isEmpty())
            return true;
        const PDFSelection::Range& last = match.ranges().last();
        return last.page < page || (last.page == page && last.start + last.length <= place);
    };
    thePainter.setBrush(colour);
    auto match = matches.begin();
    for (const PageTextGeometry::Stretch& stretch : std::as_const(theStretches)) {
        match = std::lower_bound(match, matches.end(), stretch.start, endsBefore);
        for (; match != matches.end() && !isSpent(); ++match) {
            if (match->isEmpty())
                continue;
            const PDFSelection::Range& first = match->ranges().first();
            if (first.page > page || (first.page == page && first.start >= stretch.end))
                break;
            for (const PDFSelection::Range& range : match->ranges()) {
                if (range.page == page)
                    fillCharacters(range.start, range.start + range.length);
            }
        }
    }
}

} // namespace tarnwick
