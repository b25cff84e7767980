#include "pages/PDFThumbnailView.h"

#include "DocumentPages.h"
#include "ThumbnailGrid.h"
#include "ThumbnailPainter.h"
#include "TileLoader.h"
#include "pages/PDFView.h"
#include "pages/PagePainter.h"
#include "pdf/FailureText.h"
#include "pdf/LossText.h"
#include "pdf/PDFDocument.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSet>
#include <QTimer>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr qsizetype thumbnailLimit = 32 * 1024 * 1024; ///< bytes
constexpr int farThumbnails = 200; ///< beyond those that show
constexpr int patience = 10'000; ///< milliseconds for a thumbnail
constexpr int gap = ThumbnailGrid::gap;
constexpr double smallestSide = 16;
constexpr double largestSide = 1024;
constexpr int thirdsOfTurn = 2; ///< thirds of a pixel for an eighth of a degree of a wheel

struct Key
{
    Qt::Key key;
    ThumbnailGrid::Step step;
};

constexpr std::array keys{
    Key{Qt::Key_Up, ThumbnailGrid::Step::isUp},
    Key{Qt::Key_Down, ThumbnailGrid::Step::isDown},
    Key{Qt::Key_Left, ThumbnailGrid::Step::isLeft},
    Key{Qt::Key_Right, ThumbnailGrid::Step::isRight},
    Key{Qt::Key_PageUp, ThumbnailGrid::Step::isViewUp},
    Key{Qt::Key_PageDown, ThumbnailGrid::Step::isViewDown},
    Key{Qt::Key_Home, ThumbnailGrid::Step::isFirst},
    Key{Qt::Key_End, ThumbnailGrid::Step::isLast},
};

} // namespace

class PDFThumbnailView::Private : public QObject
{
public:
    explicit Private(PDFThumbnailView* strip)
        : q(strip)
        , theTiles(thumbnailLimit, farThumbnails, this)
    {
        theTiles.setPatience(patience);
        theWantTimer.setSingleShot(true);
        connect(&theWantTimer, &QTimer::timeout, this, [this] { wantTiles(); });
        connect(&theTiles, &TileLoader::pageChanged, q->viewport(), qOverload<>(&QWidget::update));
        connect(&theTiles, &TileLoader::pageChanged, this, [this] { describeFailures(); });
    }

    PDFDocument* document() const { return theView ? theView->document() : nullptr; }
    int pageCount() const { return document() ? document()->pageCount() : 0; }
    int labelHeight() const { return q->fontMetrics().height() + 4; }
    ThumbnailGrid grid() const
    {
        return {theSize, labelHeight(), q->viewport()->size(), pageCount()};
    }
    int offset() const { return q->verticalScrollBar()->value(); }
    double scaleOf(int page) const
    {
        const QSizeF size = document()->pageSize(page);
        return std::min(theSize.width() / size.width(), theSize.height() / size.height())
            * q->viewport()->devicePixelRatioF();
    }
    PageGeometry::PageRange shownPages() const { return grid().shownPages(offset()); }

    void takeDocument();
    void layOut();
    void revealCurrent();
    void wantTiles();
    void paintCell(QPainter& painter, int page);
    QString title(int page) const;
    QString tip(int page) const;
    void describeFailures();

    PDFThumbnailView* q;
    QPointer<PDFView> theView;
    QPointer<PDFDocument> theDocument; ///< the one that the tiles are of
    TileLoader theTiles;
    QSizeF theSize{90, 120};
    QSet<int> theMarks;
    int theThirdsOfPixel = 0; ///< that the wheel has turned and the strip has not gone
    QTimer theWantTimer;
};

PDFThumbnailView::PDFThumbnailView(QWidget* parent)
    : QAbstractScrollArea(parent)
    , d(std::make_unique<Private>(this))
{
    setAccessibleName(tr("Page thumbnails"));
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setBackgroundRole(QPalette::Window);
}

PDFThumbnailView::~PDFThumbnailView() = default;

