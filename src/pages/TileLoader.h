#pragma once

#include "PageSource.h"
#include "TileCache.h"
#include "TileGrid.h"
#include "pdf/PDFLosses.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <vector>

namespace tarnwick {

/// Brings the tiles that a view wants from the engine into a cache, nearest first.
///
/// Few requests are under way at a time, so that what the user looks at now never waits behind what
/// was looked at before. A request that nobody wants any more is cancelled, except that the one
/// that the engine is at may end if it does so within a second: quick pages are then not drawn in
/// vain, and the engine, which only ends by being replaced, is kept.
class TileLoader : public QObject
{
    Q_OBJECT

public:
    /// @param limit bytes of the cache.
    /// @param reach pages that are further away than this from those that show are given back.
    TileLoader(qsizetype limit, int reach, QObject* parent);
    ~TileLoader() override;

    /// Forgets everything and works for another document, or none (null).
    void setSource(std::unique_ptr<PageSource> source);

    /// Pixels of a whole page at a scale, rotation applied, each side at least 1.
    static QSize pixelSize(const QSizeF& page, int rotation, double scale);

    /// Replaces what was wanted before. @param keys nearest first; those that are there are
    /// skipped.
    /// @param pages those that show.
    void want(const QList<TileKey>& keys, const PageGeometry::PageRange& pages, int rotation,
        double scale);

    /// Lets another loader of the same document come first: while paused, nothing new is asked for,
    /// and what has been under way for a second is given up, to be tried again later.
    void setPaused(bool paused);
    /// Whether something is under way.
    bool isBusy() const { return !theRunning.empty(); }
    /// Gives up pages that take longer than this while nothing else waits; for images that are no
    /// reason to keep the engine. Without it the engine's own limit holds.
    void setPatience(int milliseconds) { thePatience = milliseconds; }

    const TileCache& cache() const { return theCache; }
    /// Why a page could not be drawn; isNone for every other page.
    PDFFailure failure(int page) const;
    /// The pages that could not be drawn, with the reasons.
    PDFLosses losses() const;
    /// Forgets a page's images: its size has changed.
    void dropPage(int page);
    /// Gives every image back and cancels what is under way; the document stays.
    void clear();

signals:
    /// A tile of the page has come, or it has become known that it cannot be drawn.
    void pageChanged(int page);
    /// isBusy() has changed.
    void busyChanged(bool isBusy);

private:
    struct Running
    {
        TileKey key;
        PageSource::Pending errand;
        QElapsedTimer age;
    };

    bool isRunning(const TileKey& key) const;
    bool isWanted(const TileKey& key) const;
    void startMore();
    void start(const TileKey& key);
    void take(const TileKey& key, const QImage& image, PDFFailure failure);
    void cancelStale();
    void cancelSlow();
    void cancelPage(int page);
    void tellBusy();

    std::unique_ptr<PageSource> theSource;
    TileCache theCache;
    int theReach;
    QList<TileKey> theWanted;
    std::vector<Running> theRunning;
    QHash<int, PDFFailure> theFailures;
    QHash<int, int> theGivenUp; ///< how often a page has been given up for taking long
    int thePatience = 0; ///< milliseconds; 0 for none of its own
    bool isPaused = false;
    bool hasToldBusy = false;
    QTimer theStaleTimer;
};

} // namespace tarnwick
