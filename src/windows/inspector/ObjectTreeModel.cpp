#include "ObjectTreeModel.h"

#include "analysis/ObjectKind.h"
#include "analysis/SourceTree.h"
#include "work/WorkThreads.h"

#include <QLocale>

#include <new>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

QString counted(std::size_t number)
{
    return QLocale().toString(static_cast<qulonglong>(number));
}

enum Column
{
    isEntry,
    isObject,
    isCount,
};

} // namespace

struct ObjectTreeModel::Node
{
    enum class Kind
    {
        isObject,
        isLoop, ///< of an object that stands above
        isMissing,
        isRest, ///< for those that are not shown
    };

    Node* parent = nullptr;
    int row = 0;
    Kind kind = Kind::isObject;
    ObjectChild child;
    QString rest;
    bool isUnread = false; ///< what it refers to has not been asked for
    Nodes children;
};

ObjectTreeModel::ObjectTreeModel(QObject* parent)
    : QAbstractItemModel(parent)
    , theRoot(std::make_unique<Node>())
{
}

ObjectTreeModel::~ObjectTreeModel() = default;

void ObjectTreeModel::setSource(std::shared_ptr<const SourceText> source)
{
    theSearch.abandon();
    theReading.abandon();
    theWaiting.clear();
    beginResetModel();
    theRoot = std::make_unique<Node>();
    if (theSource)
        WorkThreads::run([held = std::exchange(theSource, nullptr)] {});
    theSource = std::move(source);
    endResetModel();
    if (!theSource)
        return;
    using Found = std::pair<Beginning, std::size_t>;
    theSearch.start(
        [source = theSource]() -> Found {
            try {
                const auto start = SourceTree(source->theCatalog()).start();
                return start ? Found(Beginning::isThere, start->index())
                             : Found(Beginning::isMissing, 0);
            } catch (const std::bad_alloc&) {
                return {Beginning::isOutOfMemory, 0};
            }
        },
        [this](const Found& result) {
            if (result.first == Beginning::isThere)
                begin(result.second);
            emit found(result.first);
        });
}

void ObjectTreeModel::begin(std::size_t start)
{
    const pdfObjectCatalog& catalog = theSource->theCatalog();
    const pdfObject object = catalog.object(start);
    theVersion = object.objVer();
    auto node = std::make_unique<Node>();
    node->parent = theRoot.get();
    node->child = {{}, object.objNo(), object.objGen(), start, objectKind(catalog, object), true};
    node->isUnread = true;
    beginInsertRows({}, 0, 0);
    theRoot->children.push_back(std::move(node));
    endInsertRows();
}

bool ObjectTreeModel::canFetchMore(const QModelIndex& parent) const
{
    return parent.isValid() && nodeOf(parent)->isUnread;
}

void ObjectTreeModel::fetchMore(const QModelIndex& parent)
{
    if (!canFetchMore(parent))
        return;
    Node* const node = nodeOf(parent);
    node->isUnread = false;
    theWaiting.push_back(node);
    if (!theReading.isRunning())
        readNext();
}

void ObjectTreeModel::readNext()
{
    if (theWaiting.empty())
        return;
    Node* const node = theWaiting.front();
    theWaiting.pop_front();
    theReading.start(
        [source = theSource, object = node->child.object.value(), version = theVersion](
            const std::stop_token& stop) -> std::optional<ObjectChildren> {
            try {
                return objectChildren(source->theCatalog(), object, version, stop);
            } catch (const std::bad_alloc&) {
                return std::nullopt;
            }
        },
        [this, node](std::optional<ObjectChildren> children) {
            take(*node, std::move(children));
            if (!theReading.isRunning()) // unless taking has led to more
                readNext();
        });
}

bool ObjectTreeModel::isAbove(const Node& node, std::size_t object)
{
    for (const Node* above = &node; above; above = above->parent) {
        if (above->child.object == object)
            return true;
    }
    return false;
}

