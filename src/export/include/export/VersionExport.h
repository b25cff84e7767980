#pragma once

#include "export/ExportJob.h"
#include "export/ExportSource.h"
#include "versions/VersionWriter.h"

#include <QPointer>

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick {

class ExportPanel;

/// One run of the command that exports the saved versions of a document: a sheet that names a
/// folder, then one file in it for each version.
///
/// What cannot be written ends the export without an alert; the versions before it stay. A notice
/// says what was written and where, and why the rest was not.
class VersionExport : public ExportJob
{
    Q_OBJECT

public:
    /// Runs the command; nothing happens for a document without bytes. A document without a file
    /// gives its display name for the files' names.
    /// @param chosen numbers of the versions to export, from 1, ascending; all when there are none.
    ///   Of chosen ones none takes the place of a file.
    static void begin(const ExportSource& source, const std::vector<std::size_t>& chosen = {});

private:
    VersionExport(const ExportSource& source, const std::vector<std::size_t>& chosen);
    ~VersionExport() override;

    void openPanel();
    void panelConfirmed();
    QString refusal(const QString& folder) const;
    QString refusalOfChosen(const QString& folder) const;
    void write(const std::string& folder);
    void finishWriting() override;

    ExportSource theSource;
    std::vector<std::size_t> theChosen; ///< numbers; all versions when there are none
    std::string theBase;
    std::string theExtension; ///< with its dot, or empty
    std::string theFolderName; ///< to propose
    QPointer<ExportPanel> thePanel;
    QString theFolder; ///< empty until the panel is confirmed
    VersionResult theResult; ///< of the writing, once it is finished
};

} // namespace tarnwick
