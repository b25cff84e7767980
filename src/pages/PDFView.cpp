#include "pages/PDFView.h"

#include "PDFViewAccessible.h"
#include "PDFViewPrivate.h"
#include "PageKeys.h"
#include "PageMenu.h"
#include "PageWheel.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QStyle>
#include <QWheelEvent>

#include <limits>
#include <utility>

namespace tarnwick {

namespace {

constexpr double zoomStep = 1.2;

} // namespace

PDFView::PDFView(QWidget* parent)
    : QAbstractScrollArea(parent)
{
    d = std::make_unique<Private>(this);
    PDFViewAccessible::install();
    setAccessibleName(tr("Pages"));
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->grabGesture(Qt::PinchGesture);
}

PDFView::~PDFView() = default;

void PDFView::setDocument(PDFDocument* document, PDFDocumentText* text)
{
    if (document != d->theDocument || text != d->theText)
        d->setDocument(document, text);
}

PDFDocument* PDFView::document() const
{
    return d->theDocument;
}

void PDFView::setPrintDelegate(std::function<void(PDFView* view)> delegate)
{
    d->thePrintDelegate = std::move(delegate);
}

void PDFView::print()
{
    if (d->thePrintDelegate && d->theDocument)
        d->thePrintDelegate(this);
}

bool PDFView::validateCommand(const QString& command) const
{
    const int last = d->theViewport.pages().pageCount() - 1;
    if (last < 0)
        return false;
    if (command == u"print")
        return d->thePrintDelegate != nullptr;
    if (command == u"copy")
        return !currentSelection().isEmpty();
    if (command == u"selectAll")
        return d->theText != nullptr;
    if (command == u"goBack")
        return canGoBack();
    if (command == u"goForward")
        return canGoForward();
    if (command == u"goToNextPage")
        return currentPage() < last;
    if (command == u"goToPreviousPage")
        return currentPage() > 0;
    if (command == u"zoomIn")
        return scaleFactor() < 0.999 * PageZoom::largest;
    if (command == u"zoomOut")
        return scaleFactor() > 1.001 * PageZoom::smallest;
    return true;
}

// --- Scale and rotation --------------------------------------------------------------------------

void PDFView::setAutoScales(bool on)
{
    if (on)
        fitWidth();
    else if (autoScales())
        d->theZoom.free();
}

bool PDFView::autoScales() const
{
    return d->theZoom.fit() == PageZoom::Fit::isWidth;
}

double PDFView::scaleFactor() const
{
    return d->theZoom.factor();
}

void PDFView::setScaleFactor(double factor)
{
    d->theZoom.setFactor(factor, viewport()->rect().center());
}

int PDFView::rotation() const
{
    return d->theViewport.pages().rotation();
}

void PDFView::zoomIn()
{
    d->theZoom.zoomBy(zoomStep, viewport()->rect().center());
}

void PDFView::zoomOut()
{
    d->theZoom.zoomBy(1 / zoomStep, viewport()->rect().center());
}

void PDFView::fitWidth()
{
    d->theZoom.setFit(PageZoom::Fit::isWidth);
}

void PDFView::fitPage()
{
    d->theZoom.setFit(PageZoom::Fit::isPage);
}

void PDFView::actualSize()
{
    setScaleFactor(1);
}

void PDFView::rotateClockwise()
{
    d->theZoom.rotateBy(1);
}

void PDFView::rotateCounterclockwise()
{
    d->theZoom.rotateBy(-1);
}

// --- Going to pages ------------------------------------------------------------------------------

int PDFView::currentPage() const
{
    return d->theScroller.currentPage();
}

void PDFView::goToPage(int page)
{
    goToPoint(page, {});
}

void PDFView::goToPoint(int page, const QPointF& point)
{
    d->theNavigator.goTo(page, point);
}

void PDFView::goToFirstPage()
{
    goToPage(0);
}

void PDFView::goToLastPage()
{
    goToPage(d->theViewport.pages().pageCount() - 1);
}

void PDFView::goToNextPage()
{
    if (currentPage() + 1 < d->theViewport.pages().pageCount())
        d->theScroller.showPage(currentPage() + 1);
}

void PDFView::goToPreviousPage()
{
    if (currentPage() > 0)
        d->theScroller.showPage(currentPage() - 1);
}

bool PDFView::canGoBack() const
{
    return d->theNavigator.history().canGoBack();
}

bool PDFView::canGoForward() const
{
    return d->theNavigator.history().canGoForward();
}

void PDFView::goBack()
{
    d->theNavigator.goBack();
}

void PDFView::goForward()
{
    d->theNavigator.goForward();
}

void PDFView::followLink(const PDFLink& link)
{
    d->theLinks.follow(link);
}

// --- Text ----------------------------------------------------------------------------------------

const PDFSelection& PDFView::currentSelection() const
{
    return d->theSelector.selection();
}

void PDFView::setCurrentSelection(const PDFSelection& selection, bool animate)
{
    d->theSelector.select(selection);
    if (!animate || selection.isEmpty())
        return;
    d->theOverlay.endPulse();
    if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0)
        d->theOverlay.pulse();
}

