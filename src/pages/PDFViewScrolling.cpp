#include "PDFViewPrivate.h"

#include <QAccessible>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

/// Steps of a scroll bar; content that is higher in pixels has steps of more than a pixel.
constexpr double mostSteps = 1e9;
constexpr int lineStep = 48; ///< pixels

} // namespace

QSizeF PDFView::Private::viewSize() const
{
    return q->viewport()->size();
}

double PDFView::Private::actualScale() const
{
    return q->logicalDpiX() / 72.0;
}

PageGeometry::PageRange PDFView::Private::shownPages() const
{
    return theGeometry.pagesBetween(theOrigin.y(), theOrigin.y() + viewSize().height());
}

PagePlace PDFView::Private::presentPlace() const
{
    return theGeometry.placeAt(theOrigin + QPointF(viewSize().width() / 2, 0));
}

void PDFView::Private::scrollTo(const QPointF& origin, int target)
{
    theGlide.stop();
    moveTo(origin, target);
}

/// Horizontally the pages that show decide how far one can scroll, so that one poster among a
/// thousand letters does not make every letter slide about.
void PDFView::Private::moveTo(const QPointF& origin, int target)
{
    const QSizeF view = viewSize();
    const double ratio = q->viewport()->devicePixelRatioF();
    const double lowest = std::max(0.0, theGeometry.contentHeight() - view.height());
    const double y = std::clamp(origin.y(), 0.0, lowest);
    theOrigin.setY(std::round(y * ratio) / ratio);
    const double width = theGeometry.widthOf(shownPages());
    const double most = std::max(-view.width() / 2, width / 2 - view.width());
    const double x = std::clamp(origin.x(), std::min(-view.width() / 2, -width / 2), most);
    theOrigin.setX(width <= view.width() ? -view.width() / 2 : std::round(x * ratio) / ratio);
    updateBars();
    updateCurrentPage(target);
    wantSoon();
    q->viewport()->update();
}

void PDFView::Private::updateBars()
{
    const QSizeF view = viewSize();
    theBarsAreBeingSet = true;
    theBarUnit = std::max(1.0, theGeometry.contentHeight() / mostSteps);
    const auto steps = [this](double pixels) { return static_cast<int>(pixels / theBarUnit); };
    QScrollBar* const bar = q->verticalScrollBar();
    bar->setRange(0, std::max(0, steps(theGeometry.contentHeight() - view.height() + 0.99)));
    bar->setPageStep(std::max(1, steps(view.height())));
    bar->setSingleStep(std::max(1, steps(lineStep)));
    bar->setValue(steps(theOrigin.y() + 0.5));
    const double width = theGeometry.widthOf(shownPages());
    QScrollBar* const horizontal = q->horizontalScrollBar();
    horizontal->setRange(0, std::max(0, static_cast<int>(width - view.width() + 0.5)));
    horizontal->setPageStep(std::max(1, static_cast<int>(view.width())));
    horizontal->setSingleStep(lineStep);
    horizontal->setValue(static_cast<int>(std::round(theOrigin.x() + width / 2)));
    theBarsAreBeingSet = false;
}

void PDFView::Private::takeBars()
{
    if (theBarsAreBeingSet)
        return;
    const QScrollBar* const bar = q->verticalScrollBar();
    const QScrollBar* const horizontal = q->horizontalScrollBar();
    const double width = theGeometry.widthOf(shownPages());
    const bool isAtEnd = bar->value() == bar->maximum();
    scrollTo({horizontal->value() - width / 2,
        isAtEnd ? theGeometry.contentHeight() : bar->value() * theBarUnit});
}

void PDFView::scrollContentsBy(int, int)
{
    d->takeBars();
}

double PDFView::Private::shownHeight(int page) const
{
    const QRectF rect = theGeometry.pageRect(page);
    return std::min(rect.bottom(), theOrigin.y() + viewSize().height())
        - std::max(rect.top(), theOrigin.y());
}