void PDFThumbnailView::setPDFView(PDFView* view)
{
    if (d->theView) {
        d->theView->disconnect(d.get());
        d->theView->disconnect(&d->theTiles);
    }
    d->theView = view;
    if (view) {
        connect(view, &PDFView::documentChanged, d.get(), [this] { d->takeDocument(); });
        connect(view, &PDFView::currentPageChanged, d.get(), [this] { d->revealCurrent(); });
        // Pages are read, thumbnails only looked at: those come when the page is there.
        connect(view, &PDFView::drawingChanged, &d->theTiles, &TileLoader::setPaused);
        connect(view, &QObject::destroyed, d.get(), [this] {
            d->theView.clear(); // it is half gone already
            d->takeDocument();
        });
    }
    d->theTiles.setPaused(view && view->isDrawing());
    d->takeDocument();
}

PDFView* PDFThumbnailView::pdfView() const
{
    return d->theView;
}

QSizeF PDFThumbnailView::thumbnailSize() const
{
    return d->theSize;
}

void PDFThumbnailView::setThumbnailSize(const QSizeF& size)
{
    d->theSize = {std::clamp(size.width(), smallestSide, largestSide),
        std::clamp(size.height(), smallestSide, largestSide)};
    d->layOut();
    d->revealCurrent();
}

void PDFThumbnailView::setMarkedPages(const QList<int>& pages)
{
    d->theMarks = QSet<int>(pages.begin(), pages.end());
    viewport()->update();
}

void PDFThumbnailView::Private::takeDocument()
{
    if (theDocument != document()) {
        theDocument = document();
        theTiles.setSource(DocumentPages::of(theDocument));
        describeFailures();
        q->verticalScrollBar()->setValue(0);
    }
    layOut();
    revealCurrent();
}

void PDFThumbnailView::Private::layOut()
{
    const ThumbnailGrid grid = this->grid();
    const int view = q->viewport()->height();
    QScrollBar* const bar = q->verticalScrollBar();
    bar->setRange(0, static_cast<int>(std::max<qint64>(0, grid.height() - view)));
    bar->setPageStep(std::max(1, view));
    bar->setSingleStep(std::max(1, grid.rowHeight() / 3));
    q->setMinimumWidth(
        grid.cell().width() + 2 * gap + bar->sizeHint().width() + 2 * q->frameWidth());
    theWantTimer.start(0);
    q->viewport()->update();
}

QRect PDFThumbnailView::pageRect(int page) const
{
    return d->grid().rect(page, d->offset());
}

int PDFThumbnailView::pageAt(const QPoint& point) const
{
    return d->grid().pageAt(point, d->offset());
}

void PDFThumbnailView::Private::revealCurrent()
{
    q->viewport()->update();
    const QRect rect = theView ? q->pageRect(theView->currentPage()) : QRect();
    if (rect.isNull())
        return;
    const int height = q->viewport()->height();
    if (rect.top() < gap)
        q->verticalScrollBar()->setValue(offset() + rect.top() - gap);
    else if (rect.bottom() + gap > height)
        q->verticalScrollBar()->setValue(offset() + rect.bottom() + gap - height);
}

void PDFThumbnailView::Private::wantTiles()
{
    if (!q->isVisible() || !theDocument)
        return;
    const PageGeometry::PageRange shown = shownPages();
    QList<TileKey> keys;
    for (int page = shown.first; page <= shown.last; ++page) {
        const double scale = scaleOf(page);
        const TileGrid grid(TileLoader::pixelSize(theDocument->pageSize(page), 0, scale));
        for (int row = 0; row < grid.rows(); ++row) {
            for (int column = 0; column < grid.columns(); ++column)
                keys.append({page, 0, scale, column, row});
        }
    }
    const double scale = keys.isEmpty() ? 1 : keys.first().scale;
    theTiles.want(keys, shown, 0, scale);
}

void PDFThumbnailView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().color(QPalette::Window));
    const PageGeometry::PageRange shown = d->shownPages();
    for (int page = shown.first; page <= shown.last; ++page)
        d->paintCell(painter, page);
    if (hasFocus()) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

