#include "dialogs/InTurn.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QProgressDialog>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

const QWidget* windowOf(const QDialog& dialog)
{
    return dialog.parentWidget() ? dialog.parentWidget()->window() : nullptr;
}

bool blocks(const QDialog& other, const QDialog& dialog)
{
    if (!other.isVisible() || &other == &dialog || qobject_cast<const QProgressDialog*>(&other))
        return false;
    return other.windowModality() == Qt::ApplicationModal
        || (other.windowModality() == Qt::WindowModal && windowOf(dialog)
            && windowOf(other) == windowOf(dialog));
}

QDialog* blockerOf(const QDialog& dialog)
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        auto* const other = qobject_cast<QDialog*>(widget);
        if (other && blocks(*other, dialog))
            return other;
    }
    return nullptr;
}

/// Shows its parent when another dialog has gone; that it waits already makes no second one.
class Turn : public QObject
{
public:
    Turn(QDialog* other, QDialog* dialog)
        : QObject(dialog)
    {
        setObjectName(u"turn"_s);
        other->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // With its window an icon, it is hidden too, and still waits for its answer.
        if (event->type() == QEvent::Hide && !event->spontaneous()) {
            watched->removeEventFilter(this);
            QTimer::singleShot(0, this, &Turn::take);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void take()
    {
        auto* const dialog = static_cast<QDialog*>(parent());
        setObjectName({});
        deleteLater();
        if (!waitsForTurn(dialog))
            dialog->show();
    }
};

} // namespace

bool waitsForTurn(QDialog* dialog)
{
    QDialog* const other = blockerOf(*dialog);
    if (!other)
        return false;
    delete dialog->findChild<QObject*>(u"turn"_s, Qt::FindDirectChildrenOnly);
    new Turn(other, dialog);
    return true;
}

} // namespace tarnwick
