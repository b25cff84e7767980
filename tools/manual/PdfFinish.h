#pragma once

#include <QByteArray>
#include <QList>
#include <QRectF>
#include <QString>
#include <QUrl>

#include <optional>

namespace tarnwick {

/// A place in a document: a page, counted from 0, and points below its upper edge.
struct PdfPlace
{
    int page = 0;
    double top = 0.0;
};

/// An entry of a document's outline (ISO 32000-2, 12.3.3).
struct PdfBookmark
{
    QString title;
    int level = 1; ///< 1 is outermost; an entry belongs to the last one of a lower level before it
    PdfPlace place;
};

/// An area of a page that leads elsewhere (ISO 32000-2, 12.5.6.5).
struct PdfLink
{
    int page = 0; ///< counted from 0
    QRectF area; ///< points, from the page's upper left corner
    std::optional<PdfPlace> place; ///< where it leads within the document; else to the address
    QUrl address;
};

/// What a painted document lacks.
struct PdfExtras
{
    QString title;
    QByteArray language; ///< a language tag, such as "en-GB"
    double pageHeight = 0.0; ///< points; the same for every page
    QList<PdfBookmark> bookmarks;
    QList<PdfLink> links;
};

/// Writes a document that QPdfWriter has painted anew, with an outline and links, a title and a
/// language, and without a date: the same pages always give the same bytes.
///
/// QPdfWriter knows no outlines and no links within a document. Its files are plain: a classic
/// cross-reference table, one dictionary entry a line, no object streams. The objects are taken
/// over as they are, but for pages, catalog and Info dictionary.
/// @returns nothing when the file is not of this kind, or a place lies on no page.
std::optional<QByteArray> finishPdf(const QByteArray& painted, const PdfExtras& extras);

} // namespace tarnwick
