#include "TileLoader.h"

#include "pdf/PDFDocument.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t requestsAtATime = 3;
constexpr int patience = 1000; ///< milliseconds that an unwanted request may still take
constexpr int mostAttempts = 3; ///< at a page that keeps others waiting

} // namespace

TileLoader::TileLoader(qsizetype limit, int reach, QObject* parent)
    : QObject(parent)
    , theCache(limit)
    , theReach(reach)
{
    theStaleTimer.setSingleShot(true);
    connect(&theStaleTimer, &QTimer::timeout, this, [this] {
        cancelStale();
        cancelSlow();
        startMore();
    });
}

TileLoader::~TileLoader() = default;

void TileLoader::setDocument(PDFDocument* document)
{
    clear();
    theFailures.clear();
    theGivenUp.clear();
    theDocument = document;
}

QSize TileLoader::pixelSize(const QSizeF& page, int rotation, double scale)
{
    const QSizeF size = (rotation % 2 != 0 ? page.transposed() : page) * scale;
    return {std::max(1, static_cast<int>(std::ceil(size.width() - 0.01))),
        std::max(1, static_cast<int>(std::ceil(size.height() - 0.01)))};
}

void TileLoader::want(
    const QList<TileKey>& keys, const PageGeometry::PageRange& pages, int rotation, double scale)
{
    theWanted.clear();
    for (const TileKey& key : keys) {
        if (!theCache.find(key) && !theFailures.contains(key.page))
            theWanted.append(key);
    }
    theCache.setFocus(pages, rotation, scale, theReach);
    cancelStale();
    startMore();
}

void TileLoader::setPaused(bool paused)
{
    isPaused = paused;
    if (paused && isBusy())
        theStaleTimer.start(patience);
    startMore();
}

/// Gives up what keeps a prior loader waiting, or has taken longer than a loader's own patience. A
/// page is tried a few times: it may only have waited for another itself.
void TileLoader::cancelSlow()
{
    if (theRunning.empty() || (!isPaused && thePatience == 0))
        return;
    const Running running = theRunning.front();
    const int limit = isPaused ? patience : thePatience;
    if (running.age.elapsed() < limit)
        return theStaleTimer.start(static_cast<int>(limit - running.age.elapsed()) + 1);
    theRunning.erase(theRunning.begin());
    running.request->cancel();
    running.request->deleteLater();
    const int attempts = ++theGivenUp[running.key.page];
    if (attempts >= mostAttempts || !isPaused) {
        theFailures.insert(running.key.page, PDFFailure::isTimedOut);
        theWanted.removeOne(running.key);
        emit pageChanged(running.key.page);
    }
    tellBusy();
}

void TileLoader::tellBusy()
{
    if (std::exchange(theToldBusy, isBusy()) != isBusy())
        emit busyChanged(isBusy());
}

bool TileLoader::isRunning(const TileKey& key) const
{
    return std::any_of(theRunning.begin(), theRunning.end(),
        [&key](const Running& running) { return running.key == key; });
}

bool TileLoader::isWanted(const TileKey& key) const
{
    return theWanted.contains(key);
}

void TileLoader::cancelStale()
{
    bool someAreLeft = false;
    for (std::size_t index = 0; index < theRunning.size();) {
        const Running running = theRunning[index];
        const bool mayEnd = index == 0 && running.age.elapsed() < patience;
        if (isWanted(running.key) || mayEnd) {
            someAreLeft = someAreLeft || !isWanted(running.key);
            ++index;
            continue;
        }
        theRunning.erase(theRunning.begin() + static_cast<std::ptrdiff_t>(index));
        running.request->cancel();
        running.request->deleteLater();
    }
    if (someAreLeft && !theStaleTimer.isActive())
        theStaleTimer.start(patience);
    tellBusy();
}

void TileLoader::startMore()
{
    if (!theDocument || isPaused)
        return tellBusy();
    // With patience of its own, one at a time: so a request's age is the time that it takes.
    const std::size_t most = thePatience > 0 ? 1 : requestsAtATime;
    // The engine serves the latest first: what is asked for in one go is asked for from behind.
    QList<TileKey> next;
    for (const TileKey& key : std::as_const(theWanted)) {
        if (theRunning.size() + static_cast<std::size_t>(next.size()) >= most)
            break;
        if (!isRunning(key) && !theFailures.contains(key.page))
            next.append(key);
    }
    std::reverse(next.begin(), next.end());
    for (const TileKey& key : std::as_const(next))
        start(key);
    if (thePatience > 0 && isBusy() && !theStaleTimer.isActive())
        theStaleTimer.start(thePatience);
    tellBusy();
}

void TileLoader::start(const TileKey& key)
{
    const QSize whole = pixelSize(theDocument->pageSize(key.page), key.rotation, key.scale);
    const QRect area = TileGrid(whole).area(key.column, key.row);
    PDFTileRequest* const request
        = theDocument->requestTile(key.page, key.scale, key.rotation, area, this);
    theRunning.push_back({key, request, {}});
    theRunning.back().age.start();
    connect(request, &PDFRequest::finished, this, [this, key] { take(key); });
}

void TileLoader::take(const TileKey& key)
{
    const auto place = std::find_if(theRunning.begin(), theRunning.end(),
        [&key](const Running& running) { return running.key == key; });
    if (place == theRunning.end())
        return;
    PDFTileRequest* const request = place->request;
    theRunning.erase(place);
    theWanted.removeOne(key);
    if (request->succeeded()) {
        theCache.insert(key, request->image());
    } else {
        theFailures.insert(key.page, request->failure());
        // Its other tiles would take the engine just as long to fail.
        cancelPage(key.page);
    }
    request->deleteLater();
    cancelStale();
    startMore();
    emit pageChanged(key.page);
}

PDFFailure TileLoader::failure(int page) const
{
    return theFailures.value(page, PDFFailure::isNone);
}

PDFLosses TileLoader::losses() const
{
    QList<int> pages = theFailures.keys();
    std::sort(pages.begin(), pages.end());
    PDFLosses losses;
    for (const int page : std::as_const(pages))
        losses.add(page, lossOf(failure(page)));
    return losses;
}

void TileLoader::dropPage(int page)
{
    theCache.dropPage(page);
    cancelPage(page);
    tellBusy();
}

void TileLoader::cancelPage(int page)
{
    theWanted.removeIf([page](const TileKey& key) { return key.page == page; });
    std::erase_if(theRunning, [page](const Running& running) {
        if (running.key.page != page)
            return false;
        running.request->cancel();
        running.request->deleteLater();
        return true;
    });
}

void TileLoader::clear()
{
    theCache.clear();
    theWanted.clear();
    for (const Running& running : std::exchange(theRunning, {})) {
        running.request->cancel();
        running.request->deleteLater();
    }
    tellBusy();
}

} // namespace tarnwick
