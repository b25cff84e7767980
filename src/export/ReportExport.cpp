#include "export/ReportExport.h"

#include "ExportPanel.h"
#include "files/ErrorText.h"
#include "files/WholeFile.h"
#include "frame/Notice.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace tarnwick {

namespace {

int writeWhole(const QString& path, const QByteArray& content)
{
    WholeFile file(QFile::encodeName(path).toStdString());
    int error = file.open();
    if (error == 0)
        error = file.append({content.constData(), static_cast<std::size_t>(content.size())});
    return error == 0 ? file.commit() : error;
}

} // namespace

void ReportExport::begin(SavedReport report)
{
    (new ReportExport(std::move(report)))->openPanel();
}

ReportExport::ReportExport(SavedReport report)
    : ExportJob(report.title)
    , theReport(std::move(report))
{
}

ReportExport::~ReportExport()
{
    stopWriting();
}

void ReportExport::openPanel()
{
    QStringList endings;
    for (const SavedReport::Form& form : std::as_const(theReport.forms))
        endings << form.ending;
    auto* const panel = new ExportPanel(title(), endings, tr("Reports"), theReport.window);
    panel->propose(theReport.folder, theReport.name + u'.' + endings.constFirst());
    connect(panel, &QDialog::accepted, this, [this, panel] { write(panel->chosenPath()); });
    connect(panel, &QDialog::rejected, this, &ReportExport::end);
    connect(panel, &QObject::destroyed, this, [this] {
        if (thePath.isEmpty()) // its window has closed
            end();
    });
    panel->show();
}

void ReportExport::write(const QString& path)
{
    if (path.isEmpty())
        return end();
    thePath = path;
    showProgress(QFileInfo(path).fileName());
    startWriting([this](const std::stop_token&, const Work::Report&) {
        for (const SavedReport::Form& form : std::as_const(theReport.forms)) {
            if (thePath.endsWith(u'.' + form.ending, Qt::CaseInsensitive))
                theError = writeWhole(thePath, form.write());
        }
    });
}

void ReportExport::finishWriting()
{
    const QString folder = QDir::toNativeSeparators(QFileInfo(thePath).absolutePath());
    if (theError == 0)
        tellUser({Notice::Kind::isDone,
                     tr("%1 has been written to “%2”.").arg(shownName(thePath), folder)},
            theReport.window);
    else
        tellUser({Notice::Kind::isFailure,
                     tr("%1 has not been written: %2")
                         .arg(shownName(thePath),
                             asSentence(QString::fromStdString(errorText(theError))))},
            theReport.window);
    end();
}

} // namespace tarnwick
