#include "pages/PDFView.h"

#include "PDFViewAccessible.h"
#include "PDFViewPrivate.h"
#include "pages/PagePainter.h"
#include "work/ReleaseElsewhere.h"

#include <QAccessible>
#include <QScrollBar>

#include <utility>

namespace tarnwick {

namespace {

constexpr int farPages = 12; ///< pages beyond those that show whose images are kept

} // namespace

PDFView::Private::Private(PDFView* view)
    : q(view)
    , theTiles(PDFView::tileLimit, farPages, this)
    , theDetails(this)
    , theGlide(this)
{
    theWantTimer.setSingleShot(true);
    connect(&theWantTimer, &QTimer::timeout, this, [this] { wantTiles(); });
    theDetailsTimer.setSingleShot(true);
    connect(&theDetailsTimer, &QTimer::timeout, this, [this] { theDetails.want(shownPages()); });
    connect(&theTiles, &TileLoader::pageChanged, this, [this] {
        q->viewport()->update();
        wantSoon();
    });
    connect(&theTiles, &TileLoader::busyChanged, q, &PDFView::drawingChanged);
    connect(&theDetails, &PageDetails::pageChanged, this, [this] {
        q->viewport()->update();
        if (theRevealWaits)
            reveal();
    });
    theSelectionTimer.setSingleShot(true);
    connect(&theSelectionTimer, &QTimer::timeout, this, [this] { selectBetweenEnds(); });
    connect(&theAutoScroll, &QTimer::timeout, this, [this] { dragSelection(theLastMouse); });
    connect(&theGlide, &SmoothScroll::moved, this,
        [this](const QPointF& step) { moveTo(theOrigin + step); });
    thePulse.setStartValue(1.0);
    thePulse.setEndValue(0.0);
    thePulse.setDuration(450);
    connect(
        &thePulse, &QVariantAnimation::valueChanged, q->viewport(), qOverload<>(&QWidget::update));
}

PDFView::PDFView(QWidget* parent)
    : QAbstractScrollArea(parent)
{
    d = std::make_unique<Private>(this);
    PDFViewAccessible::install();
    setAccessibleName(tr("Pages"));
    // Its zero is the pages' left edge, whichever way the desktop is laid out.
    horizontalScrollBar()->setLayoutDirection(Qt::LeftToRight);
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->grabGesture(Qt::PinchGesture);
}

PDFView::~PDFView()
{
    releaseElsewhere(std::exchange(d->theHighlights, {}));
}

void PDFView::setDocument(PDFDocument* document, PDFDocumentText* text)
{
    if (document == d->theDocument && text == d->theText)
        return;
    if (d->theDocument)
        d->theDocument->disconnect(d.get());
    if (d->theText)
        d->theText->disconnect(d.get());
    d->theDocument = document;
    d->theText = text;
    d->theTiles.setDocument(document);
    d->theDetails.setDocument(document);
    d->theHistory.clear();
    d->theHighlights.clear();
    d->theEndsAreSet = false;
    d->theCopyWaits = false;
    d->takeSelection({});
    d->theGeometry.setPages(document ? document->pageCount() : 0,
        [document](int page) { return document->pageSize(page); });
    d->watchDocument();
    d->watchText();
    d->theCurrentPage = -1;
    d->applyFit();
    d->scrollTo({d->theOrigin.x(), 0});
    emit documentChanged();
    emit historyChanged();
}

void PDFView::Private::watchDocument()
{
    if (!theDocument)
        return;
    connect(theDocument, &PDFDocument::pagesMeasured, this,
        [this](int first, int count) { takeMeasures(first, count); });
    connect(theDocument, &QObject::destroyed, this, [this] {
        theTiles.setDocument(nullptr);
        theDetails.setDocument(nullptr);
        theGeometry.setPages({});
        theEndsAreSet = false;
        takeSelection({});
        scrollTo({});
        emit q->documentChanged();
    });
}

void PDFView::Private::watchText()
{
    if (!theText)
        return;
    connect(theText, &PDFDocumentText::pageArrived, this, [this](int page) {
        const bool isSelected = theEndsAreSet && page >= std::min(theAnchor, theFocus).page
            && page <= std::max(theAnchor, theFocus).page;
        if (isSelected && !theSelectionTimer.isActive())
            theSelectionTimer.start(100);
    });
    connect(theText, &PDFDocumentText::completed, this, [this] {
        selectBetweenEnds();
        if (theCopyWaits)
            finishCopy();
    });
    // What has come until then is what there is to copy.
    connect(theText, &PDFDocumentText::stopped, this, [this] {
        if (theCopyWaits)
            finishCopy();
    });
}

/// Keeps the reader's place while the pages above it change their sizes.
void PDFView::Private::takeMeasures(int first, int count)
{
    const PagePlace place = presentPlace();
    QList<QSizeF> sizes;
    bool haveChanged = false;
    for (int page = first; page < first + count; ++page) {
        const QSizeF size = theDocument->pageSize(page);
        if (size != theGeometry.pageSize(page)) {
            haveChanged = true;
            theTiles.dropPage(page);
        }
        sizes.append(size);
    }
    if (haveChanged) {
        theGeometry.setPageSizes(first, sizes);
        applyFit();
        showPlace(place);
    }
    emit q->documentChanged();
}

PDFDocument* PDFView::document() const
{
    return d->theDocument;
}

void PDFView::setAutoScales(bool on)
{
    if (on)
        d->setFit(Private::Fit::isWidth);
    else if (autoScales())
        d->theFit = Private::Fit::isFree;
}

bool PDFView::autoScales() const
{
    return d->theFit == Private::Fit::isWidth;
}

double PDFView::scaleFactor() const
{
    return d->theGeometry.scale() / d->actualScale();
}

void PDFView::setScaleFactor(double factor)
{
    d->theFit = Private::Fit::isFree;
    d->setScale(factor, viewport()->rect().center());
}

int PDFView::rotation() const
{
    return d->theGeometry.rotation();
}

int PDFView::currentPage() const
{
    return d->theCurrentPage;
}

void PDFView::goToPage(int page)
{
    goToPoint(page, {});
}

bool PDFView::canGoBack() const
{
    return d->theHistory.canGoBack();
}

bool PDFView::canGoForward() const
{
    return d->theHistory.canGoForward();
}

void PDFView::goToFirstPage()
{
    goToPage(0);
}

void PDFView::goToLastPage()
{
    goToPage(d->theGeometry.pageCount() - 1);
}

void PDFView::goToNextPage()
{
    if (d->theCurrentPage + 1 < d->theGeometry.pageCount())
        d->showPage(d->theCurrentPage + 1);
}

void PDFView::goToPreviousPage()
{
    if (d->theCurrentPage > 0)
        d->showPage(d->theCurrentPage - 1);
}

void PDFView::goBack()
{
    if (const auto place = d->theHistory.goBack(d->presentPlace()))
        d->showPlace(*place);
    emit historyChanged();
}

void PDFView::goForward()
{
    if (const auto place = d->theHistory.goForward(d->presentPlace()))
        d->showPlace(*place);
    emit historyChanged();
}

void PDFView::zoomIn()
{
    d->zoomBy(1.2, viewport()->rect().center());
}

void PDFView::zoomOut()
{
    d->zoomBy(1 / 1.2, viewport()->rect().center());
}

void PDFView::fitWidth()
{
    d->setFit(Private::Fit::isWidth);
}

void PDFView::fitPage()
{
    d->setFit(Private::Fit::isPage);
}

void PDFView::actualSize()
{
    setScaleFactor(1);
}

void PDFView::rotateClockwise()
{
    d->rotateBy(1);
}

void PDFView::rotateCounterclockwise()
{
    d->rotateBy(-1);
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
    const int last = d->theGeometry.pageCount() - 1;
    if (last < 0)
        return false;
    if (command == u"print")
        return d->thePrintDelegate != nullptr;
    if (command == u"copy")
        return !d->theSelection.isEmpty();
    if (command == u"selectAll")
        return d->theText != nullptr;
    if (command == u"goBack")
        return canGoBack();
    if (command == u"goForward")
        return canGoForward();
    if (command == u"goToNextPage")
        return d->theCurrentPage < last;
    if (command == u"goToPreviousPage")
        return d->theCurrentPage > 0;
    if (command == u"zoomIn")
        return scaleFactor() < 0.999 * Private::largestFactor;
    if (command == u"zoomOut")
        return scaleFactor() > 1.001 * Private::smallestFactor;
    return true;
}

QString PDFView::currentPageName() const
{
    const int count = d->theGeometry.pageCount();
    return count == 0 ? tr("No pages") : tr("Page %1 of %2").arg(d->theCurrentPage + 1).arg(count);
}

QString PDFView::currentPageText() const
{
    const int page = d->theCurrentPage;
    if (page < 0)
        return {};
    if (const PDFFailure failure = d->theTiles.failure(page); failure != PDFFailure::isNone)
        return PagePainter::failureText(failure);
    if (const PDFPageText* const text = d->theDetails.text(page))
        return text->string;
    const qsizetype length = d->lengthOfPage(page);
    return d->theText && length > 0 ? d->theText->string(PDFSelection({page, 0, length}))
                                    : QString();
}

QRect PDFView::characterRect(qsizetype index) const
{
    const PDFPageText* const text = d->theDetails.text(d->theCurrentPage);
    if (!text || index < 0 || index >= text->quads.size() || text->quads.at(index).isEmpty())
        return {};
    return d->polygonInView(d->theCurrentPage, text->quads.at(index))
        .boundingRect()
        .toAlignedRect();
}

qsizetype PDFView::characterAt(const QPoint& point) const
{
    const PagePlace place = d->theGeometry.placeAt(d->content(point));
    const PDFPageText* const text = d->theDetails.text(place.page);
    return text && place.page == d->theCurrentPage
        ? PageTextGeometry::characterAt(*text, place.point)
        : -1;
}

qsizetype PDFView::tileBytes() const
{
    return d->theTiles.cache().bytes();
}

bool PDFView::isDrawing() const
{
    return d->theTiles.isBusy();
}

} // namespace tarnwick
