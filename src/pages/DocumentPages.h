#pragma once

#include "PageSource.h"

#include <QPointer>

namespace tarnwick {

/// The pages of a document, from its engine.
class DocumentPages : public PageSource
{
public:
    /// @param document borrowed; it may go before.
    explicit DocumentPages(PDFDocument* document)
        : theDocument(document)
    {
    }
    /// Null for no document.
    static std::unique_ptr<PageSource> of(PDFDocument* document);

    bool isThere() const override { return theDocument != nullptr; }
    QSizeF pageSize(int page) const override { return theDocument->pageSize(page); }
    Pending requestTile(const TileKey& key, const QRect& area, TakeTile take) override;
    Pending requestText(int page, TakeText take) override;
    Pending requestLinks(int page, TakeLinks take) override;

private:
    QPointer<PDFDocument> theDocument;
};

} // namespace tarnwick
