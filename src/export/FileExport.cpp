#include "export/FileExport.h"

#include "ExportPanel.h"
#include "files/ErrorText.h"
#include "files/WholeFile.h"
#include "frame/Notice.h"

#include <QFile>
#include <QFileInfo>

namespace tarnwick {

FileExport::FileExport(const QString& title, QWidget* window)
    : ExportJob(title)
    , theWindow(window)
{
}

void FileExport::openPanel(
    const QStringList& types, const QString& typesTitle, const QString& folder, const QString& name)
{
    auto* const panel = new ExportPanel(title(), types, typesTitle, theWindow);
    panel->propose(folder, name);
    connect(panel, &QDialog::accepted, this, [this, panel] { write(panel->chosenPath()); });
    connect(panel, &QDialog::rejected, this, &FileExport::end);
    connect(panel, &QObject::destroyed, this, [this] {
        if (thePath.isEmpty()) // its window has closed
            end();
    });
    panel->show();
}

void FileExport::write(const QString& path)
{
    if (path.isEmpty())
        return end();
    thePath = path;
    showProgress(QFileInfo(path).fileName());
    startWriting([this](const std::stop_token& stop, const Work::Report& report) {
        WholeFile file(QFile::encodeName(thePath).toStdString());
        theError = file.open();
        if (theError == 0)
            theError = append(file, stop, report);
        if (theError == 0)
            theError = file.commit();
    });
}

void FileExport::finishWriting()
{
    if (theError == 0)
        tellUser(writtenNotice(thePath, missing()), theWindow);
    else if (theError)
        tellUser(failedNotice(thePath, QString::fromStdString(errorText(*theError))), theWindow);
    end();
}

} // namespace tarnwick
