#include "PlaceRows.h"

#include <QLocale>

#include <utility>

namespace tarnwick {

void PlaceRows::setRows(QList<PlaceRow> rows)
{
    beginResetModel();
    theRows = std::move(rows);
    endResetModel();
}

int PlaceRows::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(theRows.size());
}

int PlaceRows::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int{isEnd};
}

QVariant PlaceRows::data(const QModelIndex& index, int role) const
{
    if (role == Qt::TextAlignmentRole && index.column() == isOffset)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    const bool isShown
        = role == Qt::DisplayRole || (role == Qt::ToolTipRole && index.column() == isText);
    if (!index.isValid() || !isShown)
        return {};
    const PlaceRow& row = theRows.at(index.row());
    switch (index.column()) {
    case isWhere:
        return row.where;
    case isOffset:
        return row.offset ? QLocale().toString(static_cast<qulonglong>(*row.offset)) : QString();
    default:
        return row.text;
    }
}

QVariant PlaceRows::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case isWhere:
        return tr("Where");
    case isOffset:
        return tr("Offset");
    default:
        return tr("What");
    }
}

} // namespace tarnwick