void ObjectTreeModel::take(Node& node, std::optional<ObjectChildren> children)
{
    Nodes nodes;
    const auto add = [&](Node::Kind kind) -> Node& {
        nodes.push_back(std::make_unique<Node>());
        nodes.back()->parent = &node;
        nodes.back()->row = static_cast<int>(nodes.size()) - 1;
        nodes.back()->kind = kind;
        return *nodes.back();
    };
    for (ObjectChild& child : children ? children->shown : std::vector<ObjectChild>()) {
        Node& added = add(!child.object        ? Node::Kind::isMissing
                : isAbove(node, *child.object) ? Node::Kind::isLoop
                                               : Node::Kind::isObject);
        added.isUnread = added.kind == Node::Kind::isObject && child.hasReferences;
        added.child = std::move(child);
    }
    if (!children)
        add(Node::Kind::isRest).rest = tr("There is not enough memory to show this");
    else if (children->shown.size() < children->count)
        add(Node::Kind::isRest).rest
            = tr("%1 more").arg(counted(children->count - children->shown.size()));
    if (children && children->isCut)
        add(Node::Kind::isRest).rest
            = tr("What stands behind the object's first %1 bytes is not read")
                  .arg(counted(ObjectChildren::mostRead));
    if (nodes.empty())
        add(Node::Kind::isRest).rest = tr("Refers to nothing");
    const QModelIndex index = indexOf(node);
    beginInsertRows(index, 0, static_cast<int>(nodes.size()) - 1);
    node.children = std::move(nodes);
    endInsertRows();
    emit opened(index, children.has_value());
}

// --- What the view asks --------------------------------------------------------------------------

ObjectTreeModel::Node* ObjectTreeModel::nodeOf(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<Node*>(index.internalPointer()) : theRoot.get();
}

QModelIndex ObjectTreeModel::indexOf(const Node& node) const
{
    return node.parent ? createIndex(node.row, 0, &node) : QModelIndex();
}

std::optional<std::size_t> ObjectTreeModel::objectAt(const QModelIndex& index) const
{
    return index.isValid() ? nodeOf(index)->child.object : std::nullopt;
}

QModelIndex ObjectTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, nodeOf(parent)->children[static_cast<std::size_t>(row)].get());
}

QModelIndex ObjectTreeModel::parent(const QModelIndex& child) const
{
    return child.isValid() ? indexOf(*nodeOf(child)->parent) : QModelIndex();
}

int ObjectTreeModel::rowCount(const QModelIndex& parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(nodeOf(parent)->children.size());
}

int ObjectTreeModel::columnCount(const QModelIndex&) const
{
    return isCount;
}

bool ObjectTreeModel::hasChildren(const QModelIndex& parent) const
{
    return canFetchMore(parent) || rowCount(parent) > 0;
}

QVariant ObjectTreeModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const Node& node = *nodeOf(index);
    if (role == Qt::ToolTipRole)
        return toolTip(node);
    if (role != Qt::DisplayRole)
        return {};
    if (index.column() == isObject)
        return objectText(node);
    if (node.kind == Node::Kind::isRest)
        return node.rest;
    if (node.parent != theRoot.get())
        return QString::fromLatin1(node.child.path);
    return node.child.kind == "Catalog" ? tr("Catalog, without trailer") : tr("Trailer");
}

QString ObjectTreeModel::objectText(const Node& node) const
{
    const QString reference = u"%1 %2 R"_s.arg(node.child.objNo).arg(node.child.objGen);
    const QString kind = QString::fromLatin1(node.child.kind);
    switch (node.kind) {
    case Node::Kind::isRest:
        return {};
    case Node::Kind::isLoop:
        return tr("\u21BA %1, above").arg(reference);
    case Node::Kind::isMissing:
        return tr("%1, not listed").arg(reference);
    case Node::Kind::isObject:
        break;
    }
    if (node.child.objNo != trailerNumber)
        return reference % u"  "_s % kind;
    const pdfObject trailer = theSource->theCatalog().object(node.child.object.value());
    return tr("at offset %1").arg(counted(trailer.range().begin));
}

QString ObjectTreeModel::toolTip(const Node& node) const
{
    if (node.kind == Node::Kind::isMissing)
        return tr("The stored file lists no such object; those in object streams are not listed");
    return node.kind == Node::Kind::isLoop ? tr("This leads back to an object above it")
                                           : QString::fromLatin1(node.child.path);
}

QVariant ObjectTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == isEntry ? tr("Entry") : tr("Object");
}

} // namespace tarnwick
