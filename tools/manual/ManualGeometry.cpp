#include "ManualGeometry.h"

#include <QAbstractTextDocumentLayout>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace tarnwick {

namespace {

constexpr double pixelsPerPoint = 96.0 / 72.0;

QSizeF pageSize(const QPdfWriter& device)
{
    return device.pageLayout().fullRect(QPageLayout::Point).size();
}

} // namespace

ManualGeometry::ManualGeometry(QPdfWriter& device, QTextDocument& document)
    : theDevice(device)
    , theDocument(document)
{
    const QSizeF page = pageSize(device);
    document.documentLayout()->setPaintDevice(&device);
    document.setDocumentMargin(0);
    document.setPageSize(QSizeF(page.width() - 2 * margin, page.height() - 2 * margin - footHeight)
        * unitsPerPoint());
}

double ManualGeometry::pageHeight() const
{
    return pageSize(theDevice).height();
}

double ManualGeometry::unitsPerPoint() const
{
    return theDevice.resolution() / 72.0;
}

double ManualGeometry::textWidthInPixels() const
{
    return points(theDocument.pageSize().width()) * pixelsPerPoint;
}

double ManualGeometry::leftMargin(double pixels) const
{
    return pixels / pixelsPerPoint * unitsPerPoint();
}

int ManualGeometry::pageAt(double top) const
{
    // What begins a page may lie a rounding error above it.
    return int((top + 1.0) / theDocument.pageSize().height());
}

PdfPlace ManualGeometry::placeOf(const QTextBlock& block) const
{
    const double height = theDocument.pageSize().height();
    double top = theDocument.documentLayout()->blockBoundingRect(block).top();
    // A block that begins a page is bounded from the end of the one before.
    if (block.layout()->lineCount() > 0)
        top += block.layout()->lineAt(0).y();
    const int page = pageAt(top);
    return {page, margin + points(top - page * height)};
}

} // namespace tarnwick
