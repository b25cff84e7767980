#include "PlacePanel.h"

#include "CloseButton.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr int shownRows = 7;

} // namespace

PlacePanel::PlacePanel(QWidget* parent)
    : QFrame(parent)
    , theTitle(new QLabel)
    , theNote(new QLabel)
    , theView(new QTreeView)
    , theRows(new PlaceRows(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    auto* bar = new QHBoxLayout;
    bar->setSpacing(8);
    QFont bold = theTitle->font();
    bold.setBold(true);
    theTitle->setFont(bold);
    theTitle->setObjectName(u"placesTitle"_s);
    theTitle->setBuddy(theView);
    bar->addWidget(theTitle);
    theNote->setObjectName(u"placesNote"_s);
    theNote->setMinimumWidth(10);
    bar->addWidget(theNote, 1);
    auto* close = newCloseButton(tr("Close the list"));
    connect(close, &QToolButton::clicked, this, &PlacePanel::closeWanted);
    bar->addWidget(close);
    layout->addLayout(bar);

    theView->setObjectName(u"placesView"_s);
    theView->setModel(theRows);
    theView->setRootIsDecorated(false);
    theView->setUniformRowHeights(true);
    theView->setAllColumnsShowFocus(true);
    theView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    const QFontMetrics metrics = theView->fontMetrics();
    theView->setColumnWidth(PlaceRows::isWhere, metrics.horizontalAdvance(u'0') * 34);
    theView->setColumnWidth(PlaceRows::isOffset, metrics.horizontalAdvance(u'0') * 16);
    theView->setFixedHeight(metrics.height() * (shownRows + 2));
    connect(theView, &QTreeView::clicked, this, &PlacePanel::choose);
    layout->addWidget(theView);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void PlacePanel::showRows(const QString& title, QList<PlaceRow> rows, const QString& note)
{
    setTitle(title, note);
    theRows->setRows(std::move(rows));
    theView->setCurrentIndex(theRows->index(0, 0));
}

void PlacePanel::setTitle(const QString& title, const QString& note)
{
    theTitle->setText(title);
    theNote->setText(note);
    theNote->setToolTip(note);
    theView->setAccessibleName(title);
}

QString PlacePanel::title() const
{
    return theTitle->text();
}

void PlacePanel::edit()
{
    show();
    theView->setFocus(Qt::OtherFocusReason);
}

void PlacePanel::choose(const QModelIndex& index)
{
    if (index.isValid())
        emit chosen(theRows->rows().at(index.row()));
}

void PlacePanel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        emit closeWanted();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        choose(theView->currentIndex());
    else
        QFrame::keyPressEvent(event);
}

} // namespace tarnwick
