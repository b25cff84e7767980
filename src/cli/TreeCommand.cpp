#include "TreeCommand.h"

#include "CommandOutput.h"
#include "analysis/ObjectKind.h"
#include "analysis/SourceText.h"
#include "analysis/SourceTree.h"

#include <string>

namespace tarnwick {

namespace {

std::string_view stateName(TreeNodeKind kind)
{
    switch (kind) {
    case TreeNodeKind::isObject:
        return "shown";
    case TreeNodeKind::isRepeated:
        return "repeated";
    case TreeNodeKind::isLoop:
        return "loop";
    case TreeNodeKind::isMissing:
        break;
    }
    return "missing";
}

/// What stands behind a node in the indented form.
std::string noteOf(const pdfObjectCatalog& catalog, const TreeNode& node)
{
    switch (node.kind) {
    case TreeNodeKind::isObject:
        return objectKind(catalog, *node.object);
    case TreeNodeKind::isRepeated:
        return objectKind(catalog, *node.object) + " (above)";
    case TreeNodeKind::isLoop:
        return objectKind(catalog, *node.object) + " (loop)";
    case TreeNodeKind::isMissing:
        break;
    }
    return "(not in the listing)";
}

std::string lineOf(const pdfObjectCatalog& catalog, const TreeNode& node)
{
    return std::string(2 * node.depth, ' ') + shownPath(node.path) + ' '
        + std::to_string(node.objNo) + ' ' + std::to_string(node.objGen) + " R "
        + noteOf(catalog, node) + '\n';
}

void appendNode(const pdfObjectCatalog& catalog, const TreeNode& node, JsonText& json)
{
    json.open('{').key("depth").number(node.depth).key("path").string(node.path);
    json.key("reference").open('[').number(node.objNo).number(node.objGen).close(']');
    json.key("state").string(stateName(node.kind)).key("object");
    if (node.object) {
        json.open('{');
        appendObject(catalog, *node.object, json);
        json.key("offset").number(node.object->range().begin).close('}');
    } else {
        json.null();
    }
    json.close('}');
}

ExitStatus reportLimit(TreeLimit limit, const Arguments& arguments, ExitStatus status)
{
    if (limit == TreeLimit::isDepth)
        return complain(ExitStatus::isIncomplete, arguments.file,
            "what lies deeper than " + std::to_string(SourceTree::mostDepth)
                + " objects is left out");
    if (limit == TreeLimit::isNodes)
        return complain(ExitStatus::isIncomplete, arguments.file,
            "there are more than " + std::to_string(SourceTree::mostNodes)
                + " references; the rest is left out");
    return status;
}

} // namespace

ExitStatus treeCommand(const Arguments& arguments, const SharedBytes& bytes)
{
    SourceText source(bytes);
    source.scan({});
    const pdfObjectCatalog& catalog = source.theCatalog();
    const SourceTree tree(catalog);
    const std::optional<pdfObject> start = tree.start();
    if (!start) {
        reportHidden(catalog, arguments, nullptr);
        return complain(ExitStatus::isFailed, arguments.file,
            "there is no trailer with a Root and no catalog in the listing");
    }
    JsonText json = JsonText::ofCommand("tree");
    json.key("start").open('{');
    appendObject(catalog, *start, json);
    json.key("offset").number(start->range().begin).close('}').key("nodes").open('[');
    std::string lines = objectKind(catalog, *start)
        + (start->objType() == ObjectType::isTrailer ? std::string() : ' ' + shownNumbers(*start))
        + '\n';
    const TreeLimit limit = tree.walk(*start, [&](const TreeNode& node) {
        if (arguments.json)
            appendNode(catalog, node, json);
        else
            lines += lineOf(catalog, node);
    });
    json.close(']').key("isComplete").boolean(limit == TreeLimit::isNone);
    ExitStatus status = reportHidden(catalog, arguments, &json);
    status = reportLimit(limit, arguments, status);
    return printBytes(arguments.json ? json.close('}').text() + '\n' : lines, status);
}

} // namespace tarnwick
