#include "dialogs/Alert.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace tarnwick {

namespace {

Qt::WindowModality modalityOf(Alert::Blocking blocking)
{
    switch (blocking) {
    case Alert::Blocking::isWindow:
        return Qt::WindowModal;
    case Alert::Blocking::isProgram:
        return Qt::ApplicationModal;
    case Alert::Blocking::isNothing:
        break;
    }
    return Qt::NonModal;
}

} // namespace

Alert::Alert(QMessageBox::Icon icon, const QString& title, const QString& text, QWidget* window,
    Blocking blocking)
    : QMessageBox(icon, title, QString(), QMessageBox::NoButton, window)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(modalityOf(blocking));
    setTexts(text, {});
}

void Alert::setTexts(const QString& text, const QString& more)
{
    setText(text);
    setInformativeText(more);
    // Qt makes the second label for itself, takes what looks like markup for it, and opens links.
    const QList<QLabel*> labels = findChildren<QLabel*>();
    for (QLabel* label : labels) {
        label->setTextFormat(Qt::PlainText);
        label->setOpenExternalLinks(false);
    }
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

QPushButton* Alert::addAnswer(QMessageBox::StandardButton answer, std::function<void()> chosen)
{
    return take(addButton(answer), std::move(chosen));
}

QPushButton* Alert::addAnswer(const QString& text, std::function<void()> chosen)
{
    return take(addButton(text, QMessageBox::AcceptRole), std::move(chosen));
}

QPushButton* Alert::take(QPushButton* button, std::function<void()> chosen)
{
    if (buttons().size() == 1)
        setDefaultButton(button);
    if (chosen) {
        connect(this, &QMessageBox::finished, this, [this, button, chosen = std::move(chosen)] {
            if (clickedButton() == button)
                chosen();
        });
    }
    return button;
}

QAbstractButton* Alert::answerOfClosing() const
{
    const QList<QAbstractButton*> all = buttons();
    if (escapeButton() || all.size() == 1)
        return escapeButton() ? escapeButton() : all.first();
    for (const ButtonRole role : {RejectRole, NoRole}) {
        for (QAbstractButton* button : all) {
            if (buttonRole(button) == role)
                return button;
        }
    }
    return nullptr;
}

// Qt knows the answer of an alert that is closed only once it has told that it is closed.
void Alert::closeEvent(QCloseEvent* event)
{
    if (QAbstractButton* const button = answerOfClosing(); button && isVisible())
        button->click();
    event->setAccepted(!isVisible());
}

void Alert::comeUp()
{
    if (buttons().isEmpty())
        addAnswer(QMessageBox::Ok);
    show();
}

} // namespace tarnwick
