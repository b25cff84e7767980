#pragma once

#include "files/FileBytes.h"
#include "pdf/PDFRequest.h"
#include "versions/SavedVersion.h"
#include "versions/VersionChain.h"
#include "work/Work.h"

#include <QObject>

#include <memory>
#include <vector>

namespace tarnwick {

class PDFEngineClient;
struct PDFCrossReferences;

/// The saved versions of a file and what each save has changed, found out beside the event loop:
/// markers in a thread, cross-references by an engine of its own, which opens no document, so that
/// files are looked through which need a password or cannot be opened at all.
///
/// Main thread only. Destroying it gives up what is left to do.
class PDFSavedVersions : public QObject
{
    Q_OBJECT

public:
    /// Starts at once; located() and finished() follow from the event loop.
    explicit PDFSavedVersions(const FileBytes& bytes, QObject* parent = nullptr);
    ~PDFSavedVersions() override;

    /// In the order of the file, at most VersionChain::mostVersions: empty before located(), with
    /// places and startxrefs alone before finished().
    const std::vector<SavedVersion>& versions() const { return theVersions; }
    /// Markers of the whole file; valid once located.
    std::size_t markerCount() const { return theMarkerCount; }
    /// Versions of their own; valid once finished.
    std::size_t ownCount() const { return theOwnCount; }

    bool isFinished() const { return theIsFinished; }
    /// Why the engine could not read the cross-references, and nothing but places is known. Valid
    /// once finished.
    PDFFailure failure() const { return theFailure; }
    /// All that was found out. Valid once finished, while this object lives.
    const VersionChain& chain() const { return *theChain; }

signals:
    void located(); ///< markers and startxrefs are known
    void progressed(int done, int total); ///< cross-references
    void finished();

private:
    void readNext();
    void take(PDFCrossReferences answer);
    void resolve();
    void finish(PDFFailure failure);

    FileBytes theBytes;
    PDFEngineClient* theEngine;
    std::shared_ptr<VersionChain> theChain; ///< in the hands of theWork while that runs
    std::vector<SavedVersion> theVersions;
    std::size_t theMarkerCount = 0;
    std::size_t theOwnCount = 0;
    CrossReferenceSection thePart; ///< of a section that comes in several answers
    int theSectionsRead = 0;
    bool theIsFinished = false;
    PDFFailure theFailure = PDFFailure::isNone;
    Work theWork;
};

} // namespace tarnwick
