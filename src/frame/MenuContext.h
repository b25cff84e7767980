#pragma once

#include <QMenu>

#include <functional>

namespace tarnwick {

/// Gives the entries of a menu context menus of their own, by the right button and by the keys for
/// them, which menus do not have by themselves. Whoever chooses from one leaves all menus.
class MenuContext : public QObject
{
public:
    /// @returns the menu for an entry, or null: the entry has none.
    using MakeMenu = std::function<QMenu*(const QAction& entry)>;

    /// @param menu which owns this object.
    MenuContext(QMenu* menu, MakeMenu make);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool takeMouse(const QMouseEvent& event);
    void open(const QAction* entry, const QPoint& globalPlace);

    QMenu* theMenu;
    MakeMenu makeMenu;
};

} // namespace tarnwick
