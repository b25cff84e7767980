#include "frame/CommandRouter.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMetaMethod>
#include <QWidget>
#include <QWindow>

namespace tarnwick {

namespace {

/// The method that carries a command out, invalid when the object has none.
QMetaMethod methodFor(const QObject* object, const QString& command)
{
    const QMetaObject* meta = object->metaObject();
    for (const char* parameters : {"(QAction*)", "()"}) {
        const QByteArray signature = command.toLatin1() + parameters;
        const int index = meta->indexOfMethod(signature.constData());
        if (index < 0)
            continue;
        const QMetaMethod method = meta->method(index);
        if (method.methodType() != QMetaMethod::Signal && method.access() == QMetaMethod::Public)
            return method;
    }
    return {};
}

/// Asks an object a yes or no question about a command; the fallback where it has no answer.
bool ask(QObject* object, const char* question, const QString& command, bool fallback)
{
    const QByteArray signature = QByteArray(question) + "(QString)";
    const int index = object->metaObject()->indexOfMethod(signature.constData());
    bool answer = fallback;
    if (index >= 0) {
        object->metaObject()->method(index).invoke(
            object, Qt::DirectConnection, Q_RETURN_ARG(bool, answer), Q_ARG(QString, command));
    }
    return answer;
}

bool mayBeShortcut(const QKeyEvent& event)
{
    // Plain keys belong to what has the focus: typing must not cost a look at every command.
    return (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        || (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F35);
}

} // namespace

CommandRouter::CommandRouter(QWidget* window, Chain chain)
    : QObject(window)
    , theWindow(window)
    , theChain(std::move(chain))
{
    theTimer.setSingleShot(true);
    connect(&theTimer, &QTimer::timeout, this, qOverload<>(&CommandRouter::validate));
    connect(qApp, &QApplication::focusChanged, this, &CommandRouter::validateSoon);
    qApp->installEventFilter(this);
}

void CommandRouter::adopt(QAction* action)
{
    const QString command = action->objectName();
    if (command.isEmpty())
        return;
    theActions.insert(command, action);
    connect(action, &QAction::triggered, this, [this, action, command] {
        send(command, action);
        validateSoon();
    });
    validateSoon();
}

QObject* CommandRouter::taker(const QString& command) const
{
    for (QObject* object : theChain()) {
        if (object && methodFor(object, command).isValid()
            && ask(object, "validateCommand", command, true))
            return object;
    }
    return nullptr;
}

bool CommandRouter::send(const QString& command, QAction* sender)
{
    QObject* object = taker(command);
    if (!object)
        return false;
    const QMetaMethod method = methodFor(object, command);
    if (method.parameterCount() == 0)
        return method.invoke(object, Qt::DirectConnection);
    return method.invoke(object, Qt::DirectConnection, Q_ARG(QAction*, sender));
}

void CommandRouter::validate()
{
    for (QAction* action : std::as_const(theActions))
        validate(action);
}

void CommandRouter::validate(QAction* action) const
{
    QObject* object = taker(action->objectName());
    action->setEnabled(object != nullptr);
    if (object && action->isCheckable())
        action->setChecked(
            ask(object, "commandIsChecked", action->objectName(), action->isChecked()));
}

bool CommandRouter::isKeyOfDisabledCommand(const QKeyEvent& event) const
{
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::AltModifier)
        return false;
    const QKeySequence key(event.keyCombination());
    return std::any_of(theActions.begin(), theActions.end(), [&key](const QAction* action) {
        return !action->isEnabled() && action->shortcuts().contains(key);
    });
}

bool CommandRouter::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && watched == theWindow->focusWidget()
        && isKeyOfDisabledCommand(*static_cast<QKeyEvent*>(event)))
        return true;
    // Sent before shortcuts are looked up, first to the window, then to what has the focus.
    if (event->type() == QEvent::ShortcutOverride
        && (watched == theWindow || watched == theWindow->focusWidget()
            || watched == theWindow->windowHandle())
        && mayBeShortcut(*static_cast<QKeyEvent*>(event)))
        validate();
    return QObject::eventFilter(watched, event);
}

} // namespace tarnwick