void PDFView::Private::updateCurrentPage(int target)
{
    int page = theGeometry.dominantPage(theOrigin.y(), viewSize().height());
    if (shownPages().contains(target)
        && shownHeight(target)
            > std::min(shownHeight(page), theGeometry.pageRect(target).height()) - 1)
        page = target;
    theDetailsTimer.start(120);
    if (page == theCurrentPage)
        return;
    theCurrentPage = page;
    if (QAccessible::isActive()) {
        QAccessibleEvent event(q, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
    emit q->currentPageChanged(page);
}

void PDFView::Private::stride(Stride stride, int direction)
{
    if (stride == Stride::isLine)
        return theGlide.add({0, double(direction * lineStep)});
    // A few lines stay to go on reading from.
    const double step = std::max<double>(lineStep, viewSize().height() - lineStep);
    scrollTo(theOrigin + QPointF(0, direction * step));
}

void PDFView::Private::showPlace(const PagePlace& place)
{
    const QPointF point = theGeometry.contentPoint(place);
    scrollTo({point.x() - viewSize().width() / 2, point.y()});
}

void PDFView::Private::showPage(int page)
{
    const QRectF rect = theGeometry.pageRect(page);
    scrollTo({-viewSize().width() / 2, rect.top() - PageGeometry::gap}, page);
}

void PDFView::Private::recordJump()
{
    theHistory.recordJumpFrom(presentPlace());
    emit q->historyChanged();
}

void PDFView::goToPoint(int page, const QPointF& point)
{
    if (page < 0 || page >= d->theGeometry.pageCount())
        return;
    d->recordJump();
    if (point.isNull())
        return d->showPage(page);
    // Across the page the middle stays in the middle: jumps are up and down.
    const double target = d->theGeometry.contentPoint({page, point}).y();
    const double top = d->theGeometry.pageRect(page).top();
    d->scrollTo({d->theOrigin.x(), std::max(target, top) - PageGeometry::gap}, page);
}

void PDFView::Private::setScale(double factor, const QPointF& pointInView)
{
    const double bounded = std::clamp(factor, smallestFactor, largestFactor);
    const double scale = bounded * actualScale();
    if (std::abs(scale - theGeometry.scale()) < 1e-9)
        return;
    const PagePlace place = theGeometry.placeAt(content(pointInView));
    theGeometry.setScale(scale);
    moveTo(theGeometry.contentPoint(place) - pointInView);
    // While zooming goes on, what is there is shown stretched: no engine is asked for each step.
    wantSoon(90);
    emit q->scaleFactorChanged(bounded);
}

void PDFView::Private::zoomBy(double by, const QPointF& pointInView)
{
    theFit = Fit::isFree;
    setScale(theGeometry.scale() / actualScale() * by, pointInView);
}

void PDFView::Private::applyFit()
{
    if (theGeometry.pageCount() == 0 || theFit == Fit::isFree)
        return;
    const QSizeF view = viewSize();
    const double scale = theFit == Fit::isWidth
        ? theGeometry.scaleForWidth(view.width())
        : theGeometry.scaleForPage(std::max(0, theCurrentPage), view);
    // A fraction less than fits, so that rounding never asks for a scroll bar.
    setScale(scale / actualScale() * 0.9999, {view.width() / 2, 0});
}

void PDFView::Private::setFit(Fit fit)
{
    theFit = fit;
    const int page = theCurrentPage;
    applyFit();
    if (fit == Fit::isPage && page >= 0)
        showPage(page);
}

void PDFView::Private::rotateBy(int quarterTurns)
{
    const int page = std::max(0, theCurrentPage);
    theGeometry.setRotation(theGeometry.rotation() + quarterTurns);
    if (theGeometry.pageCount() == 0)
        return;
    applyFit();
    showPage(page);
}

void PDFView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    const PagePlace place
        = d->theGeometry.placeAt(d->theOrigin + QPointF(event->oldSize().width() / 2.0, 0));
    if (d->theGeometry.pageCount() == 0)
        return;
    d->applyFit();
    d->showPlace(place);
}

} // namespace tarnwick
