#pragma once

#include "EngineDocument.h"
#include "PageGeometry.h"
#include "protocol/PageMessages.h"

namespace tarnwick {

/// Draws pages in parts.
///
/// A page of which a part is asked for is interpreted once, into a display list that is kept until
/// another page is drawn: its other parts follow as a rule.
class PageTiles
{
public:
    /// @param document borrowed.
    explicit PageTiles(const EngineDocument& document)
        : theDocument(document)
    {
    }
    PageTiles(const PageTiles&) = delete;
    PageTiles& operator=(const PageTiles&) = delete;
    ~PageTiles();

    /// Draws the part with annotations and form fields on white.
    /// @returns FZ_ERROR_NONE or what MuPDF threw; a page whose content breaks off is drawn as far
    ///   as it goes.
    int draw(const TileRequest& order, TileResult& result);

private:
    void keepPage(pdf_page* page, int index);
    void forgetPage();

    const EngineDocument& theDocument;
    int theKeptPage = -1;
    PageGeometry
        theGeometry; ///< of the page that was loaded last: of the kept one, if there is one
    fz_display_list* theList = nullptr; ///< of the kept page; null when it would not fit in memory
};

} // namespace tarnwick
