#include "export/ExportProgress.h"

#include <QProgressDialog>

namespace tarnwick {

ExportProgress::ExportProgress(const QString& label, QObject* parent)
    : QObject(parent)
    , theDialog(new QProgressDialog(label, tr("Cancel"), 0, 0))
{
    theDialog->setObjectName(QStringLiteral("exportProgress"));
    theDialog->setWindowTitle(tr("Export"));
    theDialog->setAccessibleName(label);
    theDialog->setAutoClose(false);
    theDialog->setAutoReset(false);
    theDialog->setMinimumWidth(360);
    theDialog->setMinimumDuration(1000);
    connect(theDialog, &QProgressDialog::canceled, this, &ExportProgress::cancelled);
}

ExportProgress::~ExportProgress()
{
    // Possibly from within its own signal.
    theDialog->disconnect(this);
    theDialog->hide();
    theDialog->deleteLater();
}

void ExportProgress::show(int done, int total)
{
    theDialog->setMaximum(total);
    theDialog->setValue(done);
}

} // namespace tarnwick
