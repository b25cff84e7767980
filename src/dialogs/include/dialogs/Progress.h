#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class QProgressBar;
class QPushButton;
class QWidget;

namespace tarnwick {

/// The small dialog that says what takes long and how far it is, and offers to cancel it: the same
/// for everything that takes long. It comes up after half a second; what is over before is not
/// mentioned, and while something must be answered over its window it waits for that
/// (waitsForTurn()). It goes with this object, and with its window.
class Progress : public QObject
{
    Q_OBJECT

public:
    /// What can not be used meanwhile.
    enum class Blocking
    {
        isWindow, ///< the dialog's window
        isNothing,
    };

    /// @param title what is done: "Export". @param label what is going on: "Exporting “a.rtf”…".
    /// @param window that it stands over; null for none.
    Progress(const QString& title, const QString& label, QWidget* window, Blocking blocking);
    ~Progress() override;

    /// How far it is. Handles no events, unlike Qt's dialog when it is modal: nobody is called from
    /// within. @param total 0 while it is unknown.
    void show(quint64 done, quint64 total);
    void setLabel(const QString& label);
    /// Offers something beside cancelling, once, as soon as it is made; its dialog stays. Enter
    /// does not give that answer unless it has the keyboard.
    /// @returns the button, owned by the dialog: it goes with it.
    QPushButton* addAnswer(const QString& text);
    /// Brings the dialog before the user, where it shows.
    void bringUp();

signals:
    /// The user wants no more of it; the dialog does not show any more. Whoever hears it may
    /// destroy this object.
    void cancelled();

private:
    class Dialog;
    QPointer<Dialog> theDialog;
    QPointer<QProgressBar> theBar;
};

} // namespace tarnwick
