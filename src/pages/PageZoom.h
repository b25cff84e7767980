#pragma once

#include <QObject>
#include <QPointF>

namespace tarnwick {

class PageScroller;
class PageViewport;

/// How large the pages of a viewport are shown, and how they are turned.
///
/// Factors are magnifications: 1 is actual size (ViewFrame::actualScale()).
class PageZoom : public QObject
{
    Q_OBJECT

public:
    static constexpr double smallest = 0.05;
    static constexpr double largest = 64;

    /// What the frame decides.
    enum class Fit
    {
        isFree, ///< nothing: the user has chosen the factor
        isWidth,
        isPage,
    };

    /// @param viewport, scroller borrowed.
    PageZoom(PageViewport& viewport, PageScroller& scroller, QObject* parent);

    double factor() const;
    /// Frees the factor and sets it, within its bounds; what lies at a point in view stays there.
    void setFactor(double factor, const QPointF& inView);
    void zoomBy(double by, const QPointF& inView) { setFactor(factor() * by, inView); }

    Fit fit() const { return theFit; }
    void setFit(Fit fit);
    /// Leaves the factor as it is from now on.
    void free() { theFit = Fit::isFree; }
    /// To be called when frame or pages have changed.
    void fitAgain();

    /// Turns every page clockwise and shows the present one.
    void rotateBy(int quarterTurns);

signals:
    void changed(double factor);

private:
    void take(double factor, const QPointF& inView);

    PageViewport& theViewport;
    PageScroller& theScroller;
    Fit theFit = Fit::isWidth;
};

} // namespace tarnwick
