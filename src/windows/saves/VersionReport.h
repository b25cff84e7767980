#pragma once

#include "VersionRow.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

namespace tarnwick {

class VersionReading;

/// All that is known of a file's versions, as a page for people and as JSON for programs: enough
/// for somebody else to check it. May be written in any thread.
class VersionReport
{
public:
    struct Names
    {
        QString file; ///< what the document is called, without a folder
        QString exported; ///< what the names of exported versions are made from, likewise
    };

    /// @param program name and version.
    VersionReport(const VersionReading& reading, const Names& names, const QString& program);

    /// One file that needs no other: a table, and for each version the numbers of its objects.
    QByteArray html() const;
    /// docs/JSON.md describes it.
    QByteArray json() const;

private:
    QString heading() const;
    QString table() const;
    QString hashes() const;
    QString lists() const;

    QString theFileName;
    QString theExportName;
    QString theProgram;
    QDateTime theTime; ///< when it was made, in UTC
    std::vector<VersionRow> theRows;
    std::optional<Sha256::Digest> theFileHash;
    std::size_t theFileSize;
    std::size_t theMarkerCount;
    std::optional<std::size_t> theOwnCount;
    QString theSummary;
    bool theIsStopped; ///< not all has been read
};

} // namespace tarnwick
