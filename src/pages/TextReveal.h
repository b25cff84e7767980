#pragma once

#include "TextPlaces.h"

#include <optional>

namespace tarnwick {

class PageScroller;
class PageViewport;

/// Scrolls to where a text stands.
///
/// That is known once the page's quads are there; until then its page is shown, and the place as
/// soon as they come.
class TextReveal
{
public:
    /// All borrowed.
    TextReveal(const PageViewport& viewport, PageScroller& scroller, TextPlaces::TextOf textOf);

    /// Shows where a selection begins, unless it shows already.
    /// @returns whether that is done; otherwise the texts of what shows are wanted now.
    bool show(const PDFSelection& selection);
    /// Goes on where a text was missing.
    void textArrived();
    /// The user has moved the view, or another document is to come: what was to be shown is no
    /// longer looked for.
    void forget() { theWaiting.reset(); }

private:
    bool show(const PDFSelection::Range& range);
    void scrollTo(const QRectF& target);

    const PageViewport& theViewport;
    PageScroller& theScroller;
    TextPlaces::TextOf theTextOf;
    std::optional<PDFSelection::Range> theWaiting;
};

} // namespace tarnwick
