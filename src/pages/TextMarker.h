#pragma once

#include "pdf/PDFSelection.h"
#include "pdf/PDFText.h"
#include "pdf/PageTextGeometry.h"

#include <QColor>
#include <QRectF>

#include <functional>

class QPainter;

namespace tarnwick {

/// Marks stretches of a page's text on the page: what is selected, and what a search has found.
///
/// What a page's text consists of is the file's choice, and a painting is not to wait for it: only
/// what shows is looked at, characters too small to be told apart are marked by the block, and
/// where a page piles up its characters beyond all sense, the marks end. A page that can be read is
/// far from that.
class TextMarker
{
public:
    using ToView = std::function<QPolygonF(const QPolygonF&)>;

    /// @param painter, text borrowed. @param area what shows of the page, in page space.
    /// @param toView from page space to what the painter paints on.
    TextMarker(QPainter& painter, const PDFPageText& text, const QRectF& area, ToView toView);

    /// Marks a stretch, with the painter's pen.
    void fill(const PDFSelection::Range& range, const QColor& colour);

    /// Marks those of the matches that lie on a page. @param matches in document order.
    void fillMatches(const QList<PDFSelection>& matches, int page, const QColor& colour);

private:
    void fillCharacters(qsizetype start, qsizetype end);
    bool fillBlock(qsizetype start, qsizetype end);
    void draw(const QPolygonF& polygon);
    bool isSpent() const;

    QPainter& thePainter;
    const PDFPageText& theText;
    QRectF theArea;
    ToView theToView;
    QList<PageTextGeometry::Stretch> theStretches;
    double theSmallest; ///< square points of a character that can be told from its neighbours
    qsizetype theOutlinesLeft;
    qsizetype theCharactersLeft;
    double theAreaLeft; ///< square points
};

} // namespace tarnwick
