#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace tarnwick {

/// Asks for a document's password, again after a wrong one, until it is right or the user cancels.
///
/// The prompt blocks its parent's window at most. While a password is being tried it takes no
/// other, but can still be cancelled; it is the caller's to close it when the password was right.
class PasswordPrompt : public QDialog
{
    Q_OBJECT

public:
    /// What can not be used meanwhile.
    enum class Blocking
    {
        isWindow, ///< the parent's
        isNothing,
    };

    /// @param fileName shown in the question.
    PasswordPrompt(const QString& fileName, QWidget* parent, Blocking blocking);

    /// Whether the file's source can be chosen instead of a password, as it can at first.
    void offerSource(bool offers);

    /// Asks (again). @param wasWrong says so to the user.
    void ask(bool wasWrong);

signals:
    void passwordEntered(const QString& password);
    /// The user wants to see the source, and gives no password. The prompt still shows.
    void sourceWanted();

private:
    void submit();

    QLabel* theWarning;
    QLineEdit* theField;
    QPushButton* theOpenButton;
    QPushButton* theSourceButton;
};

} // namespace tarnwick
