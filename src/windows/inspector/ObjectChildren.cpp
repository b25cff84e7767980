#include "ObjectChildren.h"

#include "analysis/ObjectKind.h"
#include "analysis/ObjectSource.h"

#include <algorithm>

namespace tarnwick {

namespace {

/// What stands in a row: a file can make paths of any length, of any characters.
std::string shownPath(std::string path)
{
    constexpr std::size_t longest = 200;
    if (path.size() > longest)
        path = "..." + path.substr(path.size() - longest);
    std::replace_if(
        path.begin(), path.end(), [](char c) { return c < 0x20 || c > 0x7E; }, '?');
    return path;
}

bool mayRefer(const pdfObjectCatalog& catalog, const pdfObject& object)
{
    constexpr std::size_t readForOne = 4096;
    const ObjectSource source(catalog.bytes(), object.range(), readForOne);
    bool refers = source.isCut();
    forEachReference(catalog.bytes(), source, [&refers](const PlacedReference&) {
        refers = true;
        return false;
    });
    return refers;
}

ObjectChild childOf(
    const pdfObjectCatalog& catalog, const PlacedReference& reference, std::int64_t version)
{
    ObjectChild child;
    child.path = shownPath(reference.path);
    child.objNo = reference.token.number;
    child.objGen = reference.token.generation;
    if (const std::optional<pdfObject> object = catalog.find(child.objNo, version)) {
        child.object = object->index();
        child.kind = objectKind(catalog, *object);
        child.hasReferences = mayRefer(catalog, *object);
    }
    return child;
}

} // namespace

std::optional<ObjectChildren> objectChildren(const pdfObjectCatalog& catalog, std::size_t object,
    std::int64_t version, const std::stop_token& stop)
{
    const ObjectSource source(
        catalog.bytes(), catalog.object(object).range(), ObjectChildren::mostRead);
    ObjectChildren children;
    children.isCut = source.isCut();
    std::size_t end = source.valueEnd();
    forEachReference(catalog.bytes(), source, [&](const PlacedReference& reference) {
        if (stop.stop_requested())
            return false;
        children.shown.push_back(childOf(catalog, reference, version));
        end = reference.token.end;
        return children.shown.size() < ObjectChildren::mostShown;
    });
    children.count = children.shown.size();
    // The rest is counted; what leads to each is not asked for.
    SourceLexer lexer(catalog.bytes(), end, source.valueEnd());
    while (children.count >= ObjectChildren::mostShown && !stop.stop_requested()) {
        const SourceToken token = lexer.next();
        if (token.kind == TokenKind::isEnd)
            break;
        children.count += token.kind == TokenKind::isReference;
    }
    return stop.stop_requested() ? std::nullopt : std::optional(std::move(children));
}

} // namespace tarnwick
