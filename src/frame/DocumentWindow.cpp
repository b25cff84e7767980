#include "frame/DocumentWindow.h"

#include "NoticeLine.h"
#include "WindowPlace.h"
#include "dialogs/Alert.h"
#include "frame/CommandRouter.h"
#include "frame/FrameDocument.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace tarnwick {

namespace {

int windowsMade = 0;

QStringList localFiles(const QMimeData* data)
{
    QStringList paths;
    for (const QUrl& url : data->urls()) {
        if (url.isLocalFile())
            paths << url.toLocalFile();
    }
    return paths;
}

} // namespace

DocumentWindow::DocumentWindow(const QString& identifier, FrameDocument* document)
    : theIdentifier(identifier)
    , theDocument(document)
    , theNoticeLine(new NoticeLine)
    , theSerial(++windowsMade)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    auto* const column = new QVBoxLayout;
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(theNoticeLine);
    auto* const contentAndNotices = new QWidget;
    contentAndNotices->setLayout(column);
    setCentralWidget(contentAndNotices);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (isInContent(now))
            theLastFocus = now;
    });
    qApp->installEventFilter(this); // parts of the content that take drops would keep files
    if (document)
        document->addWindow(this);
}

DocumentWindow::~DocumentWindow()
{
    qApp->disconnect(this); // the focus still moves while the content goes
}

DocumentWindow* DocumentWindow::of(const QWidget* widget)
{
    return widget ? qobject_cast<DocumentWindow*>(widget->window()) : nullptr;
}

bool DocumentWindow::send(const QWidget* from, const QString& command)
{
    const DocumentWindow* window = of(from);
    return window && window->theRouter
        && window->theRouter->send(command, window->commandAction(command));
}

void DocumentWindow::setContent(QWidget* content)
{
    resize(content->size());
    setWindowTitle(content->windowTitle());
    connect(content, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    theContent = content;
    static_cast<QVBoxLayout*>(centralWidget()->layout())->insertWidget(0, content, 1);
}

void DocumentWindow::notify(const Notice& notice)
{
    theNoticeLine->add(notice);
}

void DocumentWindow::installCommands(const QList<QObject*>& applicationResponders)
{
    theApplicationResponders = applicationResponders;
    theRouter = new CommandRouter(this, [this] { return chain(); });
    const QList<QAction*> actions = findChildren<QAction*>();
    for (QAction* action : actions)
        theRouter->adopt(action);
    const QList<QMenu*> menus = menuBar()->findChildren<QMenu*>();
    for (QMenu* menu : menus)
        connect(menu, &QMenu::aboutToShow, theRouter, qOverload<>(&CommandRouter::validate));
}

QAction* DocumentWindow::commandAction(const QString& command) const
{
    return theRouter ? theRouter->action(command) : nullptr;
}

void DocumentWindow::bringUp()
{
    bringForward();
    activateWindow();
}

void DocumentWindow::bringForward()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
}

void DocumentWindow::performClose()
{
    close();
}

QList<QObject*> DocumentWindow::chain() const
{
    QList<QObject*> objects;
    const auto addWithParents = [this, &objects](QWidget* widget) {
        for (; widget && widget != centralWidget(); widget = widget->parentWidget())
            objects << widget;
    };
    addWithParents(focusInContent());
    objects << content();
    if (content() && isInContent(content()->focusProxy()))
        addWithParents(content()->focusProxy());
    objects << const_cast<DocumentWindow*>(this) << theDocument << theApplicationResponders;
    return objects;
}

QWidget* DocumentWindow::focusInContent() const
{
    if (isInContent(focusWidget()))
        return focusWidget();
    return theLastFocus && isInContent(theLastFocus) && theLastFocus->isVisibleTo(this)
        ? theLastFocus.data()
        : nullptr;
}

bool DocumentWindow::isInContent(const QWidget* widget) const
{
    return widget && centralWidget()->isAncestorOf(widget);
}

void DocumentWindow::showEvent(QShowEvent* event)
{
    if (!std::exchange(isPlaceKnown, true))
        WindowPlace::restore(*this);
    QMainWindow::showEvent(event);
    giveFocus();
    if (theRouter)
        theRouter->validateSoon();
}

void DocumentWindow::giveFocus()
{
    // Without a focus in the content the keyboard and most commands would reach nothing.
    if (focusWidget() || !content())
        return;
    QWidget* candidate = content();
    do {
        const QWidget* target = candidate->focusProxy() ? candidate->focusProxy() : candidate;
        if ((target->focusPolicy() & Qt::TabFocus) && target->isEnabled()
            && target->isVisibleTo(content()) && content()->isAncestorOf(target)) {
            candidate->setFocus();
            return;
        }
        candidate = candidate->nextInFocusChain();
    } while (candidate != content());
}

void DocumentWindow::askBeforeClosing(QObject* work, const ClosingQuestion& question)
{
    theWork.append({work, question});
}

void DocumentWindow::closeUnasked()
{
    const auto ended = std::exchange(theWork, {});
    close();
    // Behind it: what they have to say is for a window that stays.
    for (const auto& [work, question] : ended)
        delete work.data();
}

bool DocumentWindow::isAtWork() const
{
    return std::any_of(theWork.begin(), theWork.end(), [](const auto& work) { return work.first; });
}

void DocumentWindow::askToClose(std::function<void()> agreed)
{
    theAgreed = std::move(agreed);
    if (theQuestion && theQuestion->isVisible())
        return bringQuestionUp();
    theWork.removeIf([](const auto& work) { return !work.first; });
    const ClosingQuestion question = theWork.constFirst().second;
    auto* const alert = new Alert(QMessageBox::Warning, windowTitle(), question.text, this);
    alert->setTexts(question.text, question.consequence);
    alert->setEscapeButton(alert->addAnswer(tr("&Keep Open")));
    alert->addAnswer(question.answer, [this] { std::exchange(theAgreed, {})(); });
    theQuestion = alert;
    bringForward(); // active, it would pass the keyboard on to another dialog over it
    alert->comeUp();
    bringQuestionUp();
}

/// Whatever had the keyboard, as the window that the user quits from: it gets the answer.
void DocumentWindow::bringQuestionUp()
{
    theQuestion->raise();
    theQuestion->activateWindow();
}

void DocumentWindow::closeEvent(QCloseEvent* event)
{
    if (isAtWork()) {
        askToClose([this] { closeUnasked(); });
        return event->ignore();
    }
    QMainWindow::closeEvent(event);
    if (!event->isAccepted() || !isVisible())
        return; // a hidden window has no place worth remembering
    WindowPlace::save(*this);
    emit closed();
}

bool DocumentWindow::eventFilter(QObject* watched, QEvent* event)
{
    const auto type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return QMainWindow::eventFilter(watched, event);
    const auto* widget = qobject_cast<QWidget*>(watched);
    const bool taken
        = widget && widget->window() == this && takeDrag(*static_cast<QDropEvent*>(event));
    return taken || QMainWindow::eventFilter(watched, event);
}

bool DocumentWindow::takeDrag(QDropEvent& event)
{
    const QStringList paths = localFiles(event.mimeData());
    if (paths.isEmpty())
        return false;
    event.setDropAction(Qt::CopyAction);
    event.accept();
    if (event.type() == QEvent::Drop)
        emit filesDropped(paths);
    return true;
}

} // namespace tarnwick