void PDFView::scrollSelectionToVisible()
{
    if (!d->theReveal.show(currentSelection()))
        d->wantDetails();
}

void PDFView::setHighlights(const QList<PDFSelection>& matches)
{
    d->theOverlay.setMatches(matches);
}

void PDFView::selectAll()
{
    const int last = d->theViewport.pages().pageCount() - 1;
    if (!d->theText || last < 0)
        return;
    d->theSelector.selectBetween({0, 0}, {last, std::numeric_limits<qsizetype>::max()});
    d->theSelector.offerPrimarySelection();
}

void PDFView::copy()
{
    d->theSelector.copy();
}

QString PDFView::currentPageName() const
{
    const int count = d->theViewport.pages().pageCount();
    return count == 0 ? tr("No pages") : tr("Page %1 of %2").arg(currentPage() + 1).arg(count);
}

QString PDFView::currentPageText() const
{
    return d->shownText(currentPage());
}

QRect PDFView::characterRect(qsizetype index) const
{
    return d->thePlaces.rectOf({currentPage(), index}).toAlignedRect();
}

qsizetype PDFView::characterAt(const QPoint& point) const
{
    const auto place = d->thePlaces.under(point);
    return place && place->page == currentPage() ? place->index : -1;
}

qsizetype PDFView::tileBytes() const
{
    return d->theTiles.cache().bytes();
}

bool PDFView::isDrawing() const
{
    return d->theTiles.isBusy();
}

// --- Events --------------------------------------------------------------------------------------

void PDFView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    d->paint(painter, event->rect());
}

void PDFView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    const PagePlace place = d->theViewport.placeAt({event->oldSize().width() / 2.0, 0});
    if (d->theViewport.pages().pageCount() == 0)
        return;
    d->theZoom.fitAgain();
    d->theScroller.showPlace(place);
}

void PDFView::showEvent(QShowEvent* event)
{
    QAbstractScrollArea::showEvent(event);
    d->wantSoon();
}

/// A window that nobody sees holds no images.
void PDFView::hideEvent(QHideEvent* event)
{
    QAbstractScrollArea::hideEvent(event);
    d->theTiles.clear();
}

void PDFView::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        viewport()->update();
}

void PDFView::scrollContentsBy(int, int)
{
    d->theScroller.followBars();
}

void PDFView::wheelEvent(QWheelEvent* event)
{
    event->accept();
    d->theReveal.forget();
    PageWheel::turn(*event, d->theScroller, d->theZoom);
}

void PDFView::keyPressEvent(QKeyEvent* event)
{
    if (!pressPageKey(*event, *this, d->theScroller))
        QAbstractScrollArea::keyPressEvent(event);
}

void PDFView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::BackButton)
        goBack();
    if (event->button() == Qt::ForwardButton)
        goForward();
    d->theReveal.forget();
    d->theMouse.press(*event);
}

void PDFView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        d->theMouse.doubleClick(*event);
    else
        mousePressEvent(event);
}

void PDFView::mouseMoveEvent(QMouseEvent* event)
{
    d->theMouse.move(*event);
}

void PDFView::mouseReleaseEvent(QMouseEvent* event)
{
    d->theMouse.release(*event);
}

void PDFView::contextMenuEvent(QContextMenuEvent* event)
{
    auto* const menu = new QMenu(this);
    const QPoint point = event->pos();
    fillPageMenu(*menu, *this, d->theLinks.linkAt(point), d->theDetails.links(currentPage()));
    emit contextMenuOpening(menu, d->theViewport.pageAt(point));
    menu->popup(event->globalPos());
}

bool PDFView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::NativeGesture || event->type() == QEvent::Gesture) {
        if (PageWheel::pinch(event, d->theZoom, *viewport()))
            return true;
    }
    if (event->type() != QEvent::ToolTip)
        return QAbstractScrollArea::viewportEvent(event);
    d->theLinks.showTip(*static_cast<QHelpEvent*>(event));
    return true;
}

} // namespace tarnwick
