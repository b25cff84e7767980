#include "document/VersionExport.h"

#include "document/ExportPanel.h"
#include "document/VersionCuts.h"
#include "document/VersionNaming.h"

#include <QFile>
#include <QFileInfo>

namespace {

/// What the names of the versions are made from, in the file system's encoding.
std::string nameSource(const ExportSource& source)
{
    if (!source.filePath.isEmpty())
        return QFile::encodeName(source.filePath).toStdString();
    QString name = source.displayName.isEmpty() ? QStringLiteral("Untitled") : source.displayName;
    name.replace(u'/', u'-');
    return QFile::encodeName(name).toStdString();
}

} // namespace

void VersionExport::begin(const ExportSource& source)
{
    if (source.bytes.descriptor() >= 0)
        (new VersionExport(source))->openPanel();
}

VersionExport::VersionExport(const ExportSource& source)
    : ExportJob(tr("Export PDF Versions"))
    , theSource(source)
{
    const FileNameParts parts = fileNameParts(nameSource(source));
    theBase = parts.base;
    theExtension = versionExtension(parts);
    theFolderName = versionFolderName(parts);
}

VersionExport::~VersionExport()
{
    stopWriting();
    if (thePanel)
        thePanel->deleteLater();
}

void VersionExport::openPanel()
{
    thePanel = new ExportPanel(title(), tr("Save to folder"),
        tr("Enter the name of a new folder to contain versions"), theSource.window);
    thePanel->propose(QFileInfo(theSource.filePath).path(),
        QFile::decodeName(QByteArray::fromStdString(theFolderName)));
    connect(thePanel, &QDialog::accepted, this, &VersionExport::panelConfirmed);
    connect(thePanel, &QDialog::rejected, this, &VersionExport::end);
    // The window that the sheet belongs to may close, and the sheet with it, unanswered.
    connect(thePanel, &QObject::destroyed, this, [this] {
        if (!progress())
            end();
    });
    thePanel->open();
}

void VersionExport::panelConfirmed()
{
    const QString folder = thePanel->chosenPath();
    if (folder.isEmpty()) {
        end();
        return;
    }
    showProgress(QFileInfo(folder).fileName());
    write(QFile::encodeName(folder).toStdString());
}

void VersionExport::write(const std::string& folder)
{
    startWriting([this, folder](const BackgroundWork::Progress& progress) {
        VersionWriter writer(theSource.bytes.view(), theBase, theExtension);
        writer.setOpenedFile(fileIdentity(QFile::encodeName(theSource.filePath).toStdString()));
        theResult = writer.write(folder, versionCuts(theSource.bytes.view()), progress);
    });
}

void VersionExport::finishWriting()
{
    if (theResult.outcome == VersionResult::Outcome::isRefused) {
        const QString path = QFile::decodeName(QByteArray::fromStdString(theResult.path));
        alert(tr("“%1” is the opened document.").arg(QFileInfo(path).fileName()),
            tr("An export never replaces the file that it is made from. The versions before this "
               "one have been written. Choose another folder for all of them."),
            theSource.window);
    }
    end();
}
