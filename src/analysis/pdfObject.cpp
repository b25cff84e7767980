#include "analysis/pdfObject.h"

#include "analysis/DecimalInteger.h"
#include "analysis/DescriptionLine.h"
#include "analysis/DictionaryParser.h"
#include "analysis/LineScan.h"
#include "analysis/Piece.h"
#include "analysis/pdfObjectCatalog.h"

#include <algorithm>

namespace {

constexpr char16_t ellipsis = u'\u2026';
constexpr std::size_t longestExcerpt = ObjectRecord::excerptLimit - 1;

/// Gathers an object's lines anew, the way ObjectCollector came by them.
class LineGatherer
{
public:
    LineGatherer(std::string_view text, std::size_t endOffset)
        : theText(text)
        , theEnd(endOffset)
    {
    }

    void takeLine(const ScannedLine& line)
    {
        isDone = isDone || line.start >= theEnd;
        if (isDone)
            return;
        if (lines.empty() && line.kind == LineKind::isTrailer)
            lines.push_back(trailerHeader);
        else if (lines.empty() || line.kind == LineKind::isPlain)
            lines.push_back(theText.substr(line.offset, line.length));
    }
    void takeStream(std::size_t) const { }

    std::vector<std::string_view> lines;
    bool isDone = false;

private:
    std::string_view theText;
    std::size_t theEnd;
};

std::string_view kindName(ObjectType type)
{
    switch (type) {
    case ObjectType::isCatalog:
        return " Catalog";
    case ObjectType::isPages:
        return " Pages";
    case ObjectType::isPage:
        return " Page";
    case ObjectType::isInfo:
        return " Info ";
    case ObjectType::isNames:
        return " Names ";
    case ObjectType::isTrailer:
    case ObjectType::isPlain:
        break;
    }
    return " ";
}

/// Takes what a stretch needs of one part after the other.
class StretchWriter
{
public:
    StretchWriter(std::size_t position, std::size_t count, std::u16string& text)
        : theSkip(position)
        , theCount(count)
        , theText(text)
    {
    }

    /// @param append appends at most so many characters of the part from a position on.
    template<class Append> void part(std::size_t length, Append append)
    {
        const std::size_t skipped = std::min(theSkip, length);
        const std::size_t taken = std::min(theCount, length - skipped);
        if (taken > 0)
            append(skipped, taken, theText);
        theSkip -= skipped;
        theCount -= taken;
    }

    void part(std::string_view characters)
    {
        part(characters.size(), [characters](std::size_t position, std::size_t count, auto& text) {
            appendCharacters(characters.substr(position, count), text);
        });
    }

private:
    std::size_t theSkip;
    std::size_t theCount;
    std::u16string& theText;
};

} // namespace

const ObjectRecord& pdfObject::record() const
{
    return theCatalog->theRecords[theIndex];
}

const ObjectDetail& pdfObject::detail() const
{
    static const ObjectDetail none;
    const std::uint32_t index = record().detail;
    return index == ObjectRecord::noDetail ? none : theCatalog->theDetails[index];
}

std::int64_t pdfObject::objNo() const
{
    return record().objNo;
}

std::int64_t pdfObject::objGen() const
{
    return detail().objGen;
}

std::int64_t pdfObject::objVer() const
{
    return record().objVer;
}

ObjectType pdfObject::objType() const
{
    return record().objType();
}

ObjectEntries pdfObject::entries() const
{
    if (!record().isReadAgain())
        return detail().entries;
    const std::vector<std::string_view> lines = theStringArray();
    if (lines.size() < 2)
        return {};
    DictionaryParser parser(nullptr);
    for (const std::string_view line : lines)
        parser.addLine(line);
    return parser.entries(objType());
}

std::optional<ObjectRef> pdfObject::reference(const ObjectEntries& entries, ObjectLink link) const
{
    const std::optional<RawRef> raw = entries.link(link);
    if (!raw)
        return std::nullopt;
    return raw->isWhole ? ObjectRef{raw->objNo, raw->objGen, objVer()} : ObjectRef();
}

std::optional<ObjectRef> pdfObject::theRoot() const
{
    return reference(entries(), ObjectLink::isRoot);
}

std::optional<ObjectRef> pdfObject::theInfo() const
{
    return reference(entries(), ObjectLink::isInfo);
}

std::optional<ObjectRef> pdfObject::thePages() const
{
    return reference(entries(), ObjectLink::isPages);
}

std::optional<ObjectRef> pdfObject::theNames() const
{
    return reference(entries(), ObjectLink::isNames);
}

std::optional<ObjectRef> pdfObject::theMetadata() const
{
    return reference(entries(), ObjectLink::isMetadata);
}

std::optional<ObjectRef> pdfObject::theParent() const
{
    return reference(entries(), ObjectLink::isParent);
}

std::optional<ObjectRef> pdfObject::theContent() const
{
    return reference(entries(), ObjectLink::isContent);
}

std::vector<ObjectRef> pdfObject::theChildren() const
{
    const ObjectEntries& entries = detail().entries;
    std::vector<ObjectRef> children;
    children.reserve(entries.kidCount);
    for (std::size_t i = 0; i < entries.kidCount; ++i) {
        const Kid& kid = theCatalog->theKids[entries.firstKid + i];
        children.push_back({kid.objNo, kid.objGen, objVer()});
    }
    return children;
}

