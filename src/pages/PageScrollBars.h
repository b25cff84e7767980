#pragma once

#include <QPointF>

#include <optional>

class QScrollBar;

namespace tarnwick {

class PageViewport;

/// The scroll bars beside a viewport: they show what it shows, and tell where the user wants it.
///
/// The horizontal bar's zero is the pages' left edge.
class PageScrollBars
{
public:
    /// All borrowed.
    PageScrollBars(QScrollBar* vertical, QScrollBar* horizontal, const PageViewport& viewport);

    /// Pixels of a line: what the arrows of a bar go, and the arrow keys.
    static constexpr int lineStep = 48;

    /// Sets the bars to what the viewport shows.
    void show();
    /// Where in the content the bars stand; nothing while show() is what moves them.
    std::optional<QPointF> origin() const;

private:
    void showHeight();
    void showWidth();

    QScrollBar* theVertical;
    QScrollBar* theHorizontal;
    const PageViewport& theViewport;
    double theUnit = 1; ///< pixels for a step of the vertical bar
    bool theyAreBeingSet = false;
};

} // namespace tarnwick
