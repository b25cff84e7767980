#include "export/VersionExport.h"

#include "ExportPanel.h"
#include "files/OpenedFiles.h"
#include "frame/Notice.h"
#include "versions/VersionCuts.h"
#include "versions/VersionNaming.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// What the names of the versions are made from, in the file system's encoding.
std::string nameSource(const ExportSource& source)
{
    if (!source.filePath.isEmpty())
        return QFile::encodeName(source.filePath).toStdString();
    QString name = source.displayName.isEmpty() ? u"Untitled"_s : source.displayName;
    name.replace(u'/', u'-');
    return QFile::encodeName(name).toStdString();
}

} // namespace

void VersionExport::begin(const ExportSource& source, const std::vector<std::size_t>& chosen)
{
    if (source.bytes.descriptor() >= 0)
        (new VersionExport(source, chosen))->openPanel();
}

VersionExport::VersionExport(const ExportSource& source, const std::vector<std::size_t>& chosen)
    : ExportJob(tr("Export PDF Versions"))
    , theSource(source)
    , theChosen(chosen)
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
    thePanel->setRefusal([this](const QString& folder) { return refusal(folder); });
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
    theFolder = thePanel->chosenPath();
    if (theFolder.isEmpty()) {
        end();
        return;
    }
    showProgress(QFileInfo(theFolder).fileName());
    write(QFile::encodeName(theFolder).toStdString());
}

void VersionExport::write(const std::string& folder)
{
    startWriting([this, folder](const std::stop_token& stop, const Work::Report& report) {
        const VersionWriter writer(theSource.bytes.view(), theBase, theExtension);
        const auto all = VersionWriter::all(versionCuts(theSource.bytes.view()));
        std::vector<VersionWriter::Version> wanted;
        std::copy_if(
            all.begin(), all.end(), std::back_inserter(wanted), [this](const auto& version) {
                return theChosen.empty()
                    || std::binary_search(theChosen.begin(), theChosen.end(), version.number);
            });
        theResult = writer.write(folder, wanted, stop, report);
    });
}

/// Why no versions may be put into a folder that exists; empty when they may.
QString VersionExport::refusal(const QString& folder) const
{
    const QDir existing(folder);
    if (const QString refused = refusalOfChosen(folder); !refused.isEmpty())
        return refused;
    const QString base = QFile::decodeName(QByteArray::fromStdString(theBase)) + u'-';
    const QStringList names = existing.exists()
        ? existing.entryList(QDir::Files | QDir::Hidden | QDir::System)
        : QStringList();
    for (const QString& name : names) {
        if (name.startsWith(base)
            && OpenedFiles::contains(QFile::encodeName(existing.filePath(name)).toStdString()))
            return tr("%1 in this folder is open, and an opened file is never written. Choose "
                      "another folder.")
                .arg(shownName(name));
    }
    return {};
}

/// Whoever picks some versions into a folder that has others wants none of those replaced.
QString VersionExport::refusalOfChosen(const QString& folder) const
{
    for (const std::size_t number : theChosen) {
        const std::string name = versionFileName(theBase, number, theExtension);
        const QString path
            = QDir(folder).filePath(QFile::decodeName(QByteArray::fromStdString(name)));
        if (QFileInfo::exists(path) || QFileInfo(path).isSymLink())
            return tr("%1 is in this folder already. Choose another folder.").arg(shownName(path));
    }
    return {};
}

void VersionExport::finishWriting()
{
    using Outcome = VersionResult::Outcome;
    const auto count = static_cast<int>(theResult.filesWritten);
    const QString counted = count == 1 ? tr("1 version has been written to “%1”.")
                                       : tr("%L1 versions have been written to “%2”.").arg(count);
    const QString written = counted.arg(theFolder);
    Notice notice{Notice::Kind::isDone, written};
    if (theResult.outcome == Outcome::isFailed) {
        const QString path = QFile::decodeName(QByteArray::fromStdString(theResult.path));
        notice.kind = Notice::Kind::isFailure;
        notice.text = tr("%1 has not been written: %2.")
                          .arg(shownName(path), QString::fromStdString(theResult.reason))
            + u' ' + written;
    } else if (theResult.outcome == Outcome::isCancelled) {
        notice.kind = Notice::Kind::isIncomplete;
        notice.text = tr("The export has been cancelled.") + u' ' + written;
    }
    tellUser(notice, theSource.window, theSource.frame);
    end();
}

} // namespace tarnwick
