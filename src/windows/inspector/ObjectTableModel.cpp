#include "ObjectTableModel.h"

#include "analysis/ObjectKind.h"
#include "analysis/ObjectSource.h"

#include <QLocale>
#include <QTimerEvent>

#include <algorithm>
#include <array>
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
    case ObjectColumn::isContainer:
        return ObjectTableModel::tr("In object stream");
    case ObjectColumn::isUses:
        return ObjectTableModel::tr("Used by");
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
    case ObjectColumn::isContainer:
        return ObjectTableModel::tr(
            "Number of the object stream that holds it, and its place there");
    case ObjectColumn::isUses:
        return ObjectTableModel::tr("How many references in the file name its number");
    case ObjectColumn::isState:
        return ObjectTableModel::tr("Whether it is in use, or what became of it");
    }
    return {};
}

bool isText(ObjectColumn column)
{
    return column == ObjectColumn::isKind || column == ObjectColumn::isContainer
        || column == ObjectColumn::isState;
}

/// A place in an object stream, from 0, in words where there are short ones.
QString ordinal(std::uint32_t index)
{
    static const std::array<QString, 10> words{ObjectTableModel::tr("first"),
        ObjectTableModel::tr("second"), ObjectTableModel::tr("third"),
        ObjectTableModel::tr("fourth"), ObjectTableModel::tr("fifth"),
        ObjectTableModel::tr("sixth"), ObjectTableModel::tr("seventh"),
        ObjectTableModel::tr("eighth"), ObjectTableModel::tr("ninth"),
        ObjectTableModel::tr("tenth")};
    return index < words.size() ? words[index]
                                : ObjectTableModel::tr("number %1").arg(counted(index + 1));
}

/// What became of an object, and when where that is known.
QString endingText(const QString& inVersion, const QString& alone, std::int64_t version)
{
    return version > 0 ? inVersion.arg(version) : alone;
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

void ObjectTableModel::setFacts(ObjectFacts facts)
{
    theFacts = std::move(facts);
    if (theRowCount > 0)
        emit dataChanged(index(0, 0), index(theRowCount - 1, objectColumnCount - 1));
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
    const bool isListed = theFacts.isListed(object);
    switch (column) {
    case ObjectColumn::isKind:
        return kindText(object);
    case ObjectColumn::isContainer:
        return containerText(object);
    case ObjectColumn::isState:
        return stateText(object);
    case ObjectColumn::isUses:
        if (!theFacts.connections || theFacts.number(object) == trailerNumber)
            return {};
        break;
    case ObjectColumn::isOffset:
        if (!isListed && theFacts.unlisted(object).container > 0)
            return {};
        break;
    case ObjectColumn::isSize:
        if (!isListed)
            return {};
        break;
    default:
        return QString::number(theFacts.value(object, column));
    }
    return counted(static_cast<std::size_t>(theFacts.value(object, column)));
}

QString ObjectTableModel::containerText(std::size_t object) const
{
    if (theFacts.isListed(object) || theFacts.unlisted(object).container == 0)
        return {};
    const TabledObjects::Unlisted& member = theFacts.unlisted(object);
    return tr("%1, %2").arg(member.container).arg(ordinal(member.index));
}

QString ObjectTableModel::stateText(std::size_t object) const
{
    switch (theFacts.standing(object)) {
    case ObjectStanding::isCurrent:
        return tr("Current");
    case ObjectStanding::isUnreachable:
        return tr("Unreachable");
    case ObjectStanding::isUnreadable:
        return tr("Unreadable");
    case ObjectStanding::isDuplicate:
        return tr("Duplicate in version %1").arg(theFacts.endingVersion(object));
    case ObjectStanding::isFreed:
        return endingText(tr("Freed in version %1"), tr("Freed"), theFacts.endingVersion(object));
    case ObjectStanding::isReplaced:
        return endingText(
            tr("Replaced in version %1"), tr("Replaced"), theFacts.endingVersion(object));
    }
    return {};
}

/// Before all kinds are known those that show are read, and of long objects only the beginning.
QString ObjectTableModel::kindText(std::size_t object) const
{
    if (theFacts.kinds || !theFacts.isListed(object))
        return QString::fromStdString(theFacts.kind(object));
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
    if (column == ObjectColumn::isOffset) {
        const QString offset
            = u"0x%1"_s.arg(static_cast<qulonglong>(theFacts.value(object, column)), 0, 16);
        return text(object, column).isEmpty() ? tr("Its object stream is at %1").arg(offset)
                                              : offset;
    }
    if (column != ObjectColumn::isState)
        return {};
    switch (theFacts.standing(object)) {
    case ObjectStanding::isDuplicate:
        return tr("Another object of this number follows in the same version");
    case ObjectStanding::isUnreachable:
        return tr("Nothing leads to it from the trailer");
    case ObjectStanding::isUnreadable:
        return tr("The file's table leads to it, but it is not there");
    default:
        return {};
    }
}

QString ObjectTableModel::rowText(int row) const
{
    QStringList cells;
    for (int column = 0; column < objectColumnCount; ++column)
        cells.append(data(index(row, column), Qt::DisplayRole).toString());
    return cells.join(u'\t');
}

} // namespace tarnwick
