#include "PrintPagination.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr double rest = 0.5; ///< points that rounding may leave over

} // namespace

double PrintPagination::scale(const QSizeF& page, const QSizeF& printable)
{
    return std::min(
        printable.width() / page.width(), mostSheetsOfPage * printable.height() / page.height());
}

QList<PrintSheet> PrintPagination::sheets(int page, const QSizeF& size, const QSizeF& printable)
{
    const double factor = scale(size, printable);
    const QSizeF scaled = size * factor;
    QList<PrintSheet> sheets;
    double top = 0;
    do {
        const double height = std::min(printable.height(), scaled.height() - top);
        sheets.append({page, QRectF(0, top, scaled.width(), height), factor});
        top += printable.height();
    } while (top < scaled.height() - rest);
    return sheets;
}

} // namespace tarnwick
