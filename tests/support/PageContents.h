#pragma once

#include "support/OpenedDocument.h"

#include <QImage>

namespace tarnwick {

/// What a document's pages say and show, asked of its engine and waited for.
namespace PageContents {

inline QList<PDFPageText> texts(PDFDocument* document, PDFTextDetail detail)
{
    QList<PDFPageText> texts;
    PDFTextRequest* const request
        = document->requestText(0, document->pageCount() - 1, detail, document);
    QObject::connect(request, &PDFTextRequest::pageReady, document,
        [&texts](int, const PDFPageText& text) { texts.append(text); });
    OpenedDocument::waitFor(request);
    return texts;
}

inline QStringList strings(PDFDocument* document)
{
    QStringList strings;
    for (const PDFPageText& text : texts(document, PDFTextDetail::isPlain))
        strings.append(text.string.trimmed());
    return strings;
}

/// A part of a page at a scale; null when it cannot be drawn.
inline QImage image(
    PDFDocument* document, int page, double scale, const QRect& area, int rotation = 0)
{
    const PDFTileRequest* const request
        = document->requestTile(page, scale, rotation, area, document);
    OpenedDocument::waitFor(request);
    return request->image();
}

} // namespace PageContents

} // namespace tarnwick
