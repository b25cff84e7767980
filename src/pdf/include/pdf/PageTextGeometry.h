#pragma once

#include "pdf/PDFSelection.h"
#include "pdf/PDFText.h"

#include <QPointF>

#include <functional>

namespace tarnwick {

/// A place between two characters of a document's text.
struct PDFTextPosition
{
    int page = 0;
    qsizetype index = 0; ///< UTF-16 units of the page's string before it

    bool operator==(const PDFTextPosition&) const = default;
    bool operator<(const PDFTextPosition& other) const
    {
        return page != other.page ? page < other.page : index < other.index;
    }
};

/// What lies where in a page's text. Texts need their quads; without them nothing lies anywhere.
namespace PageTextGeometry {

/// The character under a point in page space, or -1.
qsizetype characterAt(const PDFPageText& text, const QPointF& point);

/// The place between characters that is nearest to a point: within the nearest line, before or
/// behind the nearest character. Never inside a grapheme cluster. 0 for a page without text.
qsizetype nearestPosition(const PDFPageText& text, const QPointF& point);

/// The word, or run of blanks or punctuation, that holds a character; empty for an index outside of
/// the string.
PDFSelection::Range wordAt(const QString& string, int page, qsizetype index);
/// The line that holds a character, its end left out.
PDFSelection::Range lineAt(const QString& string, int page, qsizetype index);

/// The text between two places in either order.
/// @param lengthOf length of a page's string; pages whose length is 0 have no part in it.
PDFSelection selectionBetween(const PDFTextPosition& one, const PDFTextPosition& other,
    const std::function<qsizetype(int page)>& lengthOf);

/// What blocks of quads reach over (PDFPageText::blocks); a null rectangle for one without places.
QList<QRectF> blocksOf(const QList<PDFQuad>& quads);

/// A part of a page's text, in UTF-16 units.
struct Stretch
{
    qsizetype start = 0;
    qsizetype end = 0;
};
/// The parts of a text that may show in an area, in page space: ascending, apart from each other,
/// and with more than shows. The whole text where its blocks are not known.
QList<Stretch> stretchesIn(const PDFPageText& text, const QRectF& area);

/// Outlines of a stretch in page space: one polygon for each run of characters that stand side by
/// side. The stretch is cut to the text.
QList<QPolygonF> outlines(const PDFPageText& text, qsizetype start, qsizetype length);

}

} // namespace tarnwick
