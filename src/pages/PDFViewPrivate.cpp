#include "PDFViewPrivate.h"

#include "DocumentPages.h"
#include "WantedTiles.h"
#include "pages/PagePainter.h"
#include "pdf/FailureText.h"

#include <QAccessible>
#include <QPainter>

#include <utility>

namespace tarnwick {

namespace {

constexpr int farPages = 12; ///< pages beyond those that show whose images are kept
constexpr int scrollRest = 120; ///< milliseconds without scrolling until details are asked for
constexpr int zoomRest = 90; ///< milliseconds without zooming until images are asked for

QColor surround(const QPalette& palette)
{
    const QColor window = palette.color(QPalette::Window);
    return window.darker(window.lightness() > 127 ? 116 : 130);
}

} // namespace

PDFView::Private::Private(PDFView* view)
    : q(view)
    , theTiles(PDFView::tileLimit, farPages, this)
    , theDetails(this)
    , theViewport(*this)
    , theBars(view->verticalScrollBar(), view->horizontalScrollBar(), theViewport)
    , theScroller(theViewport, theBars, this)
    , theZoom(theViewport, theScroller, this)
    , theNavigator(theViewport, theScroller, this)
    , thePlaces(theViewport, [this](int page) { return theDetails.text(page); })
    , theSelector(*this, this)
    , theReveal(theViewport, theScroller, [this](int page) { return theDetails.text(page); })
    , theOverlay(theViewport, this)
    , theTextDrag(theViewport, thePlaces, theSelector, theScroller, this)
    , theLinks(
          theViewport, [this](int page) { return theDetails.links(page); }, view->viewport(), this)
    , theMouse(
          {theScroller, thePlaces, theSelector, theTextDrag, theLinks, *view->viewport()}, this)
{
    theTilesTimer.setSingleShot(true);
    connect(&theTilesTimer, &QTimer::timeout, this, &Private::wantTiles);
    theDetailsTimer.setSingleShot(true);
    connect(&theDetailsTimer, &QTimer::timeout, this, &Private::wantDetails);
    connectLoaders();
    connectScrolling();
    connectSelecting();
}

void PDFView::Private::connectLoaders()
{
    connect(&theTiles, &TileLoader::pageChanged, this, [this] {
        q->viewport()->update();
        wantSoon();
    });
    connect(&theTiles, &TileLoader::busyChanged, q, &PDFView::drawingChanged);
    connect(&theDetails, &PageDetails::pageChanged, this, [this] {
        q->viewport()->update();
        theReveal.textArrived();
    });
}

void PDFView::Private::connectScrolling()
{
    connect(&theScroller, &PageScroller::currentPageChanged, this, [this](int page) {
        if (QAccessible::isActive()) {
            QAccessibleEvent event(q, QAccessible::NameChanged);
            QAccessible::updateAccessibility(&event);
        }
        emit q->currentPageChanged(page);
    });
    connect(&theScroller, &PageScroller::moved, this, [this] {
        theDetailsTimer.start(scrollRest);
        wantSoon();
        q->viewport()->update();
        emit q->scrolled();
    });
    connect(&theZoom, &PageZoom::changed, this, [this](double factor) {
        // While zooming goes on, what is there is shown stretched: no engine is asked for each
        // step.
        wantSoon(zoomRest);
        emit q->scaleFactorChanged(factor);
    });
    connect(&theNavigator, &PageNavigator::historyChanged, q, &PDFView::historyChanged);
    connect(&theLinks, &LinkFollower::pageWanted, &theNavigator, &PageNavigator::goTo);
}

void PDFView::Private::connectSelecting()
{
    connect(&theSelector, &TextSelector::changed, this, [this] {
        q->viewport()->update();
        emit q->selectionChanged();
    });
    connect(&theOverlay, &TextOverlay::changed, q->viewport(), qOverload<>(&QWidget::update));
    connect(&theTextDrag, &TextDrag::ranOn, this, &Private::wantDetails);
}

// --- The document --------------------------------------------------------------------------------

void PDFView::Private::setDocument(PDFDocument* document, PDFDocumentText* text)
{
    if (theDocument)
        theDocument->disconnect(this);
    if (theText)
        theText->disconnect(this);
    theDocument = document;
    theText = text;
    forgetDocument();
    theViewport.pages().setPages(document ? document->pageCount() : 0,
        [document](int page) { return document->pageSize(page); });
    watchDocument();
    watchText();
    theScroller.forgetCurrentPage();
    theZoom.fitAgain();
    theScroller.scrollTo({theViewport.origin().x(), 0});
    emit q->documentChanged();
    emit q->historyChanged();
}

/// Everything that is known of a document goes with it, what the mouse is doing on it included.
void PDFView::Private::forgetDocument()
{
    theTiles.setSource(DocumentPages::of(theDocument));
    theDetails.setSource(DocumentPages::of(theDocument));
    theMouse.cancel();
    theReveal.forget();
    theNavigator.clear();
    theOverlay.setMatches({});
    theSelector.clear();
}

void PDFView::Private::watchDocument()
{
    if (!theDocument)
        return;
    connect(theDocument, &PDFDocument::pagesMeasured, this, &Private::takeMeasures);
    connect(theDocument, &QObject::destroyed, this, [this] {
        theDocument.clear(); // it is half gone already
        forgetDocument();
        theViewport.pages().setPages({});
        theScroller.scrollTo({});
        emit q->documentChanged();
        emit q->historyChanged();
    });
}

void PDFView::Private::watchText()
{
    if (!theText)
        return;
    connect(theText, &PDFDocumentText::pageArrived, &theSelector, &TextSelector::pageArrived);
    connect(theText, &PDFDocumentText::completed, &theSelector, &TextSelector::textCompleted);
    connect(theText, &PDFDocumentText::stopped, &theSelector, &TextSelector::textStopped);
}

/// Keeps the reader's place while the pages above it change their sizes.
void PDFView::Private::takeMeasures(int first, int count)
{
    const PagePlace place = theViewport.topPlace();
    PageGeometry& pages = theViewport.pages();
    QList<QSizeF> sizes;
    bool haveChanged = false;
    for (int page = first; page < first + count; ++page) {
        sizes.append(theDocument->pageSize(page));
        if (sizes.last() != pages.pageSize(page)) {
            haveChanged = true;
            theTiles.dropPage(page);
        }
    }
    if (haveChanged) {
        pages.setPageSizes(first, sizes);
        theZoom.fitAgain();
        theScroller.showPlace(place);
    }
    emit q->documentChanged();
}

// --- The frame and the text ----------------------------------------------------------------------

QSizeF PDFView::Private::size() const
{
    return q->viewport()->size();
}

double PDFView::Private::pixelRatio() const
{
    return q->viewport()->devicePixelRatioF();
}

double PDFView::Private::actualScale() const
{
    return q->logicalDpiX() / 72.0;
}

int PDFView::Private::arrivedCount() const
{
    return theText ? theText->arrivedCount() : 0;
}

qsizetype PDFView::Private::lengthOf(int page) const
{
    if (page < arrivedCount())
        return theText->pageLength(page);
    const PDFPageText* const text = theDetails.text(page);
    return text ? text->string.size() : 0;
}

void PDFView::Private::fetch()
{
    if (theText)
        theText->fetch();
}

QString PDFView::Private::string(const PDFSelection& selection) const
{
    return theText ? theText->string(selection) : QString();
}

QString PDFView::Private::shownText(int page) const
{
    if (page < 0)
        return {};
    if (const PDFFailure failure = theTiles.failure(page); failure != PDFFailure::isNone)
        return failureText(failure, FailedTask::isDrawing);
    if (const PDFPageText* const text = theDetails.text(page))
        return text->string;
    const qsizetype length = lengthOf(page);
    return length > 0 ? string(PDFSelection({page, 0, length})) : QString();
}

// --- What shows ----------------------------------------------------------------------------------

void PDFView::Private::wantSoon(int milliseconds)
{
    if (!theTilesTimer.isActive() || milliseconds > theTilesTimer.remainingTime())
        theTilesTimer.start(milliseconds);
}

void PDFView::Private::wantTiles()
{
    if (!q->isVisible() || !theDocument)
        return;
    theTiles.want(wantedTiles(theViewport), theViewport.shownPages(),
        theViewport.pages().rotation(), theViewport.deviceScale());
}

void PDFView::Private::wantDetails()
{
    theDetails.want(theViewport.shownPages());
}

void PDFView::Private::paint(QPainter& painter, const QRect& exposed)
{
    painter.fillRect(exposed, surround(q->palette()));
    painter.setFont(q->font());
    const double top = theViewport.origin().y();
    const PageGeometry::PageRange shown
        = theViewport.pages().pagesBetween(top + exposed.top(), top + exposed.bottom() + 1);
    for (int page = shown.first; page <= shown.last; ++page)
        paintPage(painter, page, exposed);
    if (q->hasFocus()) {
        painter.setPen(q->palette().color(QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(q->viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

void PDFView::Private::paintPage(QPainter& painter, int page, const QRect& exposed)
{
    const double ratio = pixelRatio();
    const PageGeometry& pages = theViewport.pages();
    const QRectF clip(QPointF(exposed.topLeft()) * ratio, QSizeF(exposed.size()) * ratio);
    painter.save();
    painter.scale(1 / ratio, 1 / ratio);
    PagePainter::paint(painter,
        {page, pages.pageSize(page), pages.rotation(), theViewport.deviceScale(),
            theTiles.failure(page), ratio},
        theViewport.deviceOrigin(page), clip.toAlignedRect(), theTiles.cache());
    painter.restore();
    if (const PDFPageText* const text = theDetails.text(page))
        theOverlay.paint(painter, page, *text, theSelector.selection(), exposed, q->palette());
    if (theMarkedAreas)
        paintMarkedAreas(painter, page);
}

/// Pages are white under every palette, and so is what is under a frame.
void PDFView::Private::paintMarkedAreas(QPainter& painter, int page) const
{
    constexpr double lineWidth = 2;
    painter.save();
    painter.setPen(QPen(QColor(200, 30, 30), lineWidth));
    painter.setBrush(QColor(255, 80, 60, 36));
    const QList<QRectF> areas = theMarkedAreas(page);
    for (const QRectF& area : areas)
        painter.drawRect(theViewport.inView(page, QPolygonF(area)).boundingRect());
    painter.restore();
}

} // namespace tarnwick
