#include "dialogs/Progress.h"

#include "dialogs/InTurn.h"

#include <QEvent>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QStyle>

#include <algorithm>

namespace tarnwick {

namespace {

constexpr int patience = 500; // milliseconds until the user is told that it takes longer
constexpr int steps = 1000;
constexpr int leastWidth = 360;

} // namespace

/// Comes up when nothing that must be answered stands over its window, and may have a second
/// answer.
class Progress::Dialog : public QProgressDialog
{
public:
    using QProgressDialog::QProgressDialog;

    /// The answer stands before the one that cancels.
    QPushButton* addAnswer(const QString& text)
    {
        theAnswer = new QPushButton(text, this);
        theAnswer->setAutoDefault(false);
        resize(sizeHint());
        return theAnswer;
    }
    void setCanceller(QPushButton* button)
    {
        theCanceller = button;
        setCancelButton(button);
    }
    void setVisible(bool shows) override
    {
        if (!shows || isVisible() || (!isOver && !waitsForTurn(this)))
            QProgressDialog::setVisible(shows);
    }
    /// Comes up no more, though it may still be waiting to.
    void end()
    {
        isOver = true;
        reset();
        hide();
        deleteLater();
    }

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QProgressDialog::resizeEvent(event);
        placeAnswer();
    }
    void changeEvent(QEvent* event) override
    {
        QProgressDialog::changeEvent(event);
        if (event->type() == QEvent::StyleChange) // when the other one has been placed anew
            placeAnswer();
    }

private:
    /// Beside the other one, both where the style has that alone.
    void placeAnswer()
    {
        if (!theAnswer)
            return;
        const int gap = std::max(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing), 6);
        const int width = theAnswer->sizeHint().width();
        if (style()->styleHint(QStyle::SH_ProgressDialog_CenterCancelButton, nullptr, this) != 0)
            theCanceller->move(theCanceller->x() + (width + gap) / 2, theCanceller->y());
        const QRect beside = theCanceller->geometry();
        theAnswer->setGeometry(beside.x() - gap - width, beside.y(), width, beside.height());
    }

    QPushButton* theCanceller = nullptr;
    QPushButton* theAnswer = nullptr;
    bool isOver = false;
};

Progress::Progress(const QString& title, const QString& label, QWidget* window, Blocking blocking)
    : theDialog(new Dialog(window))
    , theBar(new QProgressBar(theDialog))
{
    theBar->setRange(0, 0);
    theBar->setValue(0); // without a value Qt's own patience of four seconds would stay
    theDialog->setBar(theBar);
    theDialog->setCanceller(new QPushButton(tr("Cancel"), theDialog));
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
    theDialog->end();
}

void Progress::show(quint64 done, quint64 total)
{
    if (!theBar)
        return;
    theBar->setRange(0, total > 0 ? steps : 0);
    const double part = total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 0;
    theBar->setValue(static_cast<int>(std::min(part, 1.0) * steps));
}

QPushButton* Progress::addAnswer(const QString& text)
{
    return theDialog->addAnswer(text);
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
