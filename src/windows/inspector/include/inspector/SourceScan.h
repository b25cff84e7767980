#pragma once

#include "analysis/SourceText.h"
#include "text/TextStorage.h"
#include "work/Work.h"

#include <QObject>

#include <memory>
#include <stop_token>

namespace tarnwick {

/// What a pane of the inspector shows of a file's source.
enum class SourceContent
{
    isRaw, ///< the decoded text as it is, not scanned
    isListing, ///< the coloured listing, then the object list
    isObjectList, ///< the object list alone
};

/// Prepares the text of one pane in a thread of its own, since a scan of a gigabyte takes a second
/// or more, and hands it to the main thread.
///
/// Destroying it stops the scan; nothing is reported then.
class SourceScan : public QObject
{
    Q_OBJECT

public:
    /// Starts at once; finished() follows from the event loop.
    SourceScan(const SharedBytes& bytes, SourceContent content, QObject* parent);
    ~SourceScan() override = default;

    /// The source, scanned unless its content is raw. Valid once finished; null when there was not
    /// enough memory.
    std::shared_ptr<const SourceText> source() const { return theResult.source; }
    /// What to show of it; null likewise.
    std::shared_ptr<const TextStorage> storage() const { return theResult.storage; }

signals:
    void finished();

private:
    struct Result
    {
        std::shared_ptr<const SourceText> source;
        std::shared_ptr<const TextStorage> storage;
    };
    static Result prepare(const SharedBytes& bytes, SourceContent content, std::stop_token stop);

    Result theResult;
    Work theWork;
};

} // namespace tarnwick
