#pragma once

#include "export/ExportJob.h"

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

/// Asks where a report goes and writes it there: whole or not at all, and never over an opened
/// file.
class ReportExport : public ExportJob
{
    Q_OBJECT

public:
    static void begin(SavedReport report);

private:
    explicit ReportExport(SavedReport report);
    ~ReportExport() override;

    void openPanel();
    void write(const QString& path);
    void finishWriting() override;

    SavedReport theReport;
    QString thePath;
    int theError = 0; ///< of the writing, once it is finished
};

} // namespace tarnwick
