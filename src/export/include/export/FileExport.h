#pragma once

#include "export/ExportJob.h"

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <optional>

namespace tarnwick {

class WholeFile;

/// An export of what is there already: asks where one file goes and writes it there, whole or not
/// at all, and never over an opened file.
class FileExport : public ExportJob
{
    Q_OBJECT

protected:
    /// @param title of the panel. @param window for the panel and the notice of the end.
    FileExport(const QString& title, QWidget* window);

    /// @param types endings without dots that the file may have, the first one where it has none.
    /// @param typesTitle of them. @param folder that the panel opens in. @param name proposed.
    void openPanel(const QStringList& types, const QString& typesTitle, const QString& folder,
        const QString& name);

    /// Writes the content, in a thread.
    /// @returns 0 or an error (errno); nothing when it was asked to stop.
    virtual std::optional<int> append(
        WholeFile& file, const std::stop_token& stop, const Work::Report& report)
        = 0;
    /// A sentence on what is not in the file; empty when it is whole.
    virtual QString missing() const { return {}; }

    /// Where the file goes; empty until it is chosen.
    const QString& path() const { return thePath; }

private:
    void write(const QString& path);
    void finishWriting() override;

    QPointer<QWidget> theWindow;
    QString thePath;
    std::optional<int> theError; ///< of the writing, once it is finished; nothing when it stopped
};

} // namespace tarnwick
