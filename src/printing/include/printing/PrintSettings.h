#pragma once

#include <QPageLayout>
#include <QSizeF>

#include <memory>

class QPagedPaintDevice;
class QPrinter;

namespace tarnwick {

/// The settings that everything is printed with: margins of one inch, the contents scaled to fit
/// the page's width and split into as many pages as their height needs, nothing centred, and the
/// job sent to the printer like any other. The user chooses printer, paper, pages and copies.
namespace PrintSettings {

/// On every side, in points of 1/72 inch.
inline constexpr double marginInPoints = 72;

inline constexpr bool fitsWidth = true;
inline constexpr bool splitsByHeight = true;
inline constexpr bool isCentred = false;

/// The user's default printer and paper with these settings. Without any printer it writes PDF.
std::unique_ptr<QPrinter> makePrinter();

/// Gives a device the margins, whatever its paper; a dialog may have changed them.
void applyTo(QPagedPaintDevice& device);

/// The part of the page inside the margins, in points: paper less 144 in both directions, never
/// smaller than 72 by 72.
QSizeF printableSizeInPoints(const QPageLayout& layout);

} // namespace PrintSettings

} // namespace tarnwick
