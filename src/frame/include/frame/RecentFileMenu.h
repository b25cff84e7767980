#pragma once

#include <QMenu>

namespace tarnwick {

class RecentFiles;

/// The context menu of one of the files opened last: opens it, or its source alone, or takes it off
/// the list. It destroys itself when it closes.
class RecentFileMenu : public QMenu
{
    Q_OBJECT

public:
    /// @param recentFiles borrowed, outlives the menu.
    RecentFileMenu(const QString& path, RecentFiles* recentFiles, QWidget* parent);

signals:
    void openWanted();
    void sourceWanted();
};

} // namespace tarnwick
