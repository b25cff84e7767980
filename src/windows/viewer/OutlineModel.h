#pragma once

#include "pdf/PDFDocument.h"

#include <QAbstractItemModel>
#include <QList>

namespace tarnwick {

/// A document's outline as a tree of titles (ISO 32000-2, 12.3.3).
class OutlineModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    using QAbstractItemModel::QAbstractItemModel;

    /// @param entries depth first, as the document gives them. A depth that leaps by more than one
    ///   counts as one step.
    void setEntries(const QList<PDFOutlineEntry>& entries);
    /// The entry of a valid index.
    const PDFOutlineEntry& entry(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    struct Node
    {
        qsizetype parent = -1;
        int row = 0;
        QList<qsizetype> children;
    };
    const QList<qsizetype>& childrenOf(const QModelIndex& parent) const;
    static qsizetype nodeOf(const QModelIndex& index)
    {
        return static_cast<qsizetype>(index.internalId());
    }

    QList<PDFOutlineEntry> theEntries;
    QList<Node> theNodes;
    QList<qsizetype> theRoots;
};

} // namespace tarnwick
