#pragma once

#include "ByteMatches.h"
#include "analysis/SharedBytes.h"
#include "work/Work.h"

#include <QObject>

namespace tarnwick {

/// Searches bytes in a thread.
class ByteFinder : public QObject
{
    Q_OBJECT

public:
    explicit ByteFinder(QObject* parent = nullptr);
    ~ByteFinder() override;

    /// Searches for this from now on, ending an earlier search.
    void start(const SharedBytes& bytes, const BytePattern& pattern);
    /// Ends the search; what has been found stays.
    void stop() { theWork.abandon(); }

    bool isRunning() const { return theWork.isRunning(); }
    const ByteMatches& matches() const { return theMatches; }
    /// How much is searched, 0 to 100.
    int percent() const;

signals:
    /// More is searched, or everything.
    void advanced();

private:
    SharedBytes theBytes;
    ByteMatches theMatches;
    Work theWork;
};

} // namespace tarnwick
