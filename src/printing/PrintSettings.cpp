#include "printing/PrintSettings.h"

#include <QMarginsF>
#include <QPagedPaintDevice>
#include <QPrinter>

#include <algorithm>

namespace tarnwick {

std::unique_ptr<QPrinter> PrintSettings::makePrinter()
{
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    applyTo(*printer);
    return printer;
}

void PrintSettings::applyTo(QPagedPaintDevice& device)
{
    constexpr double margin = marginInPoints;
    device.setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Point);
}

QSizeF PrintSettings::printableSizeInPoints(const QPageLayout& layout)
{
    const QSizeF paper = layout.fullRect(QPageLayout::Point).size();
    const auto inside = [](double side) { return std::max(72.0, side - 2 * marginInPoints); };
    return {inside(paper.width()), inside(paper.height())};
}

} // namespace tarnwick
