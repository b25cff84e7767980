#include "printing/PrintPanel.h"

#include "dialogs/Alert.h"
#include "files/OutputNaming.h"
#include "frame/OutputRefusal.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QDir>
#include <QLineEdit>
#include <QPrinter>
#include <QShowEvent>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// The working folder where that is one of the user's, else the user's own.
QString proposedFolder()
{
    const QString home = QDir::homePath();
    const QString current = QDir::currentPath();
    return current.startsWith(home + u'/') ? current : home;
}

QString proposedPath(const QString& jobName)
{
    const QString type = u".pdf"_s;
    QString name = jobName.isEmpty() ? u"print"_s : jobName;
    name.replace(u'/', u'-');
    if (!name.endsWith(type, Qt::CaseInsensitive))
        name += type;
    const QDir folder(proposedFolder());
    return folder.filePath(nameOfNoOpenedFile(folder.path(), name));
}

} // namespace

PrintPanel::PrintPanel(QPrinter* printer, QWidget* window)
    : QPrintDialog(printer, window)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setOption(QAbstractPrintDialog::PrintPageRange);
    setOption(QAbstractPrintDialog::PrintToFile);
    setOption(QAbstractPrintDialog::PrintShowPageSize);
    auto* const buttons = findChild<QDialogButtonBox*>();
    connect(buttons, &QDialogButtonBox::clicked, this, [this, buttons](QAbstractButton* button) {
        if (buttons->buttonRole(button) == QDialogButtonBox::AcceptRole)
            check();
    });
}

QLineEdit* PrintPanel::fileField() const
{
    return findChild<QLineEdit*>(u"filename"_s);
}

void PrintPanel::showEvent(QShowEvent* event)
{
    QPrintDialog::showEvent(event);
    // Qt proposes the job's name, which is the opened file's.
    if (fileField() && !event->spontaneous() && printer()->outputFileName().isEmpty())
        fileField()->setText(proposedPath(printer()->docName()));
}

/// The user has confirmed.
void PrintPanel::check()
{
    // Only printing into a file has the field enabled.
    const QLineEdit* const field = fileField();
    const QString refused = field && field->isEnabled() ? outputRefusal(field->text()) : QString();
    if (refused.isEmpty())
        return;
    // Qt goes on to its own question at the buttons' next signal, and at no other call.
    auto* const buttons = findChild<QDialogButtonBox*>();
    buttons->blockSignals(true);
    QMetaObject::invokeMethod(
        this,
        [this, buttons, refused] {
            buttons->blockSignals(false);
            (new Alert(QMessageBox::Warning, windowTitle(), refused, this))->comeUp();
        },
        Qt::QueuedConnection);
}

} // namespace tarnwick
