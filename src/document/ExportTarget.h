#pragma once

#include "document/ExportContent.h"

#include <QString>

/// How writing an export's file ended.
struct ExportOutcome
{
    bool isWritten = false;
    QString reason; ///< why not, as a phrase for the user; empty when progress said no
};

/// Two paths that lead to one file, be it through links; false when one of them leads to none.
bool isSameFile(const QString& path, const QString& other);

/// Writes an export's file. A flattened PDF appears whole or not at all; texts are written in
/// place, and one that cannot be finished is removed.
///
/// Any thread. Precondition: content.isTaken(), and path is not the opened file (isSameFile()).
ExportOutcome writeExport(ExportKind kind, const ExportContent& content, const QString& path,
    const ExportContent::Progress& progress);
