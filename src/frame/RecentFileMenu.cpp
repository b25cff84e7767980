#include "frame/RecentFileMenu.h"

#include "frame/RecentFiles.h"

namespace tarnwick {

RecentFileMenu::RecentFileMenu(const QString& path, RecentFiles* recentFiles, QWidget* parent)
    : QMenu(parent)
{
    addAction(tr("&Open"), this, &RecentFileMenu::openWanted);
    addAction(tr("Open &Source"), this, &RecentFileMenu::sourceWanted);
    addSeparator();
    addAction(
        tr("&Remove from List"), recentFiles, [recentFiles, path] { recentFiles->remove(path); });
    connect(this, &QMenu::aboutToHide, this, &QObject::deleteLater);
}

} // namespace tarnwick
