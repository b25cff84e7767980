#pragma once

#include "VersionRow.h"

#include <QAbstractTableModel>

namespace tarnwick {

class VersionReading;

enum class VersionColumn
{
    isNumber,
    isSave,
    isDate,
    isBytesAdded,
    isPages,
    isObjectsAdded,
    isReplaced,
    isFreed,
    isSignatures,
    isNotes,
    isProducer,
    isRange,
    isHash,
    isStartxref,
    isPrev,
};
inline constexpr int versionColumnCount = 15;

/// The versions of a file as a table shows them, the latest first. What a cell says is made when it
/// shows.
class VersionTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// @param reading borrowed; the model follows it.
    VersionTableModel(const VersionReading* reading, QObject* parent);

    /// The place of a row's version in VersionReading::rows().
    int versionOf(int row) const { return rowCount() - 1 - row; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// What the cells of a row say, separated by tabs, hashes as a whole.
    QString rowText(int row) const;

private:
    QString text(const VersionRow& row, VersionColumn column) const;
    QString toolTip(const VersionRow& row, VersionColumn column) const;

    const VersionReading* theReading;
    int theRowCount = 0;
};

} // namespace tarnwick
