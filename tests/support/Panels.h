#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QString>
#include <QTimer>
#include <QWidget>

namespace tarnwick {

/// Top-level widgets of a class that show, oldest first where they stand for equal things.
template<class Widget> QList<Widget*> allShown()
{
    QList<Widget*> found;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        if (auto* const match = dynamic_cast<Widget*>(widget); match && match->isVisible())
            found.append(match);
    }
    return found;
}

/// One of them; null without one.
template<class Widget> Widget* shown()
{
    const QList<Widget*> found = allShown<Widget>();
    return found.isEmpty() ? nullptr : found.first();
}

/// The field of a file panel that takes the name.
inline QLineEdit* nameField(const QWidget* panel)
{
    using namespace Qt::StringLiterals;
    return panel->findChild<QLineEdit*>(u"fileNameEdit"_s);
}

/// Answers the question that shows; false without one.
inline bool answer(QMessageBox::StandardButton button)
{
    const auto* const question = shown<QMessageBox>();
    if (question)
        question->button(button)->click();
    return question != nullptr;
}

/// Answers the next question that blocks.
inline void answerNext(QMessageBox::StandardButton button)
{
    QTimer::singleShot(0, qApp, [button] {
        if (const auto* const question = shown<QMessageBox>())
            question->button(button)->click();
    });
}

} // namespace tarnwick
