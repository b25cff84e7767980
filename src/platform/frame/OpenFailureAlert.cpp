#include "platform/frame/OpenFailureAlert.h"

#include <QApplication>
#include <QFileInfo>

void OpenFailureAlert::report(QWidget* parent, const QString& path, const QString& reason)
{
    OpenFailureAlert* alert = shown();
    if (!alert)
        alert = new OpenFailureAlert(parent);
    alert->add(path, reason);
    alert->show();
    alert->raise();
}

void OpenFailureAlert::moveTo(QWidget* window)
{
    OpenFailureAlert* alert = shown();
    if (!alert || (alert->parentWidget() && alert->parentWidget()->isVisible()))
        return;
    alert->setParent(window, alert->windowFlags());
    alert->show();
    alert->raise();
}

OpenFailureAlert* OpenFailureAlert::shown()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        auto* alert = qobject_cast<OpenFailureAlert*>(widget);
        if (alert && alert->isVisible())
            return alert;
    }
    return nullptr;
}

OpenFailureAlert::OpenFailureAlert(QWidget* parent)
    : QMessageBox(QMessageBox::Warning, tr("Cannot Open"), QString(), QMessageBox::Ok, parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::NonModal);
    setTextFormat(Qt::PlainText); // file names are no markup
    setTextInteractionFlags(Qt::TextSelectableByMouse);
}

void OpenFailureAlert::add(const QString& path, const QString& reason)
{
    const QString name = QFileInfo(path).fileName();
    theNames << (name.isEmpty() ? path : name);
    theReasons << reason;
    if (theNames.size() == 1) {
        setText(tr("\u201c%1\u201d could not be opened.").arg(theNames.constFirst()));
        setInformativeText(reason);
        return;
    }
    setText(tr("%1 files could not be opened.").arg(theNames.size()));
    QStringList lines;
    for (qsizetype index = 0; index < theNames.size(); ++index)
        lines << tr("\u201c%1\u201d: %2").arg(theNames.at(index), theReasons.at(index));
    constexpr qsizetype shown = 8; // more would grow the alert over the screen
    setInformativeText(lines.mid(0, shown).join(QLatin1Char('\n')));
    setDetailedText(lines.size() > shown ? lines.join(QLatin1Char('\n')) : QString());
}