std::int64_t pdfObject::thePageCount() const
{
    return objType() == ObjectType::isPages ? detail().entries.count : 0;
}

std::int64_t pdfObject::theSize() const
{
    return objType() == ObjectType::isTrailer ? detail().entries.count : 0;
}

std::string_view pdfObject::theText() const
{
    const ObjectRecord& own = record();
    const std::string_view bytes = theCatalog->theBytes.view;
    switch (own.objType()) {
    case ObjectType::isInfo:
    case ObjectType::isNames:
        return bytes.substr(detail().textOffset, detail().textLength);
    case ObjectType::isPlain:
        break;
    default:
        return {};
    }
    if (!own.hasText)
        return {};
    const std::size_t offset = own.textDistance == ObjectRecord::farText
        ? detail().textOffset
        : own.headerOffset + own.textDistance;
    if (own.excerptLength < ObjectRecord::excerptLimit)
        return bytes.substr(offset, own.excerptLength);
    const std::size_t end = nextLineBreak(bytes, offset + own.excerptLength);
    return trimmed(bytes.substr(offset, end - offset));
}

std::vector<std::string_view> pdfObject::theStringArray() const
{
    const std::string_view bytes = theCatalog->theBytes.view;
    const ObjectRecord& own = record();
    LineGatherer gatherer(bytes, own.endOffset);
    LineScan scan(bytes, gatherer, own.headerOffset, own.inXml != 0);
    while (!gatherer.isDone && scan.advance(BlockMasks::blockSize))
        ;
    return std::move(gatherer.lines);
}

ColourRole pdfObject::descriptionRole() const
{
    switch (objType()) {
    case ObjectType::isCatalog:
    case ObjectType::isTrailer:
        return ColourRole::isRed;
    case ObjectType::isPages:
    case ObjectType::isInfo:
    case ObjectType::isNames:
        return ColourRole::isGreen;
    case ObjectType::isPage:
        return ColourRole::isDefault;
    case ObjectType::isPlain:
        break;
    }
    return ColourRole::isBlue;
}

void pdfObject::appendLink(
    std::string_view label, const ObjectEntries& entries, ObjectLink link, std::string& head) const
{
    const std::optional<ObjectRef> target = reference(entries, link);
    if (!target)
        return;
    head += label;
    head += '(';
    appendDecimal(target->objNo, head);
    head += ", ";
    appendDecimal(target->objGen, head);
    head += ", ";
    appendDecimal(target->objVer, head);
    head += ')';
}

std::string pdfObject::trailerHead() const
{
    const ObjectEntries own = entries();
    std::string head = "Trailer ";
    appendDecimal(objVer(), head);
    head += ' ';
    appendLink(", Root ", own, ObjectLink::isRoot, head);
    appendLink(", Info ", own, ObjectLink::isInfo, head);
    head += ", Size ";
    appendDecimal(own.count, head);
    return head;
}

std::string pdfObject::objectHead() const
{
    const ObjectEntries own = entries();
    std::string head;
    appendDecimal(objNo(), head);
    head += ' ';
    appendDecimal(objGen(), head);
    head += ' ';
    appendDecimal(objVer(), head);
    head += kindName(objType());
    // An object has only the links of its kind.
    appendLink(", Parent ", own, ObjectLink::isParent, head);
    appendLink(", Pages ", own, ObjectLink::isPages, head);
    appendLink(", Metadata ", own, ObjectLink::isMetadata, head);
    appendLink(", Names ", own, ObjectLink::isNames, head);
    appendLink(", Content ", own, ObjectLink::isContent, head);
    if (objType() == ObjectType::isPages) {
        head += ", Page count ";
        appendDecimal(own.count, head);
        head += ", Kids ";
    }
    return head;
}

DescriptionParts pdfObject::descriptionParts() const
{
    DescriptionParts parts;
    const ObjectType type = objType();
    parts.head = type == ObjectType::isTrailer ? trailerHead() : objectHead();
    parts.hasKids = type == ObjectType::isPages;
    parts.text = theText();
    if (type == ObjectType::isPlain && parts.text.size() > longestExcerpt) {
        parts.text = parts.text.substr(0, longestExcerpt);
        parts.hasEllipsis = true;
    }
    return parts;
}

KidsText pdfObject::kidsText() const
{
    const ObjectEntries& entries = detail().entries;
    return {theCatalog->theKids, entries.firstKid, entries.kidCount, objVer()};
}

std::size_t pdfObject::descriptionLength() const
{
    const DescriptionParts parts = descriptionParts();
    return parts.head.size() + parts.text.size() + (parts.hasEllipsis ? 1 : 0)
        + (parts.hasKids ? kidsText().length() : 0);
}

void pdfObject::appendDescription(
    std::size_t position, std::size_t count, std::u16string& text) const
{
    const DescriptionParts parts = descriptionParts();
    StretchWriter writer(position, count, text);
    writer.part(parts.head);
    writer.part(parts.text);
    if (parts.hasEllipsis)
        writer.part(1, [](std::size_t, std::size_t, auto& out) { out += ellipsis; });
    if (parts.hasKids) {
        const KidsText kids = kidsText();
        writer.part(kids.length(), [&kids](std::size_t from, std::size_t most, auto& out) {
            kids.append(from, most, out);
        });
    }
}

std::u16string pdfObject::descriptionLine() const
{
    std::u16string line;
    appendDescription(0, std::u16string::npos, line);
    line += u'\n';
    return line;
}
