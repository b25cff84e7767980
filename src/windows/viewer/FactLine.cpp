#include "FactLine.h"

#include "frame/DocumentWindow.h"

#include <QAction>
#include <QHBoxLayout>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tarnwick {

FactLine::FactLine(QWidget* parent)
    : QFrame(parent)
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    row->setSpacing(8);
    row->addStretch();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    hide();
}

void FactLine::setFact(const QString& command, const QString& text)
{
    QToolButton* const button = buttonOf(command);
    button->setText(text);
    button->setVisible(!text.isEmpty());
    const DocumentWindow* const window = DocumentWindow::of(this);
    const QAction* const action = window ? window->commandAction(command) : nullptr;
    if (action)
        button->setToolTip(action->toolTip());
    bool hasFacts = false;
    for (const QToolButton* const fact : std::as_const(theButtons))
        hasFacts = hasFacts || !fact->text().isEmpty();
    setVisible(hasFacts);
}

QString FactLine::fact(const QString& command) const
{
    const QToolButton* const button = theButtons.value(command);
    return button ? button->text() : QString();
}

QToolButton* FactLine::buttonOf(const QString& command)
{
    QToolButton*& button = theButtons[command];
    if (button)
        return button;
    button = new QToolButton(this);
    button->setObjectName(command + u"Fact"_s);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    auto* const row = static_cast<QHBoxLayout*>(layout());
    row->insertWidget(row->count() - 1, button);
    connect(button, &QToolButton::clicked, this,
        [this, command] { DocumentWindow::send(this, command); });
    return button;
}

} // namespace tarnwick
