#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace tarnwick {

/// Asks for a document's password, again after a wrong one, until it is right or the user cancels.
///
/// The prompt blocks its parent's window only. While a password is being tried it takes no other,
/// but can still be cancelled; it is the caller's to close it when the password was right.
class PasswordPrompt : public QDialog
{
    Q_OBJECT

public:
    /// @param fileName shown in the question.
    PasswordPrompt(const QString& fileName, QWidget* parent);

    /// Asks (again). @param wasWrong says so to the user.
    void ask(bool wasWrong);

signals:
    void passwordEntered(const QString& password);

private:
    void submit();

    QLabel* theWarning;
    QLineEdit* theField;
    QPushButton* theOpenButton;
};

} // namespace tarnwick
