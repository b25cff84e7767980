#pragma once

#include "pdf/PrintSheet.h"

#include <QList>
#include <QSizeF>

namespace tarnwick {

/// How a document's pages are spread over sheets of paper: each scaled to the sheets' width and
/// split into as many sheets as its height then needs, from its upper left corner on.
namespace PrintPagination {

/// Sheets that one page may take. A page of one point by a hundred, widened to the paper, is no
/// reason to print a mile: such pages are scaled less.
inline constexpr int mostSheetsOfPage = 20;

/// Points of paper for a point of the page.
double scale(const QSizeF& page, const QSizeF& printable);

/// The sheets of a page, from above. A rest of less than half a point makes no sheet.
QList<PrintSheet> sheets(int page, const QSizeF& size, const QSizeF& printable);

}

} // namespace tarnwick
