#include "text/FindBar.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tarnwick {

FindBar::FindBar(QWidget* parent)
    : QFrame(parent)
    , theField(new QLineEdit)
    , theBox(new QCheckBox(tr("&Match case")))
    , theStatus(new QLabel)
{
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    setAccessibleName(tr("Find bar"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 3, 6, 3);
    layout->setSpacing(4);
    theField->setObjectName(u"findField"_s);
    theField->setMaxLength(longestText);
    setPrompt(tr("Find in text"));
    theField->setClearButtonEnabled(true);
    theField->setMinimumWidth(80);
    theField->setMaximumWidth(420);
    theField->installEventFilter(this);
    layout->addWidget(theField, 1);
    connect(theField, &QLineEdit::textChanged, this, &FindBar::wantedChanged);

    QToolButton* previous = addButton(tr("Previous match"));
    previous->setArrowType(Qt::UpArrow);
    previous->setToolTip(tr("Previous match (Shift+F3)"));
    connect(previous, &QToolButton::clicked, this, &FindBar::previousWanted);
    QToolButton* next = addButton(tr("Next match"));
    next->setArrowType(Qt::DownArrow);
    next->setToolTip(tr("Next match (F3)"));
    connect(next, &QToolButton::clicked, this, &FindBar::nextWanted);

    layout->addWidget(theBox);
    connect(theBox, &QCheckBox::toggled, this, &FindBar::wantedChanged);
    theStatus->setObjectName(u"findStatus"_s);
    theStatus->setAccessibleDescription(tr("Search result")); // its name is what it says
    theStatus->setMinimumWidth(10);
    layout->addWidget(theStatus, 2);

    QToolButton* close = addButton(tr("Close find bar"));
    close->setText(u"\u2715"_s);
    close->setToolTip(tr("Close (Esc)"));
    connect(close, &QToolButton::clicked, this, &FindBar::closeWanted);
}

QToolButton* FindBar::addButton(const QString& name)
{
    auto* button = new QToolButton;
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(name);
    layout()->addWidget(button);
    return button;
}

QString FindBar::text() const
{
    return theField->text();
}

void FindBar::setText(const QString& text)
{
    const QSignalBlocker blocker(theField);
    theField->setText(text);
}

Qt::CaseSensitivity FindBar::sensitivity() const
{
    return theBox->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

void FindBar::setBox(const QString& title, const QString& toolTip)
{
    theBox->setText(title);
    theBox->setToolTip(toolTip);
    setBoxChecked(false);
}

bool FindBar::isBoxChecked() const
{
    return theBox->isChecked();
}

void FindBar::setBoxChecked(bool checked)
{
    const QSignalBlocker blocker(theBox);
    theBox->setChecked(checked);
}

void FindBar::setPrompt(const QString& prompt)
{
    theField->setPlaceholderText(prompt);
    theField->setAccessibleName(prompt);
}

void FindBar::edit()
{
    theField->setFocus(Qt::ShortcutFocusReason);
    theField->selectAll();
}

void FindBar::setStatus(const QString& status, Mood mood)
{
    theStatus->setText(status);
    theStatus->setToolTip(status);
    QPalette colours;
    if (mood == Mood::isNotFound) {
        const bool isDark = palette().color(QPalette::Base).lightness() < 128;
        colours.setColor(
            QPalette::Base, isDark ? QColor(0x5C, 0x1F, 0x1F) : QColor(0xFF, 0xD9, 0xD9));
        colours.setColor(QPalette::Text, isDark ? Qt::white : Qt::black);
    }
    theField->setPalette(colours);
}

QString FindBar::status() const
{
    return theStatus->text();
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        emit closeWanted();
    else if (event->matches(QKeySequence::FindNext))
        emit nextWanted();
    else if (event->matches(QKeySequence::FindPrevious))
        emit previousWanted();
    else if (event->matches(QKeySequence::Find))
        edit();
    else
        QFrame::keyPressEvent(event);
}

bool FindBar::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == theField && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            if (key->modifiers().testFlag(Qt::ShiftModifier))
                emit previousWanted();
            else
                emit nextWanted();
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace tarnwick
