#include "DocumentPages.h"

#include "TileCache.h"

#include <utility>

namespace tarnwick {

namespace {

/// Owns a request to the engine, and cancels it when nobody waits for it any more.
class EngineErrand : public PageSource::Errand
{
public:
    explicit EngineErrand(PDFRequest* request)
        : theRequest(request)
    {
    }
    ~EngineErrand() override
    {
        theRequest->cancel();
        theRequest->deleteLater();
    }
    EngineErrand(const EngineErrand&) = delete;
    EngineErrand& operator=(const EngineErrand&) = delete;

private:
    PDFRequest* theRequest;
};

} // namespace

std::unique_ptr<PageSource> DocumentPages::of(PDFDocument* document)
{
    return document ? std::make_unique<DocumentPages>(document) : nullptr;
}

PageSource::Pending DocumentPages::requestTile(const TileKey& key, const QRect& area, TakeTile take)
{
    PDFTileRequest* const request
        = theDocument->requestTile(key.page, key.scale, key.rotation, area, nullptr);
    QObject::connect(request, &PDFRequest::finished, request,
        [request, take = std::move(take)] { take(request->image(), request->failure()); });
    return std::make_unique<EngineErrand>(request);
}

PageSource::Pending DocumentPages::requestText(int page, TakeText take)
{
    PDFTextRequest* const request
        = theDocument->requestText(page, page, PDFTextDetail::isWithQuads, nullptr);
    const auto text = std::make_shared<PDFPageText>();
    QObject::connect(request, &PDFTextRequest::pageReady, request,
        [text](int, const PDFPageText& ready) { *text = ready; });
    QObject::connect(
        request, &PDFRequest::finished, request, [text, take = std::move(take)] { take(*text); });
    return std::make_unique<EngineErrand>(request);
}

PageSource::Pending DocumentPages::requestLinks(int page, TakeLinks take)
{
    PDFLinksRequest* const request = theDocument->requestLinks(page, nullptr);
    QObject::connect(request, &PDFRequest::finished, request,
        [request, take = std::move(take)] { take(request->links()); });
    return std::make_unique<EngineErrand>(request);
}

} // namespace tarnwick
