#include "FrameMenus.h"

#include "MenuContext.h"
#include "MenuTitle.h"
#include "frame/DocumentController.h"
#include "frame/DocumentWindow.h"
#include "frame/RecentFileMenu.h"
#include "frame/RecentFiles.h"

#include <QActionGroup>
#include <QMenu>

#include <functional>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

using Open = std::function<void(const QString& path)>;

void addFiles(QMenu& menu, const QStringList& paths, const Open& open)
{
    for (qsizetype index = 0; index < paths.size(); ++index) {
        const QString path = paths.at(index);
        QAction* action = menu.addAction(menuTitle(index, RecentFiles::title(path), menu));
        action->setStatusTip(path);
        action->setData(path);
        QObject::connect(action, &QAction::triggered, &menu, [open, path] { open(path); });
    }
}

void fillRecent(QMenu& menu, DocumentWindow& window, DocumentController& controller)
{
    menu.clear();
    qDeleteAll(menu.findChildren<QMenu*>());
    controller.recentFiles()->refresh();
    const QStringList paths = controller.recentFiles()->paths();
    addFiles(menu, paths, [&](const QString& path) { controller.openFiles({path}, &window); });
    menu.addSeparator();
    QMenu* const sources = menu.addMenu(QMenu::tr("Open &Source of"));
    addFiles(
        *sources, paths, [&](const QString& path) { controller.openSources({path}, &window); });
    sources->setEnabled(!paths.isEmpty());
    QAction* clear = menu.addAction(QMenu::tr("&Clear Recent Files"));
    clear->setEnabled(!paths.isEmpty());
    QObject::connect(clear, &QAction::triggered, controller.recentFiles(), &RecentFiles::clear);
}

QMenu* recentFileMenu(
    const QAction& entry, QMenu* menu, DocumentWindow& window, DocumentController& controller)
{
    const QString path = entry.data().toString();
    if (path.isEmpty())
        return nullptr;
    auto* const context = new RecentFileMenu(path, controller.recentFiles(), menu);
    QObject::connect(context, &RecentFileMenu::openWanted, &controller,
        [&, path] { controller.openFiles({path}, &window); });
    QObject::connect(context, &RecentFileMenu::sourceWanted, &controller,
        [&, path] { controller.openSources({path}, &window); });
    return context;
}

void fillWindows(QMenu& menu, const QList<QAction*>& fixed, const DocumentWindow& window,
    DocumentController& controller)
{
    const QList<QAction*> old = menu.actions();
    for (QAction* action : old) {
        if (!fixed.contains(action))
            delete action;
    }
    const QList<DocumentWindow*> windows = controller.windows();
    for (qsizetype index = 0; index < windows.size(); ++index) {
        DocumentWindow* other = windows.at(index);
        QAction* action = menu.addAction(menuTitle(index, other->windowTitle(), menu));
        action->setCheckable(true);
        action->setChecked(other == &window);
        QObject::connect(action, &QAction::triggered, other, &DocumentWindow::bringUp);
    }
}

} // namespace

void FrameMenus::keepFilled(DocumentWindow& window, DocumentController& controller)
{
    if (auto* menu = window.findChild<QMenu*>(u"recentMenu"_s)) {
        const auto fill = [menu, &window, &controller] { fillRecent(*menu, window, controller); };
        QObject::connect(menu, &QMenu::aboutToShow, menu, fill);
        fill(); // an empty menu would not open
        new MenuContext(menu, [menu, &window, &controller](const QAction& entry) {
            return recentFileMenu(entry, menu, window, controller);
        });
    }
    if (auto* menu = window.findChild<QMenu*>(u"windowMenu"_s)) {
        const QList<QAction*> fixed = menu->actions();
        QObject::connect(menu, &QMenu::aboutToShow, menu,
            [menu, fixed, &window, &controller] { fillWindows(*menu, fixed, window, controller); });
    }
}

} // namespace tarnwick
