#include "StartView.h"

#include "frame/DocumentWindow.h"
#include "frame/RecentFiles.h"
#include "ui_StartWindow.h"

#include <QApplication>
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

/// Another program may have opened files since this window was last in front.
bool StartView::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        theRecentFiles->refresh();
    return QWidget::event(event);
}

bool StartView::eventFilter(QObject* watched, QEvent* event)
{
    const QListWidgetItem* item = ui->recentList->currentItem();
    if (event->type() == QEvent::KeyPress && item
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        theRecentFiles->remove(item->data(pathRole).toString());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tarnwick
