#pragma once

#include "ObjectRows.h"

#include <QAbstractTableModel>
#include <QBasicTimer>

#include <optional>

namespace tarnwick {

/// The rows of the table of objects as a view shows them.
///
/// What a cell says is read from the file when it shows. The view hears of many rows in portions,
/// from the event loop, since it keeps a little for each and would hold it up.
class ObjectTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// Shows other rows. @param facts of the source that they are of; shared.
    void setRows(ObjectFacts facts, std::vector<std::uint32_t> rows);
    void clear() { setRows({}, {}); }
    /// More has become known of the same rows.
    void setFacts(ObjectFacts facts);
    const ObjectFacts& facts() const { return theFacts; }

    /// The object of a row, as ObjectFacts has it; nothing for an invalid index.
    std::optional<std::size_t> objectAt(const QModelIndex& index) const;
    /// Where an object's row is; invalid where it has none, or none yet that the view has heard of.
    QModelIndex rowOf(std::size_t object) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// What the cells of a row say, separated by tabs.
    QString rowText(int row) const;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void showRows(std::size_t count);
    QString text(std::size_t object, ObjectColumn column) const;
    QString kindText(std::size_t object) const;
    QString stateText(std::size_t object) const;
    QString containerText(std::size_t object) const;
    QString toolTip(std::size_t object, ObjectColumn column) const;

    ObjectFacts theFacts;
    std::vector<std::uint32_t> theRows;
    int theRowCount = 0; ///< that the view knows of
    QBasicTimer theTimer;
};

} // namespace tarnwick
