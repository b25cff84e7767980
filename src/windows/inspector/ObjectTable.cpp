#include "ObjectTable.h"

#include "ObjectTableModel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QScopedValueRollback>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

QString counted(std::size_t number)
{
    return QLocale().toString(static_cast<qulonglong>(number));
}

QString filterHelp()
{
    return ObjectTable::tr("font: kinds with this word\n"
                           "type:font: this kind\n"
                           "17 or 17-20: object numbers\n"
                           "v:2: saved version, also v>1\n"
                           "gen:0, offset>5000, size>1000: numbers, with : < > <= >=\n"
                           "state:current, state:replaced, state:duplicate\n"
                           "Of several words all hold; of several numbers, types or states one.");
}

/// What a column usually holds, for its width.
QString sample(ObjectColumn column)
{
    switch (column) {
    case ObjectColumn::isGeneration:
    case ObjectColumn::isVersion:
        return u"999"_s;
    case ObjectColumn::isKind:
        return u"FontDescriptor"_s;
    case ObjectColumn::isOffset:
        return u"999,999,999"_s;
    case ObjectColumn::isSize:
        return u"9,999,999"_s;
    case ObjectColumn::isState:
        return u"Replaced in version 99"_s;
    default:
        return u"8000001"_s;
    }
}

} // namespace

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
    theField->setToolTip(filterHelp());
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
        const int text
            = theView->fontMetrics().horizontalAdvance(sample(static_cast<ObjectColumn>(column)));
        theView->setColumnWidth(column, std::max(text + margin, columns->sectionSizeHint(column)));
    }
}

void ObjectTable::connectParts()
{
    connect(theField, &QLineEdit::textChanged, this, &ObjectTable::readFilter);
    connect(theStop, &QToolButton::clicked, theMaker, &ObjectRowsMaker::stop);
    connect(theMaker, &ObjectRowsMaker::progressed, this, &ObjectTable::tellProgress);
    connect(theMaker, &ObjectRowsMaker::finished, this, &ObjectTable::takeRows);
    connect(theMaker, &ObjectRowsMaker::kindsFinished, this, [this] {
        theModel->setKinds(theMaker->facts().kinds);
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
            emit chosen(*object);
        });
    connect(theView, &QTableView::activated, this, [this](const QModelIndex& index) {
        if (const auto object = theModel->objectAt(index))
            emit wanted(*object);
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
    theCurrent.reset();
    theStop->hide();
    tellCount();
    make();
}

void ObjectTable::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (theRowsAreOld)
        make();
}

void ObjectTable::make()
{
    theRowsAreOld = !isVisible();
    if (source() && isVisible())
        theMaker->make(theFilter, theOrder);
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
    if (!isWaitedFor) {
        tellCount(tr("reading their kinds: %1 %").arg(percent));
    } else {
        theStatus->setText(step == ObjectRowsMaker::Step::isKinds
                ? tr("Reading the kinds of objects… %1 %").arg(percent)
                : tr("Looking at objects… %1 %").arg(percent));
    }
    theStop->show();
}

/// @param remark what else is to be said, if anything.
void ObjectTable::tellCount(const QString& remark)
{
    const ObjectRows& rows = theMaker->rows();
    QString text = tr("%1 objects").arg(counted(rows.total));
    if (!source())
        text = theReason;
    else if (rows.shown.size() < rows.matching)
        text = rows.matching < rows.total
            ? tr("%1 of %2 objects that match; narrow the filter")
                  .arg(counted(rows.shown.size()), counted(rows.matching))
            : tr("%1 of %2 objects; narrow the filter")
                  .arg(counted(rows.shown.size()), counted(rows.total));
    else if (rows.matching < rows.total)
        text = tr("%1 of %2 objects").arg(counted(rows.matching), counted(rows.total));
    theStatus->setText(remark.isEmpty() ? text : text % u" ("_s % remark % u')');
    if (remark.isEmpty())
        theStop->hide();
}

void ObjectTable::setCurrent(std::optional<std::size_t> object)
{
    if (object == theCurrent)
        return;
    theCurrent = object;
    selectCurrent();
}

void ObjectTable::selectCurrent()
{
    const QScopedValueRollback selecting(theIsSelecting, true);
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
        menu->addAction(tr("&Go to Object"), this, [this, object] { emit wanted(*object); });
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
