#include "TileLoader.h"

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

void TileLoader::setSource(std::unique_ptr<PageSource> source)
{
    clear();
    theFailures.clear();
    theGivenUp.clear();
    theSource = std::move(source);
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
    const int limit = isPaused ? patience : thePatience;
    const qint64 age = theRunning.front().age.elapsed();
    if (age < limit)
        return theStaleTimer.start(static_cast<int>(limit - age) + 1);
    const TileKey key = theRunning.front().key;
    theRunning.erase(theRunning.begin());
    const int attempts = ++theGivenUp[key.page];
    if (attempts >= mostAttempts || !isPaused) {
        theFailures.insert(key.page, PDFFailure::isTimedOut);
        theWanted.removeOne(key);
        emit pageChanged(key.page);
    }
    tellBusy();
}

void TileLoader::tellBusy()
{
    if (std::exchange(hasToldBusy, isBusy()) != isBusy())
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
        const Running& running = theRunning[index];
        const bool mayEnd = index == 0 && running.age.elapsed() < patience;
        if (isWanted(running.key) || mayEnd) {
            someAreLeft = someAreLeft || !isWanted(running.key);
            ++index;
            continue;
        }
        theRunning.erase(theRunning.begin() + static_cast<std::ptrdiff_t>(index));
    }
    if (someAreLeft && !theStaleTimer.isActive())
        theStaleTimer.start(patience);
    tellBusy();
}

void TileLoader::startMore()
{
    if (!theSource || !theSource->isThere() || isPaused)
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
    const QSize whole = pixelSize(theSource->pageSize(key.page), key.rotation, key.scale);
    const QRect area = TileGrid(whole).area(key.column, key.row);
    const auto takeTile
        = [this, key](const QImage& image, PDFFailure failure) { take(key, image, failure); };
    theRunning.push_back({key, theSource->requestTile(key, area, takeTile), {}});
    theRunning.back().age.start();
}

void TileLoader::take(const TileKey& key, const QImage& image, PDFFailure failure)
{
    const auto place = std::find_if(theRunning.begin(), theRunning.end(),
        [&key](const Running& running) { return running.key == key; });
    if (place == theRunning.end())
        return;
    theRunning.erase(place);
    theWanted.removeOne(key);
    if (failure == PDFFailure::isNone) {
        theCache.insert(key, image);
    } else {
        theFailures.insert(key.page, failure);
        // Its other tiles would take the engine just as long to fail.
        cancelPage(key.page);
    }
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
    std::erase_if(theRunning, [page](const Running& running) { return running.key.page == page; });
}

void TileLoader::clear()
{
    theCache.clear();
    theWanted.clear();
    theRunning.clear();
    tellBusy();
}

} // namespace tarnwick
