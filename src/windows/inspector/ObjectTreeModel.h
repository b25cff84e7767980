#pragma once

#include "ObjectChildren.h"
#include "analysis/SourceText.h"
#include "work/Work.h"

#include <QAbstractItemModel>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

/// The objects of a document as they refer to each other, from the trailer down. What an object
/// refers to is read in a thread when somebody opens it.
class ObjectTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit ObjectTreeModel(QObject* parent);
    ~ObjectTreeModel() override;

    /// Looks for the trailer that a source begins with; found() follows. @param source scanned;
    /// null for none.
    void setSource(std::shared_ptr<const SourceText> source);
    const std::shared_ptr<const SourceText>& source() const { return theSource; }

    /// The object that a row leads to, by its place in the scan; nothing where there is none.
    std::optional<std::size_t> objectAt(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    enum class Beginning
    {
        isThere,
        isMissing, ///< neither a trailer nor a catalog
        isOutOfMemory,
    };

signals:
    /// What there is of what a document begins with.
    void found(tarnwick::ObjectTreeModel::Beginning beginning);
    /// What a row refers to has been read, or could not be for want of memory.
    void opened(const QModelIndex& index, bool isRead);

private:
    struct Node;
    using Nodes = std::vector<std::unique_ptr<Node>>;

    Node* nodeOf(const QModelIndex& index) const;
    QModelIndex indexOf(const Node& node) const;
    void begin(std::size_t start);
    void readNext();
    void take(Node& node, std::optional<ObjectChildren> children);
    static bool isAbove(const Node& node, std::size_t object);
    QString objectText(const Node& node) const;
    QString toolTip(const Node& node) const;

    std::shared_ptr<const SourceText> theSource;
    std::int64_t theVersion = 0; ///< of the trailer
    std::unique_ptr<Node> theRoot; ///< above the one row that is there at first
    Work theSearch;
    std::deque<Node*> theWaiting; ///< to be read one after the other, however many are opened
    Work theReading;
};

} // namespace tarnwick
