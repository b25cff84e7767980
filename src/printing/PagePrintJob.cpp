#include "PagePrintJob.h"

#include "pdf/FailureText.h"
#include "pdf/PDFDocument.h"
#include "printing/PrintSettings.h"

#include <QPrinter>
#include <QTimer>

#include <algorithm>

namespace tarnwick {

namespace {

/// Pixels of a band: 4096 wide as the engine allows, 8 MB of image data.
constexpr int bandWidth = 4096;
constexpr int bandHeight = 512;

} // namespace

PagePrintJob::PagePrintJob(PDFDocument* document, std::unique_ptr<QPrinter> printer,
    const QList<int>& pages, QObject* parent)
    : QObject(parent)
    , theDocument(document)
    , thePrinter(std::move(printer))
    , thePages(pages)
{
    connect(document, &QObject::destroyed, this, [this] { end(false); });
}

PagePrintJob::~PagePrintJob()
{
    if (thePainter.isActive()) {
        thePrinter->abort();
        thePainter.end();
    }
}

void PagePrintJob::start()
{
    QTimer::singleShot(0, this, [this] {
        if (!thePainter.begin(thePrinter.get()))
            return end(false);
        thePainter.setRenderHint(QPainter::LosslessImageRendering);
        startPage();
    });
}

double PagePrintJob::pixelsPerPoint() const
{
    return thePrinter->resolution() / 72.0;
}

void PagePrintJob::startPage()
{
    emit progressed(static_cast<int>(theIndex), static_cast<int>(thePages.size()));
    if (theIndex >= thePages.size())
        return end(true);
    const int page = thePages.at(theIndex);
    theSheets = PrintPagination::sheets(page, theDocument->pageSize(page),
        PrintSettings::printableSizeInPoints(thePrinter->pageLayout()));
    theSheet = 0;
    startSheet();
}

void PagePrintJob::startSheet()
{
    if (theSheet >= theSheets.size()) {
        ++theIndex;
        return startPage();
    }
    if (std::exchange(hasPrintedSheet, true) && !thePrinter->newPage())
        return end(false);
    const QRectF& area = theSheets.at(theSheet).area;
    theSheetArea
        = QRectF(area.topLeft() * pixelsPerPoint(), area.size() * pixelsPerPoint()).toRect();
    theBand = QRect(theSheetArea.topLeft(), QSize(bandWidth, bandHeight));
    startBand();
}

void PagePrintJob::startBand()
{
    const int page = thePages.at(theIndex);
    const QSizeF printable = PrintSettings::printableSizeInPoints(thePrinter->pageLayout());
    const double scale
        = PrintPagination::scale(theDocument->pageSize(page), printable) * pixelsPerPoint();
    theBand = theBand.intersected(theSheetArea);
    theRequest = theDocument->requestTile(page, scale, 0, theBand, this);
    connect(theRequest, &PDFRequest::finished, this, &PagePrintJob::takeBand);
}

void PagePrintJob::takeBand()
{
    const bool isThere = theRequest->succeeded();
    if (isThere) {
        const QImage& image = theRequest->image();
        thePainter.drawImage(theBand.topLeft() - theSheetArea.topLeft(),
            image.allGray() ? image.convertToFormat(QImage::Format_Grayscale8) : image);
    } else {
        paintFailure();
    }
    theRequest->deleteLater();
    theRequest.clear();
    const QPoint next = theBand.right() < theSheetArea.right()
        ? QPoint(theBand.right() + 1, theBand.top())
        : QPoint(theSheetArea.left(), theBand.bottom() + 1);
    if (!isThere || next.y() > theSheetArea.bottom()) {
        // The other sheets of a page that cannot be drawn would say the same.
        theSheet = isThere ? theSheet + 1 : theSheets.size();
        return startSheet();
    }
    theBand = QRect(next, QSize(bandWidth, bandHeight));
    startBand();
}

PDFLosses PagePrintJob::losses() const
{
    PDFLosses losses;
    for (const auto& [page, loss] : theLostPages)
        losses.add(page, loss);
    return losses;
}

void PagePrintJob::paintFailure()
{
    theLostPages.insert({thePages.at(theIndex), lossOf(theRequest->failure())});
    QFont font;
    font.setPointSizeF(11);
    thePainter.setFont(font);
    const QRect sheet(QPoint(0, 0), theSheetArea.size());
    thePainter.fillRect(sheet, Qt::white);
    thePainter.setPen(Qt::black);
    thePainter.drawText(sheet, Qt::AlignCenter | Qt::TextWordWrap,
        failureText(theRequest->failure(), FailedTask::isDrawing));
}

void PagePrintJob::end(bool ok)
{
    if (thePainter.isActive()) {
        if (!ok)
            thePrinter->abort();
        ok = thePainter.end() && ok;
    }
    emit finished(ok);
}

} // namespace tarnwick
