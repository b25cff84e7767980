#include "MenuContext.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

namespace tarnwick {

namespace {

bool asksForContext(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Menu
        || (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

void leaveMenus()
{
    while (QWidget* const popup = QApplication::activePopupWidget())
        popup->hide();
}

} // namespace

MenuContext::MenuContext(QMenu* menu, MakeMenu make)
    : QObject(menu)
    , theMenu(menu)
    , makeMenu(std::move(make))
{
    menu->installEventFilter(this);
}

bool MenuContext::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        return takeMouse(*static_cast<QMouseEvent*>(event));
    case QEvent::KeyPress:
        if (!asksForContext(*static_cast<QKeyEvent*>(event)))
            break;
        if (const QAction* const entry = theMenu->activeAction()) {
            const QRect place = theMenu->actionGeometry(theMenu->activeAction());
            open(entry, theMenu->mapToGlobal(place.center()));
        }
        return true;
    case QEvent::ContextMenu:
        return true; // the button and the keys themselves have been taken
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

/// The other button would choose the entry as the first one does.
bool MenuContext::takeMouse(const QMouseEvent& event)
{
    if (event.button() != Qt::RightButton)
        return false;
    const QAction* const entry = theMenu->actionAt(event.position().toPoint());
    if (entry && event.type() == QEvent::MouseButtonRelease)
        open(entry, event.globalPosition().toPoint());
    return entry != nullptr;
}

void MenuContext::open(const QAction* entry, const QPoint& globalPlace)
{
    QMenu* const menu = makeMenu(*entry);
    if (!menu)
        return;
    connect(menu, &QMenu::triggered, this, &leaveMenus);
    menu->popup(globalPlace);
    menu->setActiveAction(menu->actions().constFirst());
}

} // namespace tarnwick
