#include "FrameMenus.h"

#include "frame/DocumentController.h"
#include "frame/DocumentWindow.h"
#include "frame/RecentFiles.h"

#include <QActionGroup>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr int longestTitle = 640; // pixels at 96 dpi: wider menus leave small screens

/// A title as a menu shows it: numbered for the keyboard, no wider than a menu should be.
QString menuTitle(qsizetype index, const QString& title, const QMenu& menu)
{
    QString text = menu.fontMetrics().elidedText(title, Qt::ElideMiddle, longestTitle);
    text.replace(u'&', "&&"_L1);
    const QString number = QString::number(index + 1);
    const QString mnemonic = index < 9 ? u"&"_s : QString();
    return mnemonic + number + u' ' + text;
}

void fillRecent(QMenu& menu, DocumentWindow& window, DocumentController& controller)
{
    menu.clear();
    controller.recentFiles()->refresh();
    const QStringList paths = controller.recentFiles()->paths();
    for (qsizetype index = 0; index < paths.size(); ++index) {
        const QString path = paths.at(index);
        QAction* action = menu.addAction(menuTitle(index, RecentFiles::title(path), menu));
        action->setStatusTip(path);
        QObject::connect(action, &QAction::triggered, &controller,
            [&controller, &window, path] { controller.openFiles({path}, &window); });
    }
    menu.addSeparator();
    QAction* clear = menu.addAction(QMenu::tr("&Clear Recent Files"));
    clear->setEnabled(!paths.isEmpty());
    QObject::connect(clear, &QAction::triggered, controller.recentFiles(), &RecentFiles::clear);
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
    }
    if (auto* menu = window.findChild<QMenu*>(u"windowMenu"_s)) {
        const QList<QAction*> fixed = menu->actions();
        QObject::connect(menu, &QMenu::aboutToShow, menu,
            [menu, fixed, &window, &controller] { fillWindows(*menu, fixed, window, controller); });
    }
}

} // namespace tarnwick
