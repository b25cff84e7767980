#include "PasswordPrompt.h"

#include "dialogs/InTurn.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarnwick {

PasswordPrompt::PasswordPrompt(const QString& fileName, QWidget* parent, Blocking blocking)
    : QDialog(parent)
    , theWarning(new QLabel(tr("The password is wrong. Please try again."), this))
    , theField(new QLineEdit(this))
{
    setWindowTitle(tr("Password"));
    setWindowModality(blocking == Blocking::isWindow ? Qt::WindowModal : Qt::NonModal);

    auto* question = new QLabel(this);
    question->setTextFormat(Qt::PlainText);
    question->setText(tr("\u201c%1\u201d is protected. &Password:").arg(fileName));
    question->setWordWrap(true);
    question->setBuddy(theField);
    theField->setEchoMode(QLineEdit::Password);
    theField->setAccessibleName(tr("Password"));
    theField->setMinimumWidth(320);
    theWarning->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    theOpenButton = buttons->addButton(tr("&Open"), QDialogButtonBox::AcceptRole);
    theOpenButton->setDefault(true);
    theSourceButton = buttons->addButton(tr("Open &Source"), QDialogButtonBox::ActionRole);
    theSourceButton->setAutoDefault(false);
    theSourceButton->setAccessibleDescription(tr("Shows the file as stored, without a password"));
    connect(theSourceButton, &QPushButton::clicked, this, &PasswordPrompt::sourceWanted);
    connect(buttons, &QDialogButtonBox::accepted, this, &PasswordPrompt::submit);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(question);
    layout->addWidget(theField);
    layout->addWidget(theWarning);
    layout->addWidget(buttons);
}

void PasswordPrompt::offerSource(bool offers)
{
    theSourceButton->setVisible(offers);
}

void PasswordPrompt::ask(bool wasWrong)
{
    theWarning->setVisible(wasWrong);
    theField->setEnabled(true);
    theOpenButton->setEnabled(true);
    theField->selectAll();
    theField->setFocus();
    theField->setAccessibleDescription(wasWrong ? theWarning->text() : QString());
    adjustSize();
    if (waitsForTurn(this))
        return;
    show();
    raise();
    activateWindow();
}

void PasswordPrompt::submit()
{
    theField->setEnabled(false);
    theOpenButton->setEnabled(false);
    emit passwordEntered(theField->text());
}

} // namespace tarnwick
