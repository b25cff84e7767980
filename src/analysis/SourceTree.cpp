#include "analysis/SourceTree.h"

#include "analysis/NameSearch.h"
#include "analysis/ObjectSource.h"

#include <array>
#include <unordered_map>
#include <vector>

namespace tarnwick {

namespace {

/// A walk, by a stack of its own: the file decides how deep it goes.
class Walk
{
public:
    Walk(const pdfObjectCatalog& catalog, const pdfObject& start,
        const std::function<void(const TreeNode&)>& take)
        : theCatalog(catalog)
        , theVersion(start.objVer())
        , theTake(take)
    {
        enter(start, 0);
    }

    TreeLimit run()
    {
        while (!theFrames.empty()) {
            Frame& frame = theFrames.back();
            if (frame.next == frame.references.size()) {
                theIsOpen[frame.object] = false;
                theFrames.pop_back();
                continue;
            }
            const PlacedReference reference = frame.references[frame.next++];
            --thePending;
            follow(reference, frame.depth + (reference.path == "/Next" ? 0 : 1));
        }
        return theLimit;
    }

private:
    struct Frame
    {
        std::size_t object = 0;
        std::size_t depth = 0;
        std::vector<PlacedReference> references;
        std::size_t next = 0;
    };

    void follow(const PlacedReference& reference, std::size_t depth)
    {
        ++theNodes;
        TreeNode node;
        node.depth = depth;
        node.path = reference.path;
        node.objNo = reference.token.number;
        node.objGen = reference.token.generation;
        node.object = theCatalog.find(node.objNo, theVersion);
        node.kind = kindOf(node.object);
        theTake(node);
        if (node.kind != TreeNodeKind::isObject)
            return;
        if (depth < SourceTree::mostDepth)
            enter(*node.object, depth);
        else if (theLimit == TreeLimit::isNone)
            theLimit = TreeLimit::isDepth;
    }

    TreeNodeKind kindOf(const std::optional<pdfObject>& object) const
    {
        if (!object)
            return TreeNodeKind::isMissing;
        const auto shown = theIsOpen.find(object->index());
        if (shown == theIsOpen.end())
            return TreeNodeKind::isObject;
        return shown->second ? TreeNodeKind::isLoop : TreeNodeKind::isRepeated;
    }

    void enter(const pdfObject& object, std::size_t depth)
    {
        theIsOpen[object.index()] = true;
        Frame frame;
        frame.object = object.index();
        frame.depth = depth;
        const ByteRange range = object.range();
        const ObjectSource source(theCatalog.bytes(), range, range.size());
        forEachReference(theCatalog.bytes(), source, [&](const PlacedReference& reference) {
            if (theNodes + thePending == SourceTree::mostNodes) {
                theLimit = TreeLimit::isNodes;
                return false;
            }
            ++thePending;
            frame.references.push_back(reference);
            return true;
        });
        theFrames.push_back(std::move(frame));
    }

    const pdfObjectCatalog& theCatalog;
    std::int64_t theVersion;
    const std::function<void(const TreeNode&)>& theTake;
    std::vector<Frame> theFrames;
    std::unordered_map<std::size_t, bool> theIsOpen; ///< of objects that have been shown
    std::size_t theNodes = 0;
    std::size_t thePending = 0; ///< references in the frames that have not been followed
    TreeLimit theLimit = TreeLimit::isNone;
};

} // namespace

std::optional<pdfObject> SourceTree::start() const
{
    std::optional<pdfObject> found;
    const auto offer = [&](const pdfObject& object) {
        const bool isLater = !found || found->range().begin < object.range().begin;
        if (isLater && ObjectSource(theCatalog.bytes(), object.range()).entry("Root"))
            found = object;
    };
    constexpr std::array<std::string_view, 1> names{"XRef"};
    findNames(theCatalog, names, [&](const FoundName& name) {
        if (name.object)
            offer(theCatalog.object(*name.object));
    });
    for (std::size_t index = 0; index < theCatalog.size(); ++index) {
        if (theCatalog.object(index).objType() == ObjectType::isTrailer)
            offer(theCatalog.object(index));
    }
    for (std::size_t index = theCatalog.size(); !found && index-- > 0;) {
        if (theCatalog.object(index).objType() == ObjectType::isCatalog)
            found = theCatalog.object(index);
    }
    return found;
}

TreeLimit SourceTree::walk(
    const pdfObject& start, const std::function<void(const TreeNode&)>& take) const
{
    return Walk(theCatalog, start, take).run();
}

} // namespace tarnwick
