#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QString>

#include <cstddef>
#include <optional>

namespace tarnwick {

/// A place in a file and what is to be said of it.
struct PlaceRow
{
    std::optional<std::size_t> offset; ///< in the file; nothing for what has no place
    QString where; ///< short: the object, the version
    QString text; ///< one line
    std::optional<int> page; ///< from 0, where there is no offset but a page
};

/// Places as rows: where, offset, text.
class PlaceRows : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        isWhere,
        isOffset,
        isText,
        isEnd,
    };

    using QAbstractTableModel::QAbstractTableModel;

    void setRows(QList<PlaceRow> rows);
    const QList<PlaceRow>& rows() const { return theRows; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QList<PlaceRow> theRows;
};

} // namespace tarnwick
