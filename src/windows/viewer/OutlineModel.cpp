#include "OutlineModel.h"

#include <algorithm>

namespace tarnwick {

void OutlineModel::setEntries(const QList<PDFOutlineEntry>& entries)
{
    beginResetModel();
    theEntries = entries;
    theNodes = QList<Node>(entries.size());
    theRoots.clear();
    QList<qsizetype> ancestors; // of the next entry, outermost first
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const qsizetype depth = std::clamp<qsizetype>(entries.at(i).depth, 0, ancestors.size());
        ancestors.resize(depth);
        Node& node = theNodes[i];
        node.parent = ancestors.isEmpty() ? -1 : ancestors.constLast();
        QList<qsizetype>& siblings = node.parent < 0 ? theRoots : theNodes[node.parent].children;
        node.row = static_cast<int>(siblings.size());
        siblings.append(i);
        ancestors.append(i);
    }
    endResetModel();
}

const PDFOutlineEntry& OutlineModel::entry(const QModelIndex& index) const
{
    return theEntries.at(nodeOf(index));
}

const QList<qsizetype>& OutlineModel::childrenOf(const QModelIndex& parent) const
{
    return parent.isValid() ? theNodes.at(nodeOf(parent)).children : theRoots;
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex& parent) const
{
    if (column != 0 || row < 0 || row >= rowCount(parent))
        return {};
    return createIndex(row, column, static_cast<quintptr>(childrenOf(parent).at(row)));
}

QModelIndex OutlineModel::parent(const QModelIndex& child) const
{
    const qsizetype parent = child.isValid() ? theNodes.at(nodeOf(child)).parent : -1;
    return parent < 0 ? QModelIndex()
                      : createIndex(theNodes.at(parent).row, 0, static_cast<quintptr>(parent));
}

int OutlineModel::rowCount(const QModelIndex& parent) const
{
    return static_cast<int>(childrenOf(parent).size());
}

int OutlineModel::columnCount(const QModelIndex&) const
{
    return 1;
}

QVariant OutlineModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    return entry(index).title.simplified();
}

Qt::ItemFlags OutlineModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    // An entry that leads nowhere still heads those below it.
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

} // namespace tarnwick
