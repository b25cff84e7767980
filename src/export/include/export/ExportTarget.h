#pragma once

#include "export/ExportContent.h"
#include "files/OutputFile.h"

#include <QString>

namespace tarnwick {

/// How writing an export's file ended.
struct ExportOutcome
{
    bool isWritten = false;
    QString reason; ///< why not, as a phrase for the user; empty when it was asked to stop
};

/// Writes an export into a file, from its opening to its commit.
///
/// Any thread. Precondition: content.isTaken().
ExportOutcome writeExport(const ExportContent& content, OutputFile& file,
    const std::stop_token& stop = {}, const ExportContent::Progress& progress = {});

} // namespace tarnwick
