#pragma once

#include "pdf/PDFDocument.h"

#include <functional>
#include <memory>

namespace tarnwick {

struct TileKey;

/// Where a view gets what it shows of a document's pages. Every answer comes by the event loop.
class PageSource
{
public:
    /// Something that has been asked for. Destroying it gives it up: its answer does not come any
    /// more. It may be destroyed while it answers.
    class Errand
    {
    public:
        virtual ~Errand() = default;
    };
    using Pending = std::unique_ptr<Errand>;

    using TakeTile = std::function<void(const QImage& image, PDFFailure failure)>;
    using TakeText = std::function<void(const PDFPageText& text)>;
    using TakeLinks = std::function<void(const QList<PDFLink>& links)>;

    virtual ~PageSource() = default;

    /// False once the document has gone; nothing may be asked then.
    virtual bool isThere() const = 0;
    /// In points, unrotated.
    virtual QSizeF pageSize(int page) const = 0;

    /// @param area the tile's pixels on the whole page as it is scaled and turned.
    virtual Pending requestTile(const TileKey& key, const QRect& area, TakeTile take) = 0;
    /// With quads; empty for a page that cannot be read.
    virtual Pending requestText(int page, TakeText take) = 0;
    virtual Pending requestLinks(int page, TakeLinks take) = 0;
};

} // namespace tarnwick
