#include "StartView.h"

#include "frame/DocumentWindow.h"
#include "frame/RecentFileMenu.h"
#include "frame/RecentFiles.h"
#include "ui_StartWindow.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr int pathRole = Qt::UserRole;

} // namespace

StartView::StartView(RecentFiles* recentFiles, QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::StartWindow>())
    , theRecentFiles(recentFiles)
{
    ui->setupUi(this);
    ui->iconLabel->setPixmap(QApplication::windowIcon().pixmap(QSize(64, 64), devicePixelRatioF()));
    ui->recentList->installEventFilter(this);
    connect(ui->openButton, &QAbstractButton::clicked, this,
        [this] { DocumentWindow::send(this, u"openDocument"_s); });
    connect(ui->clearButton, &QAbstractButton::clicked, recentFiles, &RecentFiles::clear);
    connect(ui->recentList, &QListWidget::itemActivated, this, &StartView::choose);
    // Queued: the entry that is being opened must outlive its own signal.
    connect(recentFiles, &RecentFiles::changed, this, &StartView::fillList, Qt::QueuedConnection);
    fillList();
}

StartView::~StartView() = default;

void StartView::fillList()
{
    ui->recentList->clear();
    const QStringList paths = theRecentFiles->paths();
    for (const QString& path : paths) {
        auto* item = new QListWidgetItem(RecentFiles::title(path), ui->recentList);
        item->setData(pathRole, path);
        item->setToolTip(path);
    }
    if (!paths.isEmpty())
        ui->recentList->setCurrentRow(0);
    ui->recentBox->setVisible(!paths.isEmpty());
}

void StartView::choose(const QListWidgetItem* item)
{
    emit fileChosen(item->data(pathRole).toString());
}

/// At the entry under the mouse, or at the one that the keyboard has chosen.
void StartView::openContextMenu(const QContextMenuEvent& event)
{
    QListWidget* const list = ui->recentList;
    const bool isByMouse = event.reason() == QContextMenuEvent::Mouse;
    const QListWidgetItem* const item = isByMouse
        ? list->itemAt(list->viewport()->mapFromGlobal(event.globalPos()))
        : list->currentItem();
    if (!item)
        return;
    const QString path = item->data(pathRole).toString();
    auto* const menu = new RecentFileMenu(path, theRecentFiles, this);
    connect(menu, &RecentFileMenu::openWanted, this, [this, path] { emit fileChosen(path); });
    connect(menu, &RecentFileMenu::sourceWanted, this, [this, path] { emit sourceChosen(path); });
    menu->popup(isByMouse ? event.globalPos()
                          : list->viewport()->mapToGlobal(list->visualItemRect(item).center()));
}

/// Another program may have opened files since this window was last in front.
bool StartView::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        theRecentFiles->refresh();
    return QWidget::event(event);
}

bool StartView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ContextMenu) {
        openContextMenu(*static_cast<QContextMenuEvent*>(event));
        return true;
    }
    const QListWidgetItem* item = ui->recentList->currentItem();
    if (event->type() == QEvent::KeyPress && item
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        theRecentFiles->remove(item->data(pathRole).toString());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tarnwick
