#pragma once

#include <QMessageBox>

#include <functional>

namespace tarnwick {

/// Something that the user is told or asked over a window, as every alert of the program does it.
///
/// Nothing waits for the answer: what follows from it is called when it is there. Texts are shown
/// as they are, since names and addresses come from files and must not become markup, and can be
/// copied. An alert destroys itself when it closes, and goes with its window unanswered.
class Alert : public QMessageBox
{
    Q_OBJECT

public:
    /// What can not be used until the alert is answered.
    enum class Blocking
    {
        isWindow, ///< the alert's window
        isProgram, ///< every window
        isNothing,
    };

    /// @param window that it stands over; null for none.
    Alert(QMessageBox::Icon icon, const QString& title, const QString& text, QWidget* window,
        Blocking blocking = Blocking::isWindow);

    /// What it says, and what more there is to say of it in smaller letters.
    void setTexts(const QString& text, const QString& more);

    /// Adds an answer. The first one is the default. Escape and closing the alert give the one that
    /// cancels or refuses, or the only one; an alert of several others needs setEscapeButton().
    /// @param chosen called when the alert has closed with this answer; may be empty.
    QPushButton* addAnswer(QMessageBox::StandardButton answer, std::function<void()> chosen = {});
    QPushButton* addAnswer(const QString& text, std::function<void()> chosen = {});

    /// Shows it. Without an answer to give it has "OK".
    void comeUp();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QAbstractButton* answerOfClosing() const;
    QPushButton* take(QPushButton* button, std::function<void()> chosen);
};

} // namespace tarnwick
