#pragma once

#include "export/FileExport.h"

#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

namespace tarnwick {

/// A report that the user wants in a file, in one of several forms.
struct SavedReport
{
    struct Form
    {
        QString ending; ///< without dot, that asks for this form
        std::function<QByteArray()> write; ///< called in a thread
    };

    QString title; ///< of the panel: "Save Report"
    QString folder; ///< that the panel opens in
    QString name; ///< proposed, without an ending
    QList<Form> forms; ///< the first one is proposed
    QPointer<QWidget> window; ///< for the notice of the end
};

/// Saves a report, in the form that the chosen ending asks for.
class ReportExport : public FileExport
{
    Q_OBJECT

public:
    static void begin(SavedReport report);

private:
    explicit ReportExport(SavedReport report);
    ~ReportExport() override;

    std::optional<int> append(
        WholeFile& file, const std::stop_token& stop, const Work::Report& report) override;

    SavedReport theReport;
};

} // namespace tarnwick
