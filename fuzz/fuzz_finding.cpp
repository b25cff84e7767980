// Finding one's way in a file: references, objects, lines, users, kinds, the tree and what a check
// says, with what each of them promises of the others.

#include "FuzzTarget.h"

#include "analysis/Findings.h"
#include "analysis/ObjectKind.h"
#include "analysis/ObjectUsers.h"
#include "analysis/ReferenceScan.h"
#include "analysis/SourceText.h"
#include "analysis/SourceTree.h"
#include "analysis/StoredStream.h"
#include "analysis/SyntaxColours.h"

#include <algorithm>

using namespace tarnwick;

namespace {

void checkObject(const pdfObjectCatalog& catalog, const pdfObject& object)
{
    const std::string_view bytes = catalog.bytes();
    const ByteRange range = object.range();
    require(range.begin <= range.end && range.end <= bytes.size(), "a range beyond the file");
    require(catalog.listedObject(catalog.listIndex(object)).index() == object.index(),
        "an object is not where the list has it");
    require(catalog.find(object.objNo(), object.objVer()).has_value(), "an object is not found");
    const std::vector<pdfObject> all = catalog.findAll(object.objNo());
    require(std::any_of(all.begin(), all.end(),
                [&](const pdfObject& one) { return one.range().begin == range.begin; }),
        "an object is not among those of its number");
    const std::string kind = objectKind(catalog, object);
    require(std::all_of(kind.begin(), kind.end(), [](char c) { return c >= 0x20 && c < 0x7F; }),
        "a kind that is not printable");
    const ObjectSource source(bytes, range);
    const std::optional<StoredStream> stream = storedStream(catalog, object, source);
    require(
        !stream || (stream->range.begin <= stream->range.end && stream->range.end <= bytes.size()),
        "a stream beyond the file");
    forEachReference(bytes, source, [&](const PlacedReference& reference) {
        require(reference.token.end <= bytes.size(), "a reference beyond the file");
        return true;
    });
    (void)objectState(catalog, object);
}

void checkReferences(std::string_view bytes)
{
    const std::vector<ScannedReference> all = ReferenceScan::inSource(bytes, 0, bytes.size());
    for (const ScannedReference& one : all)
        require(ReferenceScan::sourceReferenceAt(bytes, one.begin + 1) == one,
            "a reference is not found where it stands");
    for (std::size_t position = 0; position <= bytes.size(); position += 1 + bytes.size() / 500) {
        const auto found = ReferenceScan::sourceReferenceAt(bytes, position);
        require(!found || std::find(all.begin(), all.end(), *found) != all.end(),
            "a reference is found that the whole has not");
    }
}

void checkLines(const StyledText& listing, std::size_t size)
{
    for (std::size_t line = 0; line < listing.lineCount(); ++line) {
        const std::optional<std::size_t> offset = listing.offsetOfLine(line);
        require(!offset || *offset <= size, "a line beyond the file");
    }
    std::size_t before = 0;
    for (std::size_t offset = 0; offset <= size; offset += 1 + size / 500) {
        const std::size_t line = listing.lineOfOffset(offset).value_or(before);
        require(line >= before && line < listing.lineCount(), "lines that are not in order");
        before = line;
    }
}

/// Wherever one begins to look, a byte is the same.
void checkColours(std::string_view bytes)
{
    const SyntaxColours colours(bytes);
    std::size_t before = 0;
    for (const SyntaxStretch& stretch : colours.stretches(0, bytes.size())) {
        require(
            stretch.begin >= before && stretch.end > stretch.begin && stretch.end <= bytes.size(),
            "coloured stretches that are not in order");
        before = stretch.end;
        const auto first = colours.stretches(stretch.begin, stretch.begin + 1);
        require(first.size() == 1 && first.front().role == stretch.role,
            "a byte has another colour by itself");
    }
    (void)SyntaxColours::areSyntax(bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SourceText source(SharedBytes::ofString(std::string(textOf(data, size))));
    const StyledText listing = source.makeListing(true);
    const pdfObjectCatalog& catalog = source.theCatalog();
    checkColours(textOf(data, size));
    for (std::size_t index = 0; index < std::min<std::size_t>(catalog.size(), 200); ++index)
        checkObject(catalog, catalog.object(index));
    checkReferences(source.theString());
    checkLines(listing, size);
    for (const std::int64_t number : {0, 1, 2, 12}) {
        const ObjectUses uses = ObjectUsers(catalog).find(number);
        for (const ObjectUse& use : uses.uses)
            require(!use.user || catalog.object(*use.user).range().holds(use.offset),
                "a user that does not hold the reference");
        const std::optional<ByteRange> range = findUnlisted(catalog, number);
        require(
            !range || (range->begin < range->end && range->end <= size), "a range beyond the file");
    }
    const SourceTree tree(catalog);
    if (const std::optional<pdfObject> start = tree.start())
        tree.walk(*start, [](const TreeNode& node) {
            require(node.depth <= SourceTree::mostDepth, "a tree deeper than its limit");
        });
    for (const Finding& finding : findFacts(catalog).list)
        require(finding.offset <= size, "a finding beyond the file");
    return 0;
}
