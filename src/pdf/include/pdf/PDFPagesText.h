#pragma once

#include "pdf/PDFLosses.h"

#include <QList>
#include <QString>

namespace tarnwick {

/// The texts of a document's pages as far as they have been read, and what is missing from them: a
/// value, so that nobody passes the texts on without their losses.
struct PDFPagesText
{
    QList<QString> pages; ///< of the document's first pages; shares the texts
    PDFLosses losses; ///< of all its pages, those behind the first ones being isNotRead

    /// The texts in page order, nothing between them but a line end where a page's text does not
    /// end with one.
    QString string() const;
    /// Characters of string() before which something is missing, in order, each with the pages
    /// whose rest or whole text would stand there.
    struct Gap
    {
        qsizetype position = 0; ///< in UTF-16 units, at the beginning of a line
        PDFLosses losses;
    };
    QList<Gap> gaps() const;
};

} // namespace tarnwick
