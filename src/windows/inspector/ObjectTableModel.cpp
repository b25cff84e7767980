#include "ObjectTableModel.h"

#include "analysis/ObjectKind.h"
#include "analysis/ObjectSource.h"

#include <QLocale>
#include <QTimerEvent>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr std::size_t rowsAtOnce = 20'000; // that a view takes within some milliseconds

QString counted(std::size_t number)
{
    return QLocale().toString(static_cast<qulonglong>(number));
}

QString title(ObjectColumn column)
{
    switch (column) {
    case ObjectColumn::isNumber:
        return ObjectTableModel::tr("Number");
    case ObjectColumn::isGeneration:
        return ObjectTableModel::tr("Gen.");
    case ObjectColumn::isVersion:
        return ObjectTableModel::tr("Version");
    case ObjectColumn::isKind:
        return ObjectTableModel::tr("Kind");
    case ObjectColumn::isOffset:
        return ObjectTableModel::tr("Offset");
    case ObjectColumn::isSize:
        return ObjectTableModel::tr("Size");
    case ObjectColumn::isState:
        return ObjectTableModel::tr("State");
    }
    return {};
}

QString meaning(ObjectColumn column)
{
    switch (column) {
    case ObjectColumn::isNumber:
        return ObjectTableModel::tr("Object number; trailers, which have none, stand under %1")
            .arg(trailerNumber);
    case ObjectColumn::isGeneration:
        return ObjectTableModel::tr("Generation number");
    case ObjectColumn::isVersion:
        return ObjectTableModel::tr("Saved version that the object is part of");
    case ObjectColumn::isKind:
        return ObjectTableModel::tr("What the object's dictionary says that it is");
    case ObjectColumn::isOffset:
        return ObjectTableModel::tr("Where it begins in the file, in bytes");
    case ObjectColumn::isSize:
        return ObjectTableModel::tr("Bytes in the file, its stream included");
    case ObjectColumn::isState:
        return ObjectTableModel::tr("Whether a later object of its number takes its place");
    }
    return {};
}

bool isText(ObjectColumn column)
{
    return column == ObjectColumn::isKind || column == ObjectColumn::isState;
}

} // namespace

void ObjectTableModel::setRows(ObjectFacts facts, std::vector<std::uint32_t> rows)
{
    beginResetModel();
    theFacts = std::move(facts);
    theRows = std::move(rows);
    theRowCount = static_cast<int>(std::min(theRows.size(), rowsAtOnce));
    endResetModel();
    if (theRows.size() > rowsAtOnce)
        theTimer.start(0, this);
    else
        theTimer.stop();
}

void ObjectTableModel::setKinds(std::shared_ptr<const ObjectKinds> kinds)
{
    theFacts.kinds = std::move(kinds);
    constexpr int column = static_cast<int>(ObjectColumn::isKind);
    if (theRowCount > 0)
        emit dataChanged(index(0, column), index(theRowCount - 1, column));
}

void ObjectTableModel::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != theTimer.timerId())
        return;
    showRows(static_cast<std::size_t>(theRowCount) + rowsAtOnce);
    if (static_cast<std::size_t>(theRowCount) == theRows.size())
        theTimer.stop();
}

void ObjectTableModel::showRows(std::size_t count)
{
    const int wanted = static_cast<int>(std::min(count, theRows.size()));
    if (wanted <= theRowCount)
        return;
    beginInsertRows({}, theRowCount, wanted - 1);
    theRowCount = wanted;
    endInsertRows();
}

std::optional<std::size_t> ObjectTableModel::objectAt(const QModelIndex& index) const
{
    if (!index.isValid() || index.row() >= theRowCount)
        return std::nullopt;
    return theRows[static_cast<std::size_t>(index.row())];
}

QModelIndex ObjectTableModel::rowOf(std::size_t object) const
{
    const auto found = std::find(theRows.begin(), theRows.end(), object);
    if (found == theRows.end())
        return {};
    const auto row = static_cast<int>(found - theRows.begin());
    return row < theRowCount ? index(row, 0) : QModelIndex();
}

int ObjectTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : theRowCount;
}

int ObjectTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : objectColumnCount;
}

QVariant ObjectTableModel::data(const QModelIndex& index, int role) const
{
    const std::optional<std::size_t> object = objectAt(index);
    if (!object)
        return {};
    const auto column = static_cast<ObjectColumn>(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return text(*object, column);
    case Qt::ToolTipRole:
        return toolTip(*object, column);
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter | (isText(column) ? Qt::AlignLeft : Qt::AlignRight));
    default:
        return {};
    }
}

QVariant ObjectTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    const auto column = static_cast<ObjectColumn>(section);
    switch (role) {
    case Qt::DisplayRole:
        return title(column);
    case Qt::ToolTipRole:
        return meaning(column);
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter | (isText(column) ? Qt::AlignLeft : Qt::AlignRight));
    default:
        return {};
    }
}

QString ObjectTableModel::text(std::size_t object, ObjectColumn column) const
{
    switch (column) {
    case ObjectColumn::isKind:
        return kindText(object);
    case ObjectColumn::isState:
        break;
    case ObjectColumn::isOffset:
    case ObjectColumn::isSize:
        return counted(static_cast<std::size_t>(theFacts.value(object, column)));
    default:
        return QString::number(theFacts.value(object, column));
    }
    switch (theFacts.standing(object)) {
    case ObjectStanding::isCurrent:
        return tr("Current");
    case ObjectStanding::isDuplicate:
        return tr("Duplicate in version %1").arg(theFacts.states->nextVersion(object));
    case ObjectStanding::isReplaced:
        return tr("Replaced in version %1").arg(theFacts.states->nextVersion(object));
    }
    return {};
}

/// Before all kinds are known those that show are read, and of long objects only the beginning.
QString ObjectTableModel::kindText(std::size_t object) const
{
    if (theFacts.kinds)
        return QString::fromStdString(theFacts.kinds->kind(object));
    constexpr std::size_t readAtOnce = 4096;
    const pdfObjectCatalog& catalog = theFacts.catalog();
    const pdfObject shown = catalog.object(object);
    if (shown.objType() == ObjectType::isTrailer)
        return QString::fromStdString(objectKind(catalog, shown));
    const ObjectSource source(catalog.bytes(), shown.range(), readAtOnce);
    return source.isCut() && source.name("Type").empty()
        ? u"\u2026"_s
        : QString::fromStdString(objectKind(catalog.bytes(), source));
}

QString ObjectTableModel::toolTip(std::size_t object, ObjectColumn column) const
{
    if (column == ObjectColumn::isOffset)
        return u"0x%1"_s.arg(static_cast<qulonglong>(theFacts.value(object, column)), 0, 16);
    if (column != ObjectColumn::isState || theFacts.standing(object) != ObjectStanding::isDuplicate)
        return {};
    return tr("Another object of this number follows in the same version");
}

QString ObjectTableModel::rowText(int row) const
{
    QStringList cells;
    for (int column = 0; column < objectColumnCount; ++column)
        cells.append(data(index(row, column), Qt::DisplayRole).toString());
    return cells.join(u'\t');
}

} // namespace tarnwick
