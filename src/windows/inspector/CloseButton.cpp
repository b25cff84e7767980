#include "CloseButton.h"

#include <QCoreApplication>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tarnwick {

QToolButton* newCloseButton(const QString& name)
{
    auto* const button = new QToolButton;
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setText(u"\u2715"_s);
    button->setToolTip(QCoreApplication::translate("CloseButton", "Close (Esc)"));
    button->setAccessibleName(name);
    return button;
}

} // namespace tarnwick
