#pragma once

#include "PdfFinish.h"

#include <QSizeF>

class QPdfWriter;
class QTextBlock;
class QTextDocument;

namespace tarnwick {

/// Where the manual's text stands on its pages.
///
/// A document's layout counts in units of the device that it is painted on, from the top of the
/// first page's text, one page's text below the other; margins and pictures it takes in pixels.
class ManualGeometry
{
public:
    static constexpr double margin = 54.0; ///< points; A4 then has lines of about 85 characters
    static constexpr double footHeight = 24.0; ///< points, below the text

    /// Both are borrowed. Gives the document its device and the size of a page's text.
    ManualGeometry(QPdfWriter& device, QTextDocument& document);

    double pageHeight() const; ///< in points
    double unitsPerPoint() const;
    double points(double units) const { return units / unitsPerPoint(); }
    double textWidthInPixels() const;
    /// A length in pixels, as left margins take it: a layout scales the other margins to its
    /// device.
    double leftMargin(double pixels) const;

    /// The page on which a height in the layout lies, from 0.
    int pageAt(double top) const;
    PdfPlace placeOf(const QTextBlock& block) const;

private:
    QPdfWriter& theDevice;
    QTextDocument& theDocument;
};

} // namespace tarnwick
