#include "analysis/pdfObject.h"

#include "DecimalInteger.h"
#include "DescriptionLine.h"
#include "ObjectReading.h"
#include "analysis/pdfObjectCatalog.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr char16_t ellipsis = u'\u2026';
constexpr std::size_t longestExcerpt = 120;

/// Kinds whose second line is shown as it is.
bool hasText(ObjectType type)
{
    return type == ObjectType::isPlain || type == ObjectType::isInfo || type == ObjectType::isNames;
}

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

std::int64_t pdfObject::objNo() const
{
    return theCatalog->objNo(record());
}

std::int64_t pdfObject::objGen() const
{
    return ObjectReading(*theCatalog, record()).objGen();
}

std::int64_t pdfObject::objVer() const
{
    return record().objVer;
}

ObjectType pdfObject::objType() const
{
    return record().objType();
}

ByteRange pdfObject::range() const
{
    return {theCatalog->startOf(record()), theCatalog->endOf(record())};
}

std::optional<ObjectRef> pdfObject::link(ObjectLink link) const
{
    return reference(ObjectReading(*theCatalog, record()).entries(), link);
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
    return link(ObjectLink::isRoot);
}

std::optional<ObjectRef> pdfObject::theInfo() const
{
    return link(ObjectLink::isInfo);
}

std::optional<ObjectRef> pdfObject::thePages() const
{
    return link(ObjectLink::isPages);
}

std::optional<ObjectRef> pdfObject::theNames() const
{
    return link(ObjectLink::isNames);
}

std::optional<ObjectRef> pdfObject::theMetadata() const
{
    return link(ObjectLink::isMetadata);
}

std::optional<ObjectRef> pdfObject::theParent() const
{
    return link(ObjectLink::isParent);
}

std::optional<ObjectRef> pdfObject::theContent() const
{
    return link(ObjectLink::isContent);
}

std::vector<ObjectRef> pdfObject::theChildren() const
{
    const ObjectReading reading(*theCatalog, record());
    const ObjectEntries& entries = reading.entries();
    std::vector<ObjectRef> children;
    children.reserve(entries.kidCount);
    for (std::size_t i = 0; i < entries.kidCount; ++i) {
        const Kid& kid = reading.kids()[entries.firstKid + i];
        children.push_back({kid.objNo, kid.objGen, objVer()});
    }
    return children;
}

std::int64_t pdfObject::thePageCount() const
{
    return objType() == ObjectType::isPages ? ObjectReading(*theCatalog, record()).entries().count
                                            : 0;
}

std::int64_t pdfObject::theSize() const
{
    return objType() == ObjectType::isTrailer ? ObjectReading(*theCatalog, record()).entries().count
                                              : 0;
}

std::string_view pdfObject::theText() const
{
    return hasText(objType()) ? ObjectReading(*theCatalog, record()).text() : std::string_view();
}

std::vector<std::string_view> pdfObject::theStringArray() const
{
    return readLines(*theCatalog, record());
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

std::string pdfObject::trailerHead(const ObjectEntries& entries) const
{
    std::string head = "Trailer ";
    appendDecimal(objVer(), head);
    head += ' ';
    appendLink(", Root ", entries, ObjectLink::isRoot, head);
    appendLink(", Info ", entries, ObjectLink::isInfo, head);
    head += ", Size ";
    appendDecimal(entries.count, head);
    return head;
}

std::string pdfObject::objectHead(const ObjectReading& reading) const
{
    const ObjectEntries& entries = reading.entries();
    std::string head;
    appendDecimal(reading.objNo(), head);
    head += ' ';
    appendDecimal(reading.objGen(), head);
    head += ' ';
    appendDecimal(objVer(), head);
    head += kindName(objType());
    // An object has only the links of its kind.
    appendLink(", Parent ", entries, ObjectLink::isParent, head);
    appendLink(", Pages ", entries, ObjectLink::isPages, head);
    appendLink(", Metadata ", entries, ObjectLink::isMetadata, head);
    appendLink(", Names ", entries, ObjectLink::isNames, head);
    appendLink(", Content ", entries, ObjectLink::isContent, head);
    if (objType() == ObjectType::isPages) {
        head += ", Page count ";
        appendDecimal(entries.count, head);
        head += ", Kids ";
    }
    return head;
}

DescriptionParts pdfObject::descriptionParts(const ObjectReading& reading) const
{
    DescriptionParts parts;
    const ObjectType type = objType();
    parts.head
        = type == ObjectType::isTrailer ? trailerHead(reading.entries()) : objectHead(reading);
    if (hasText(type))
        parts.text = reading.text();
    if (type == ObjectType::isPlain && parts.text.size() > longestExcerpt) {
        parts.text = parts.text.substr(0, longestExcerpt);
        parts.hasEllipsis = true;
    }
    if (type == ObjectType::isPages) {
        const ObjectEntries& entries = reading.entries();
        parts.kids.emplace(reading.kids(), entries.firstKid, entries.kidCount, objVer());
    }
    return parts;
}

std::size_t pdfObject::descriptionLength() const
{
    const ObjectReading reading(*theCatalog, record());
    const DescriptionParts parts = descriptionParts(reading);
    return parts.head.size() + parts.text.size() + (parts.hasEllipsis ? 1 : 0)
        + (parts.kids ? parts.kids->length() : 0);
}

void pdfObject::appendDescription(
    std::size_t position, std::size_t count, std::u16string& text) const
{
    const ObjectReading reading(*theCatalog, record());
    const DescriptionParts parts = descriptionParts(reading);
    StretchWriter writer(position, count, text);
    writer.part(parts.head);
    writer.part(parts.text);
    if (parts.hasEllipsis)
        writer.part(1, [](std::size_t, std::size_t, auto& out) { out += ellipsis; });
    if (parts.kids) {
        writer.part(parts.kids->length(), [&parts](std::size_t from, std::size_t most, auto& out) {
            parts.kids->append(from, most, out);
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

} // namespace tarnwick
