#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

class QAction;
class QKeyEvent;
class QWidget;

namespace tarnwick {

/// Sends a window's menu commands to the object that is to carry them out.
///
/// Each action's object name is a command ("openSource"). A command travels along a chain of
/// objects, nearest to the user first: the focused widget and its parents up to the window, the
/// window's content, its document, the application's objects. The first object takes it that
///  - has an invokable method or slot of that name, without argument or with one QAction* (the
///    sender), and
///  - says yes to it, where it has `Q_INVOKABLE bool validateCommand(const QString& command)
///  const`.
/// Actions whose command nobody takes are disabled. A checkable action shows what its taker answers
/// to `Q_INVOKABLE bool commandIsChecked(const QString& command) const`, where the taker has it.
///
/// States are brought up to date when a menu opens, when the focus moves, after validateSoon(), and
/// before each key press is looked up among the shortcuts, so that no shortcut meets a stale state.
/// A key with Alt whose command is disabled does nothing, whatever it means to what has the focus.
class CommandRouter : public QObject
{
    Q_OBJECT

public:
    /// The objects that are asked, in order; null and repeated ones are skipped.
    using Chain = std::function<QList<QObject*>()>;

    /// @param window whose menu bar and key presses are served; owns the router.
    CommandRouter(QWidget* window, Chain chain);

    /// Serves an action from now on. An action without object name is left alone.
    void adopt(QAction* action);
    /// The action of a command, or null.
    QAction* action(const QString& command) const { return theActions.value(command); }

    /// Who would carry the command out now; null when nobody would.
    QObject* taker(const QString& command) const;

    /// Carries a command out. @param sender handed to a taker that wants it.
    /// @returns false when nobody took it.
    bool send(const QString& command, QAction* sender = nullptr);

    /// Enables, disables and checks every action as its command's taker says.
    void validate();
    /// The same once control returns to the event loop, however often it is called until then:
    /// for selections, loaded documents and whatever else makes commands possible.
    void validateSoon() { theTimer.start(0); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void validate(QAction* action) const;
    bool isKeyOfDisabledCommand(const QKeyEvent& event) const;

    QWidget* theWindow;
    Chain theChain;
    QHash<QString, QAction*> theActions;
    QTimer theTimer;
};

} // namespace tarnwick
