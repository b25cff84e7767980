#include "ProgressLine.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QToolButton>

namespace tarnwick {

ProgressLine::ProgressLine(QWidget* parent)
    : QWidget(parent)
    , theLabel(new QLabel(this))
    , theBar(new QProgressBar(this))
    , theCancelButton(new QToolButton(this))
    , theRetryButton(new QToolButton(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(theLabel);
    layout->addWidget(theBar, 1);
    layout->addWidget(theRetryButton);
    layout->addWidget(theCancelButton);
    theBar->setTextVisible(false);
    // In a narrow pane the bar gives way to the words.
    theBar->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    theBar->setMinimumWidth(24);
    theBar->setMaximumWidth(200);
    theBar->setMaximumHeight(theLabel->sizeHint().height());
    theCancelButton->setText(tr("Cancel"));
    theRetryButton->setText(tr("Try Again"));
    for (QToolButton* button : {theCancelButton, theRetryButton})
        button->setFocusPolicy(Qt::StrongFocus);
    connect(theCancelButton, &QToolButton::clicked, this, &ProgressLine::cancelRequested);
    connect(theRetryButton, &QToolButton::clicked, this, &ProgressLine::retryRequested);
    hide();
}

void ProgressLine::showProgress(const QString& text, int done, int total)
{
    theLabel->setWordWrap(false);
    theLabel->setToolTip({});
    theLabel->setAccessibleDescription({});
    theLabel->setText(text);
    theBar->setRange(0, total);
    theBar->setValue(done);
    theBar->setAccessibleName(text);
    theBar->show();
    theCancelButton->show();
    theRetryButton->hide();
    show();
}

void ProgressLine::showMessage(const QString& text, bool canRetry, const QString& detail)
{
    theLabel->setToolTip(detail);
    theLabel->setAccessibleDescription(detail);
    // A sentence in a narrow pane takes several lines rather than widening it.
    theLabel->setWordWrap(isMessageWrapped);
    theLabel->setText(text);
    theBar->hide();
    theCancelButton->hide();
    theRetryButton->setVisible(canRetry);
    show();
}

void ProgressLine::clear()
{
    hide();
    theLabel->clear();
}

} // namespace tarnwick
