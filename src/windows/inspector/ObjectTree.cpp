#include "ObjectTree.h"

#include "ObjectTreeModel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

ObjectTree::ObjectTree(QWidget* parent)
    : QWidget(parent)
    , theModel(new ObjectTreeModel(this))
    , theView(new QTreeView)
    , theStatus(new QLabel)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    theView->setObjectName(u"objectTree"_s);
    theView->setAccessibleName(tr("Objects of the stored file from the trailer down"));
    theView->setModel(theModel);
    theView->setUniformRowHeights(true);
    theView->installEventFilter(this);
    theView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    theView->setExpandsOnDoubleClick(false);
    theView->header()->resizeSection(0, theView->fontMetrics().horizontalAdvance(u'0') * 28);
    layout->addWidget(theView, 1);
    theStatus->setObjectName(u"objectTreeStatus"_s);
    theStatus->setTextFormat(Qt::PlainText);
    theStatus->setWordWrap(true);
    layout->addWidget(theStatus);

    connect(theView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        [this](const QItemSelection& selected) {
            if (const auto object = theModel->objectAt(selected.indexes().value(0)))
                emit chosen(*object);
        });
    connect(theView, &QTreeView::activated, this, [this](const QModelIndex& index) {
        if (const auto object = theModel->objectAt(index))
            emit wanted(*object);
    });
    connect(theModel, &ObjectTreeModel::found, this, [this](ObjectTreeModel::Beginning beginning) {
        theStatus->setVisible(beginning != ObjectTreeModel::Beginning::isThere);
        theStatus->setText(beginning == ObjectTreeModel::Beginning::isMissing
                ? tr("The file has neither a trailer nor a catalog to begin with")
                : tr("There is not enough memory to show this"));
        theView->expand(theModel->index(0, 0));
    });
}

void ObjectTree::setSource(std::shared_ptr<const SourceText> source, const QString& reason)
{
    theModel->setSource(nullptr);
    theSource = std::move(source);
    theStatus->setText(theSource ? tr("Looking for the trailer…") : reason);
    theStatus->setVisible(!theStatus->text().isEmpty());
    if (isVisible())
        look();
}

void ObjectTree::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    look();
}

/// The key that opens all that is below a row opens the row: level by level, as there may be no
/// end.
bool ObjectTree::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress
        || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Asterisk)
        return QWidget::eventFilter(watched, event);
    theView->expand(theView->currentIndex());
    return true;
}

void ObjectTree::look()
{
    if (theSource && theModel->source() != theSource)
        theModel->setSource(theSource);
}

bool ObjectTree::validateCommand(const QString& command) const
{
    return command != "copy"_L1 || theView->selectionModel()->hasSelection();
}

void ObjectTree::copy()
{
    QStringList cells;
    for (const QModelIndex& cell : theView->selectionModel()->selectedIndexes())
        cells.append(cell.data().toString());
    QGuiApplication::clipboard()->setText(cells.join(u'\t'));
}

} // namespace tarnwick
