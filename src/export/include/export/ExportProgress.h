#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class QProgressDialog;

namespace tarnwick {

/// A progress panel that stands by itself, shown once an export has taken a second.
class ExportProgress : public QObject
{
    Q_OBJECT

public:
    /// @param label what is going on: "Exporting “report.rtf”…".
    explicit ExportProgress(const QString& label, QObject* parent = nullptr);
    ~ExportProgress() override;

    /// @param total 0 while it is unknown.
    void show(int done, int total);

signals:
    void cancelled();

private:
    QProgressDialog* theDialog;
};

} // namespace tarnwick
