#include "SearchStepper.h"

#include <QHBoxLayout>
#include <QToolButton>

#include <algorithm>
#include <limits>

namespace tarnwick {

SearchStepper::SearchStepper(QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    thePreviousButton = addButton(Qt::UpArrow, tr("Previous match"), -1);
    theNextButton = addButton(Qt::DownArrow, tr("Next match"), 1);
    thePreviousButton->setToolTip(tr("Previous match (Shift+F3)"));
    theNextButton->setToolTip(tr("Next match (F3)"));
    setFocusProxy(theNextButton);
}

QToolButton* SearchStepper::addButton(Qt::ArrowType arrow, const QString& name, int step)
{
    auto* button = new QToolButton(this);
    button->setArrowType(arrow);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setAccessibleName(name);
    button->setAutoRepeat(true);
    layout()->addWidget(button);
    connect(button, &QToolButton::clicked, this, [this, step] {
        const qint64 value = qint64(theValue) + step;
        setIntegerValue(static_cast<int>(std::min<qint64>(value, std::numeric_limits<int>::max())));
        emit stepped();
    });
    return button;
}

void SearchStepper::setIntegerValue(int value)
{
    theValue = std::max(value, -1);
}

} // namespace tarnwick