void PDFThumbnailView::Private::paintCell(QPainter& painter, int page)
{
    const PagePainter::Page paper{page, theDocument->pageSize(page), 0, scaleOf(page),
        theTiles.failure(page), q->viewport()->devicePixelRatioF()};
    ThumbnailPainter::paint(painter, *q,
        {paper, q->pageRect(page), theSize, labelHeight(), title(page),
            page == theView->currentPage(), theMarks.contains(page)},
        theTiles.cache());
}

/// What stands below a page: its label, or its number when there is none to be seen.
QString PDFThumbnailView::Private::title(int page) const
{
    const QString label = theDocument->pageLabel(page).simplified();
    return label.isEmpty() ? QString::number(page + 1) : label;
}

void PDFThumbnailView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    d->layOut();
    d->revealCurrent();
}

void PDFThumbnailView::showEvent(QShowEvent* event)
{
    QAbstractScrollArea::showEvent(event);
    d->layOut();
    d->revealCurrent();
}

void PDFThumbnailView::hideEvent(QHideEvent* event)
{
    QAbstractScrollArea::hideEvent(event);
    d->theTiles.clear();
}

void PDFThumbnailView::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        d->layOut();
}

void PDFThumbnailView::scrollContentsBy(int, int)
{
    d->theWantTimer.start(0);
    viewport()->update();
}

void PDFThumbnailView::wheelEvent(QWheelEvent* event)
{
    event->accept();
    // Fine wheels turn by less than a pixel at a time: what is left of one is for the next.
    d->theThirdsOfPixel += event->pixelDelta().isNull() ? event->angleDelta().y() * thirdsOfTurn
                                                        : event->pixelDelta().y() * 3;
    const int pixels = d->theThirdsOfPixel / 3;
    d->theThirdsOfPixel %= 3;
    verticalScrollBar()->setValue(d->offset() - pixels);
}

void PDFThumbnailView::keyPressEvent(QKeyEvent* event)
{
    const auto step = std::find_if(
        keys.begin(), keys.end(), [event](const Key& key) { return key.key == event->key(); });
    if (!d->theView || step == keys.end())
        return QAbstractScrollArea::keyPressEvent(event);
    const int page = d->theView->currentPage();
    if (const int target = d->grid().pageAfter(page, step->step); target != page)
        d->theView->goToPage(target);
}

void PDFThumbnailView::mousePressEvent(QMouseEvent* event)
{
    const int page = pageAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && page >= 0)
        d->theView->goToPage(page);
}

void PDFThumbnailView::mouseMoveEvent(QMouseEvent* event)
{
    event->accept();
}

bool PDFThumbnailView::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QAbstractScrollArea::viewportEvent(event);
    const auto* const help = static_cast<QHelpEvent*>(event);
    const int page = pageAt(help->pos());
    QToolTip::showText(
        help->globalPos(), d->tip(page).toHtmlEscaped().replace(u'\n', u"<br>"_s), viewport());
    return true;
}

QString PDFThumbnailView::pageTip(int page) const
{
    return d->tip(page);
}

/// What is shown as a mark alone is said in words.
QString PDFThumbnailView::Private::tip(int page) const
{
    if (page < 0 || page >= pageCount())
        return {};
    const QString label = title(page);
    QString tip = tr("Page %1 of %2").arg(page + 1).arg(pageCount());
    if (label != QString::number(page + 1))
        tip = tr("Page %1 of %2, %3").arg(page + 1).arg(pageCount()).arg(label);
    const PDFFailure failure = theTiles.failure(page);
    return failure == PDFFailure::isNone
        ? tip
        : tip % u'\n' % failureText(failure, FailedTask::isDrawing);
}

void PDFThumbnailView::Private::describeFailures()
{
    const PDFLosses losses = theTiles.losses();
    const QString text = losses.isEmpty()
        ? QString()
        : tr("Could not be drawn: %1.").arg(pageNumbers(losses.ranges(), 8));
    if (text != q->accessibleDescription())
        q->setAccessibleDescription(text);
}

} // namespace tarnwick
