#include "dialogs/Progress.h"

#include <QProgressBar>
#include <QProgressDialog>

#include <algorithm>

namespace tarnwick {

namespace {

constexpr int patience = 500; // milliseconds until the user is told that it takes longer
constexpr int steps = 1000;
constexpr int leastWidth = 360;

} // namespace

Progress::Progress(const QString& title, const QString& label, QWidget* window, Blocking blocking)
    : theDialog(new QProgressDialog(window))
    , theBar(new QProgressBar(theDialog))
{
    theBar->setRange(0, 0);
    theDialog->setBar(theBar);
    theDialog->setCancelButtonText(tr("Cancel"));
    theDialog->setWindowTitle(title);
    setLabel(label);
    theDialog->setWindowModality(blocking == Blocking::isWindow ? Qt::WindowModal : Qt::NonModal);
    theDialog->setMinimumWidth(leastWidth);
    theDialog->setMinimumDuration(patience);
    connect(theDialog, &QProgressDialog::canceled, this, &Progress::cancelled);
}

Progress::~Progress()
{
    if (!theDialog)
        return;
    // Possibly from within its own signal.
    theDialog->disconnect(this);
    theDialog->reset(); // it may still be waiting to come up
    theDialog->hide();
    theDialog->deleteLater();
}

void Progress::show(quint64 done, quint64 total)
{
    if (!theBar)
        return;
    theBar->setRange(0, total > 0 ? steps : 0);
    const double part = total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 0;
    theBar->setValue(static_cast<int>(std::min(part, 1.0) * steps));
}

void Progress::setLabel(const QString& label)
{
    if (!theDialog)
        return;
    theDialog->setLabelText(label);
    theDialog->setAccessibleName(label);
}

void Progress::bringUp()
{
    if (!theDialog || !theDialog->isVisible())
        return;
    theDialog->raise();
    theDialog->activateWindow();
}

} // namespace tarnwick
