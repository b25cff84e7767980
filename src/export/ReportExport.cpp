#include "export/ReportExport.h"

#include "files/WholeFile.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

void ReportExport::begin(SavedReport report)
{
    auto* const job = new ReportExport(std::move(report));
    const SavedReport& saved = job->theReport;
    QStringList endings;
    for (const SavedReport::Form& form : saved.forms)
        endings << form.ending;
    job->openPanel(endings, tr("Reports"), saved.folder, saved.name + u'.' + endings.constFirst());
}

ReportExport::ReportExport(SavedReport report)
    : FileExport(report.title, report.window)
    , theReport(std::move(report))
{
}

ReportExport::~ReportExport()
{
    stopWriting();
}

std::optional<int> ReportExport::append(
    WholeFile& file, const std::stop_token&, const Work::Report&)
{
    // The panel has seen to it that one of the endings is there.
    const auto form = std::find_if(
        theReport.forms.cbegin(), theReport.forms.cend(), [this](const SavedReport::Form& one) {
            return path().endsWith(u'.' + one.ending, Qt::CaseInsensitive);
        });
    const QByteArray content
        = (form == theReport.forms.cend() ? theReport.forms.first() : *form).write();
    return file.append({content.constData(), static_cast<std::size_t>(content.size())});
}

} // namespace tarnwick
