#include "OpenFailureAlert.h"

#include "MenuTitle.h"
#include "dialogs/InTurn.h"

#include <QApplication>
#include <QEvent>
#include <QFileInfo>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

#include <chrono>
#include <utility>

namespace tarnwick {

OpenFailureAlert* OpenFailureAlert::report(
    QWidget* parent, const QString& path, const QString& reason, OpenSource openSource)
{
    OpenFailureAlert* alert = current();
    if (!alert)
        alert = new OpenFailureAlert(parent);
    alert->add(path, reason, std::move(openSource));
    alert->showOnceItsWindowHasItsPlace();
    return alert;
}

void OpenFailureAlert::moveTo(QWidget* window)
{
    OpenFailureAlert* alert = current();
    if (!alert || alert->parentWidget() == window)
        return;
    alert->setParent(window, alert->windowFlags());
    alert->showOnceItsWindowHasItsPlace();
}

void OpenFailureAlert::leave(const QWidget* closing, QWidget* window)
{
    const OpenFailureAlert* alert = current();
    if (alert && window && alert->parentWidget() == closing)
        moveTo(window);
}

OpenFailureAlert* OpenFailureAlert::current()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        auto* alert = qobject_cast<OpenFailureAlert*>(widget);
        if (alert && (alert->isVisible() || alert->isWaiting))
            return alert;
    }
    return nullptr;
}

void OpenFailureAlert::showInFront()
{
    isWaiting = !isVisible() && waitsForTurn(this);
    if (isWaiting)
        return;
    show();
    raise();
    activateWindow();
}

void OpenFailureAlert::showEvent(QShowEvent* event)
{
    isWaiting = false;
    Alert::showEvent(event);
}

// Shown earlier, the alert would stand at the middle of where its window is not, and that window
// would take the keyboard from it when it comes.
void OpenFailureAlert::showOnceItsWindowHasItsPlace()
{
    QWindow* const window = parentWidget() ? parentWidget()->window()->windowHandle() : nullptr;
    if (!window || !window->isVisible() || window->isExposed())
        return showInFront();
    window->installEventFilter(this);
    if (std::exchange(isWaiting, true))
        return;
    // Minimized, or on another desktop, it does not come by itself.
    constexpr auto patience = std::chrono::seconds(1);
    QTimer::singleShot(patience, this, [this] {
        if (isWaiting)
            showInFront();
    });
}

bool OpenFailureAlert::eventFilter(QObject* watched, QEvent* event)
{
    auto* const window = qobject_cast<QWindow*>(watched);
    if (window && event->type() == QEvent::Expose && window->isExposed()) {
        window->removeEventFilter(this);
        const bool isItsWindow = parentWidget() && window == parentWidget()->windowHandle();
        if (isWaiting && isItsWindow)
            QTimer::singleShot(0, this, &OpenFailureAlert::showInFront);
    }
    return Alert::eventFilter(watched, event);
}

OpenFailureAlert::OpenFailureAlert(QWidget* parent)
    : Alert(QMessageBox::Warning, tr("Cannot Open"), QString(), parent, Blocking::isNothing)
{
    setEscapeButton(addAnswer(QMessageBox::Ok));
}

void OpenFailureAlert::add(const QString& path, const QString& reason, OpenSource openSource)
{
    const QString name = QFileInfo(path).fileName();
    theNames << (name.isEmpty() ? path : name);
    theReasons << reason;
    tellAll();
    if (openSource)
        theSources.append({theNames.constLast(), std::move(openSource)});
    offerSources();
}

/// One file's source opens at once; of several, which one is chosen from a menu.
void OpenFailureAlert::offerSources()
{
    if (theSources.isEmpty())
        return;
    const auto openAll = [this] {
        const QList<Source> sources = theSources;
        for (const Source& source : sources)
            source.open();
    };
    if (!theSourceButton)
        theSourceButton = addAnswer(tr("Open &Source"), openAll);
    if (theNames.size() == 1)
        return;
    delete theSourceButton->menu();
    auto* const menu = new QMenu(theSourceButton);
    for (qsizetype index = 0; index < theSources.size(); ++index)
        menu->addAction(menuTitle(index, theSources.at(index).name, *menu), this,
            [open = theSources.at(index).open] { open(); });
    if (theSources.size() > 1) {
        menu->addSeparator();
        menu->addAction(tr("&All %1").arg(theSources.size()), this, openAll);
    }
    // By its key it counts as clicked too, behind the menu, and would close the alert.
    disconnect(theSourceButton, &QPushButton::clicked, nullptr, nullptr);
    theSourceButton->setMenu(menu);
}

void OpenFailureAlert::tellAll()
{
    if (theNames.size() == 1) {
        setTexts(tr("\u201c%1\u201d could not be opened.").arg(theNames.constFirst()),
            theReasons.constFirst());
        return;
    }
    QStringList lines;
    for (qsizetype index = 0; index < theNames.size(); ++index)
        lines << tr("\u201c%1\u201d: %2").arg(theNames.at(index), theReasons.at(index));
    constexpr qsizetype shown = 8; // more would grow the alert over the screen
    setTexts(
        tr("%1 files could not be opened.").arg(theNames.size()), lines.mid(0, shown).join(u'\n'));
    setDetailedText(lines.size() > shown ? lines.join(u'\n') : QString());
}

} // namespace tarnwick
