#include "ObjectTable.h"

#include "ObjectTableModel.h"
#include "ObjectTableWords.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScopedValueRollback>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tarnwick {

ObjectTable::ObjectTable(QWidget* parent)
    : QWidget(parent)
    , theMaker(new ObjectRowsMaker(this))
    , theModel(new ObjectTableModel(this))
    , theField(new QLineEdit)
    , theMistake(new QLabel)
    , theView(new QTableView)
    , theStatus(new QLabel)
    , theStop(new QToolButton)
{
    layOut();
    setUpView();
    connectParts();
    tellCount();
}

void ObjectTable::layOut()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    theField->setObjectName(u"objectFilter"_s);
    theField->setPlaceholderText(tr("Filter: font, 17, v:2, size>1000"));
    theField->setToolTip(objectFilterHelp());
    theField->setClearButtonEnabled(true);
    theField->setAccessibleName(tr("Filter objects"));
    theField->setAccessibleDescription(theField->toolTip());
    theField->installEventFilter(this);
    layout->addWidget(theField);
    theMistake->setObjectName(u"objectFilterMistake"_s);
    theMistake->setTextFormat(Qt::PlainText);
    theMistake->setWordWrap(true);
    theMistake->hide();
    layout->addWidget(theMistake);
    layout->addWidget(theView, 1);

    auto* line = new QHBoxLayout;
    line->setSpacing(8);
    theStatus->setObjectName(u"objectCount"_s);
    theStatus->setTextFormat(Qt::PlainText);
    theStatus->setWordWrap(true);
    theStatus->setMinimumWidth(10);
    line->addWidget(theStatus, 1);
    theStop->setText(tr("Stop"));
    theStop->setAccessibleName(tr("Stop reading objects"));
    QSizePolicy policy = theStop->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // the table is not to move while rows are made
    theStop->setSizePolicy(policy);
    theStop->hide();
    line->addWidget(theStop);
    layout->addLayout(line);
}

void ObjectTable::setUpView()
{
    theView->setObjectName(u"objectTable"_s);
    theView->setAccessibleName(tr("Objects of the stored file"));
    theView->setModel(theModel);
    theView->setSelectionBehavior(QAbstractItemView::SelectRows);
    theView->setSelectionMode(QAbstractItemView::SingleSelection);
    theView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    theView->setTabKeyNavigation(false);
    theView->setWordWrap(false);
    theView->setShowGrid(false);
    theView->setAlternatingRowColors(true);
    theView->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    theView->setContextMenuPolicy(Qt::CustomContextMenu);
    theView->installEventFilter(this);
    constexpr int margin = 12;
    QHeaderView* const rows = theView->verticalHeader();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(theView->fontMetrics().height() + margin / 2);
    rows->hide();
    QHeaderView* const columns = theView->horizontalHeader();
    columns->setHighlightSections(false);
    columns->setStretchLastSection(true);
    columns->setSectionsClickable(true);
    columns->setSortIndicatorShown(true);
    columns->setSortIndicator(static_cast<int>(theOrder.column), Qt::AscendingOrder);
    for (int column = 0; column < objectColumnCount; ++column) {
        const int text = theView->fontMetrics().horizontalAdvance(
            columnSample(static_cast<ObjectColumn>(column)));
        theView->setColumnWidth(column, std::max(text + margin, columns->sectionSizeHint(column)));
    }
}

void ObjectTable::connectParts()
{
    connect(theField, &QLineEdit::textChanged, this, &ObjectTable::readFilter);
    connect(theStop, &QToolButton::clicked, theMaker, &ObjectRowsMaker::stop);
    connect(theMaker, &ObjectRowsMaker::progressed, this, &ObjectTable::tellProgress);
    connect(theMaker, &ObjectRowsMaker::finished, this, &ObjectTable::takeRows);
    connect(theMaker, &ObjectRowsMaker::factsFinished, this, [this] {
        theModel->setFacts(theMaker->facts());
        if (!isMaking())
            tellCount();
    });
    connect(theView->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
        [this](int column, Qt::SortOrder order) {
            theOrder = {static_cast<ObjectColumn>(column), order == Qt::DescendingOrder};
            make();
        });
    connect(theView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        [this](const QItemSelection& selected) {
            const auto object = theModel->objectAt(selected.indexes().value(0));
            if (!object || theIsSelecting)
                return;
            theCurrent = object;
            theUnlisted.reset();
            tellChosen(*object);
        });
    connect(theView, &QTableView::activated, this, [this](const QModelIndex& index) {
        if (const auto object = theModel->objectAt(index))
            tellWanted(*object);
    });
    connect(theView, &QTableView::customContextMenuRequested, this, &ObjectTable::openMenu);
    connect(theModel, &ObjectTableModel::rowsInserted, this, [this] {
        if (!theView->selectionModel()->hasSelection())
            selectCurrent();
    });
}

