#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QString>

#include <functional>
#include <utility>

class QAction;
class QDropEvent;

namespace tarnwick {

class CommandRouter;
class FrameDocument;
class NoticeLine;
struct Notice;

/// What is asked before a window closes with something at work in it.
struct ClosingQuestion
{
    QString text; ///< what is at work
    QString consequence; ///< what becomes of it
    QString answer; ///< of closing nevertheless
};

/// A window of the program: the main menu, and one content widget that does the work.
///
/// The content is the window's controller. It gets what it shows through its own constructor, does
/// its set-up in showEvent (when the event is not spontaneous), takes commands as slots
/// (CommandRouter), and names its window by QWidget::setWindowTitle on itself: the window takes
/// over the content's title.
///
/// A command starts from the focus within the content and the notices; a menu that has the keyboard
/// changes nothing about that. Behind the content comes what it hands the keyboard to, its focus
/// proxy: the commands of a page view are possible from every field around it.
///
/// Size and place are remembered for each kind of window; a further window of a kind that is open
/// stands a little below and to the right of the last one. Files dropped anywhere on the window are
/// handed to filesDropped().
class DocumentWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// @param identifier kind of window, one of WindowIdentifiers.
    /// @param document whose window this is, or null; the window adds itself to it
    ///   (FrameDocument::addWindow) and never outlives it.
    explicit DocumentWindow(const QString& identifier, FrameDocument* document = nullptr);
    ~DocumentWindow() override;

    /// The window that a widget lies in, or null.
    static DocumentWindow* of(const QWidget* widget);
    /// Carries a command out as if chosen from the menu of the window that a widget lies in; for
    /// buttons and context menus. @returns false when nobody took it.
    static bool send(const QWidget* from, const QString& command);

    const QString& identifier() const { return theIdentifier; }
    /// Grows with each window made.
    int serial() const { return theSerial; }
    FrameDocument* document() const { return theDocument; }
    QWidget* content() const { return theContent; }
    /// Puts the content in; the window owns it. Called once.
    /// The size that it has then is the window's first size.
    void setContent(QWidget* content);

    /// Serves the actions of the menu bar that has been put into the window. Called once.
    /// @param applicationResponders last in the chain of every command, borrowed for the window's
    ///   life.
    void installCommands(const QList<QObject*>& applicationResponders);
    CommandRouter* router() const { return theRouter; }
    /// The menu's action for a command, for toolbars and context menus; null when there is none.
    QAction* commandAction(const QString& command) const;

    /// Shows a notice below the content until it is read. tellUser() finds the window for one.
    void notify(const Notice& notice);
    NoticeLine* noticeLine() const { return theNoticeLine; }

    /// As long as something is at work, closing the window asks first. Closing it nevertheless
    /// destroys what is at work.
    /// @param work borrowed; may go at any time.
    void askBeforeClosing(QObject* work, const ClosingQuestion& question);
    /// Whether something is.
    bool isAtWork() const;
    /// Asks whether the window may close, precondition: isAtWork(). @param agreed called when the
    ///   user says so; nothing has been closed by then. Takes the place of one from an earlier call
    ///   that has not been answered.
    void askToClose(std::function<void()> agreed);
    /// Closes the window without asking: nobody may be there to answer.
    void closeUnasked();

    /// Shows the window in front of the others.
    void bringUp();

public slots:
    /// Closes this window.
    void performClose();

signals:
    /// Local files that the user dropped on the window.
    void filesDropped(const QStringList& paths);
    /// The user has closed the window. It is destroyed afterwards where Qt::WA_DeleteOnClose is
    /// set, as it is at first.
    void closed();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QList<QObject*> chain() const;
    void bringForward();
    void bringQuestionUp();
    QWidget* focusInContent() const;
    bool isInContent(const QWidget* widget) const;
    void giveFocus();
    bool takeDrag(QDropEvent& event);

    QString theIdentifier;
    FrameDocument* theDocument;
    QPointer<QWidget> theContent;
    QPointer<QWidget> theLastFocus; // within the content, before a menu took the keyboard
    NoticeLine* theNoticeLine;
    CommandRouter* theRouter = nullptr;
    QList<QObject*> theApplicationResponders;
    QList<std::pair<QPointer<QObject>, ClosingQuestion>> theWork;
    QPointer<QWidget> theQuestion; ///< about closing
    std::function<void()> theAgreed; ///< what follows from closing nevertheless
    int theSerial;
    bool isPlaceKnown = false;
};

} // namespace tarnwick
