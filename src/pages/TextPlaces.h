#pragma once

#include "pdf/PDFText.h"
#include "pdf/PageTextGeometry.h"

#include <QPointF>

#include <functional>
#include <optional>

namespace tarnwick {

class PageViewport;

/// Which text lies where in view.
class TextPlaces
{
public:
    /// @returns the text of a page with its quads; null where it is not there (yet).
    using TextOf = std::function<const PDFPageText*(int page)>;

    /// What selecting takes together.
    enum class Unit
    {
        isCharacter,
        isWord,
        isLine,
    };

    /// @param viewport borrowed.
    TextPlaces(const PageViewport& viewport, TextOf textOf);

    /// The text of the page at a point; null where it is not there.
    const PDFPageText* textUnder(const QPointF& inView) const;
    /// The place between characters that is nearest to a point.
    std::optional<PDFTextPosition> nearest(const QPointF& inView) const;
    /// The place before the character under a point; nothing where there is none.
    std::optional<PDFTextPosition> under(const QPointF& inView) const;

    /// Where the character behind a place shows, in view; null where that is not known.
    QRectF rectOf(const PDFTextPosition& place) const;
    /// The word or line at a place; of characters, and where nothing is known, nothing there.
    PDFSelection::Range unitAt(const PDFTextPosition& place, Unit unit) const;

private:
    const PageViewport& theViewport;
    TextOf theTextOf;
};

} // namespace tarnwick