void ObjectTable::setSource(std::shared_ptr<const SourceText> source, const QString& reason)
{
    theModel->clear();
    theMaker->setSource(std::move(source));
    theReason = reason;
    theTableFailure.clear();
    theCurrent.reset();
    theUnlisted.reset();
    theStop->hide();
    tellCount();
    make();
}

void ObjectTable::setTabled(std::shared_ptr<const TabledObjects> tabled, const QString& failure)
{
    theTableFailure = failure;
    if (source())
        theMaker->setTabled(std::move(tabled));
}

void ObjectTable::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (areRowsOld)
        make();
}

void ObjectTable::make()
{
    areRowsOld = !isVisible();
    if (!source() || !isVisible())
        return;
    theMaker->make(theFilter, theOrder);
    emit tableWanted();
}

void ObjectTable::tellChosen(std::size_t row)
{
    const ObjectFacts& facts = theModel->facts();
    if (facts.isListed(row))
        emit chosen(row);
    else
        emit unlistedChosen(static_cast<int>(facts.number(row)));
}

void ObjectTable::tellWanted(std::size_t row)
{
    const ObjectFacts& facts = theModel->facts();
    if (facts.isListed(row))
        emit wanted(row);
    else
        emit unlistedWanted(static_cast<int>(facts.number(row)));
}

// --- Filter --------------------------------------------------------------------------------------

void ObjectTable::editFilter()
{
    theField->setFocus(Qt::ShortcutFocusReason);
    theField->selectAll();
}

void ObjectTable::readFilter()
{
    const QByteArray text = theField->text().toUtf8();
    const ObjectFilterReading reading
        = readObjectFilter({text.data(), static_cast<std::size_t>(text.size())});
    QStringList mistakes;
    for (const std::string& mistake : reading.mistakes)
        mistakes.append(u"“"_s % QString::fromStdString(mistake) % u"”"_s);
    theMistake->setText(tr("Not understood and left out: %1").arg(mistakes.join(u", "_s)));
    theMistake->setVisible(!mistakes.isEmpty());
    if (reading.filter == theFilter)
        return;
    theFilter = reading.filter;
    make();
}

bool ObjectTable::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        if (watched == theField ? handleFilterKey(key->key()) : beginFilter(*key))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

/// What is typed in the table goes on in the filter. The view's own search would look at half a
/// million rows within the key press.
bool ObjectTable::beginFilter(const QKeyEvent& key)
{
    constexpr auto others = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const QString text = key.text().trimmed();
    if (text.isEmpty() || !text.front().isPrint() || key.modifiers().testAnyFlags(others))
        return false;
    editFilter();
    theField->insert(text);
    return true;
}

bool ObjectTable::handleFilterKey(int key)
{
    if (key == Qt::Key_Escape && !theField->text().isEmpty()) {
        theField->clear();
        return true;
    }
    if (key != Qt::Key_Down && key != Qt::Key_Return && key != Qt::Key_Enter)
        return false;
    theView->setFocus(Qt::OtherFocusReason);
    if (!theView->selectionModel()->hasSelection() && theModel->rowCount() > 0)
        theView->selectRow(0);
    return true;
}

// --- Rows ----------------------------------------------------------------------------------------

