#pragma once

#include <QWidget>

#include <memory>

class QContextMenuEvent;
class QListWidgetItem;
namespace Ui {
class StartWindow;
}

namespace tarnwick {

class RecentFiles;

/// The start window's content: what to do while no file is open. Files can be chosen in a dialog,
/// from those opened last, or dropped on the window.
class StartView : public QWidget
{
    Q_OBJECT

public:
    /// @param recentFiles borrowed, outlives the view.
    explicit StartView(RecentFiles* recentFiles, QWidget* parent = nullptr);
    ~StartView() override;

signals:
    /// The user wants to open one of the files opened last. @param path absolute.
    void fileChosen(const QString& path);
    /// The user wants to see the source of one of them.
    void sourceChosen(const QString& path);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fillList();
    void choose(const QListWidgetItem* item);
    void openContextMenu(const QContextMenuEvent& event);

    std::unique_ptr<Ui::StartWindow> ui;
    RecentFiles* theRecentFiles;
};

} // namespace tarnwick
