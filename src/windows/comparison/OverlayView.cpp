#include "OverlayView.h"

#include "compared/DocumentComparison.h"
#include "pdf/FailureText.h"
#include "pdf/PDFDocument.h"

#include <QLabel>
#include <QResizeEvent>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

constexpr double mostPixels = 4000; ///< of a picture's side

QRgb pixelAt(const QImage& image, int x, int y)
{
    return x < image.width() && y < image.height()
        ? reinterpret_cast<const QRgb*>(image.constScanLine(y))[x]
        : qRgb(255, 255, 255);
}

/// Red is let through where the later page is white, green and blue where the earlier one is.
QImage overlaid(const QImage& before, const QImage& after)
{
    QImage image(before.size().expandedTo(after.size()), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int earlier = qGray(pixelAt(before, x, y));
            const int later = qGray(pixelAt(after, x, y));
            row[x] = qRgb(later, earlier, earlier);
        }
    }
    return image;
}

} // namespace

OverlayView::OverlayView(QWidget* parent)
    : QScrollArea(parent)
    , theLabel(new QLabel)
{
    setWidget(theLabel);
    setWidgetResizable(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Both pages on each other"));
    theLabel->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    theLabel->setTextFormat(Qt::PlainText);
    theLabel->setWordWrap(true);
}

void OverlayView::setComparison(const DocumentComparison* comparison)
{
    theRequests.reset();
    theComparison = comparison;
    thePair = -1;
}

void OverlayView::showPair(int pair)
{
    if (pair == thePair)
        return;
    thePair = pair;
    draw();
}

void OverlayView::showEvent(QShowEvent* event)
{
    QScrollArea::showEvent(event);
    draw();
}

void OverlayView::hideEvent(QHideEvent* event)
{
    QScrollArea::hideEvent(event);
    theRequests.reset();
    theImage = {};
}

void OverlayView::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        draw();
}

void OverlayView::say(const QString& text)
{
    theImage = {};
    theLabel->setText(text);
}

void OverlayView::draw()
{
    theRequests.reset();
    if (!isVisible() || !theComparison || thePair < 0)
        return;
    const PagePair& pair = theComparison->pages()[static_cast<std::size_t>(thePair)].pair;
    const int pages[] = {pair.before, pair.after};
    QSizeF size(1, 1);
    for (std::size_t side = 0; side < 2; ++side) {
        if (pages[side] >= 0)
            size = size.expandedTo(
                theComparison->document(ComparedSide(side))->pageSize(pages[side]));
    }
    const double ratio = devicePixelRatioF();
    const double scale = std::min(viewport()->width() * ratio / size.width(),
        mostPixels / std::max(size.width(), size.height()));
    theRequests = std::make_unique<QObject>();
    theSources = {};
    theProblem.clear();
    theOpenCount = 1;
    for (std::size_t side = 0; side < 2; ++side) {
        if (pages[side] >= 0)
            ask(side, pages[side], scale);
    }
    oneIsDone();
}

void OverlayView::ask(std::size_t side, int page, double scale)
{
    PDFDocument* const document = theComparison->document(ComparedSide(side));
    const QSizeF size = document->pageSize(page) * scale;
    const QRect area(0, 0, std::max(1, static_cast<int>(std::ceil(size.width()))),
        std::max(1, static_cast<int>(std::ceil(size.height()))));
    const auto* const request = document->requestTile(page, scale, 0, area, theRequests.get());
    ++theOpenCount;
    connect(request, &PDFRequest::finished, this, [this, side, request] {
        theSources[side] = request->image();
        if (!request->succeeded())
            theProblem = failureText(request->failure(), FailedTask::isDrawing);
        oneIsDone();
    });
}

void OverlayView::oneIsDone()
{
    if (--theOpenCount > 0)
        return;
    if (!theProblem.isEmpty())
        return say(theProblem);
    theImage = overlaid(theSources[0], theSources[1]);
    theSources = {};
    QPixmap picture = QPixmap::fromImage(theImage);
    picture.setDevicePixelRatio(devicePixelRatioF());
    theLabel->setPixmap(picture);
}

} // namespace tarnwick