void ObjectTable::takeRows(ObjectRowsMaker::Outcome outcome)
{
    theStop->hide();
    switch (outcome) {
    case ObjectRowsMaker::Outcome::isMade:
        theModel->setRows(theMaker->facts(), theMaker->rows().shown);
        selectCurrent();
        tellCount();
        break;
    case ObjectRowsMaker::Outcome::isStopped:
        tellCount(tr("stopped, the rows are those of before"));
        break;
    case ObjectRowsMaker::Outcome::isOutOfMemory:
        tellCount(tr("not enough memory, the rows are those of before"));
        break;
    }
    emit settled();
}

void ObjectTable::tellProgress(
    ObjectRowsMaker::Step step, quint64 done, quint64 total, bool isWaitedFor)
{
    const QString percent = QString::number(total > 0 ? 100 * done / total : 0);
    if (!isWaitedFor)
        return tellMeanwhile(learningText(step).arg(percent));
    theStatus->setText(waitingText(step).arg(percent));
    theStop->show();
}

/// @param remark on what nobody waits for.
void ObjectTable::tellMeanwhile(const QString& remark)
{
    tellCount(remark);
    theStop->show();
}

/// @param remark what else is to be said, if anything.
void ObjectTable::tellCount(const QString& remark)
{
    QString text = source() ? countText(theMaker->rows()) : theReason;
    if (source() && !theTableFailure.isEmpty())
        text += u". "_s % theTableFailure;
    theStatus->setText(remark.isEmpty() ? text : text % u" ("_s % remark % u')');
    if (remark.isEmpty())
        theStop->hide();
}

void ObjectTable::setCurrent(std::optional<std::size_t> object)
{
    theUnlisted.reset();
    if (object == theCurrent)
        return;
    theCurrent = object;
    selectCurrent();
}

void ObjectTable::setCurrentUnlisted(int number)
{
    theCurrent.reset();
    theUnlisted = number;
    selectCurrent();
}

void ObjectTable::selectCurrent()
{
    const QScopedValueRollback selecting(theIsSelecting, true);
    const std::shared_ptr<const TabledObjects>& tabled = theModel->facts().tabled;
    if (const auto place = theUnlisted && tabled ? tabled->find(*theUnlisted) : std::nullopt)
        theCurrent = theModel->facts().catalog().size() + *place;
    const QModelIndex row = theCurrent ? theModel->rowOf(*theCurrent) : QModelIndex();
    if (row.isValid())
        theView->setCurrentIndex(row);
    else
        theView->clearSelection();
}

// --- Commands ------------------------------------------------------------------------------------

bool ObjectTable::validateCommand(const QString& command) const
{
    return command != "copy"_L1 || theView->selectionModel()->hasSelection();
}

void ObjectTable::copy()
{
    const QModelIndexList rows = theView->selectionModel()->selectedRows();
    if (!rows.isEmpty())
        QGuiApplication::clipboard()->setText(theModel->rowText(rows.first().row()));
}

/// What the header does for the mouse is here for the keyboard too.
void ObjectTable::openMenu(const QPoint& place)
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto object = theModel->objectAt(theView->currentIndex());
    if (object && theView->selectionModel()->hasSelection()) {
        menu->addAction(tr("&Go to Object"), this, [this, object] { tellWanted(*object); });
        const std::int64_t number = theModel->facts().number(*object);
        if (number != trailerNumber)
            menu->addAction(tr("Show in &Flattened PDF"), this,
                [this, number] { emit flattenedWanted(number); });
        menu->addAction(tr("&Copy Row"), this, &ObjectTable::copy);
        menu->addSeparator();
    }
    QHeaderView* const header = theView->horizontalHeader();
    QMenu* const sort = menu->addMenu(tr("&Sort by"));
    for (int column = 0; column < objectColumnCount; ++column) {
        const bool isSorted = header->sortIndicatorSection() == column;
        const bool turns = isSorted && header->sortIndicatorOrder() == Qt::AscendingOrder;
        QAction* const action = sort->addAction(
            theModel->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), this,
            [header, column, turns] {
                header->setSortIndicator(column, turns ? Qt::DescendingOrder : Qt::AscendingOrder);
            });
        action->setCheckable(true);
        action->setChecked(isSorted);
    }
    menu->popup(theView->viewport()->mapToGlobal(place));
}

} // namespace tarnwick
