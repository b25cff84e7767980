#pragma once

#include "VersionRow.h"
#include "files/FileBytes.h"
#include "work/Work.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

namespace tarnwick {

class Document;
class PDFSavedVersions;
class VersionContents;

/// Finds out all that the window tells of the versions of a document's file, beside the event loop:
/// first where they end, then their hashes in one pass over the bytes, what each save has changed,
/// and what each version says of itself.
///
/// Destroying it gives up what is left to do.
class VersionReading : public QObject
{
    Q_OBJECT

public:
    /// Starts at once. @param document borrowed.
    explicit VersionReading(Document* document, QObject* parent);

    /// In the order of the file; empty before rowsKnown().
    const std::vector<VersionRow>& rows() const { return theRows; }
    /// Of the whole file; none before it is known.
    const std::optional<Sha256::Digest>& fileHash() const { return theFileHash; }
    std::size_t fileSize() const { return theBytes.size(); }
    /// Markers of the file, of which there may be more than rows.
    std::size_t markerCount() const { return theMarkerCount; }
    /// Versions of their own; nothing before that is known.
    std::optional<std::size_t> ownCount() const { return theOwnCount; }
    /// Why the cross-references could not be read, as a phrase; empty where they were.
    const QString& failure() const { return theFailure; }

    /// Gives up hashing and opening; what is known stays.
    void stop();
    bool isRunning() const;
    bool wasStopped() const { return theIsStopped; }
    /// What is being done now, as a text for the user; empty when nothing is.
    QString progress() const;

    /// Notes that a version could not be opened, for what the user has tried.
    void noteProblem(std::size_t number, const QString& problem);

signals:
    void rowsKnown();
    void rowChanged(int row);
    /// What each save has changed is known: all rows have changed.
    void chainKnown();
    void progressed();
    /// Nothing is left to do, or it was stopped.
    void finished();

private:
    void takePlaces();
    void takeChain();
    void hash();
    void takeHash(std::size_t index, const Sha256::Digest& digest);
    void openVersions();
    void tellProgress(const QString& progress);
    void finishStep();

    FileBytes theBytes;
    PDFSavedVersions* theVersions;
    VersionContents* theContents;
    std::vector<VersionRow> theRows;
    std::optional<Sha256::Digest> theFileHash;
    std::size_t theMarkerCount = 0;
    std::optional<std::size_t> theOwnCount;
    QString theFailure;
    QString theHashing; ///< how far that is
    bool arePlacesKnown = false;
    bool isChainKnown = false;
    bool theIsStopped = false;
    Work theWork;
};

} // namespace tarnwick
