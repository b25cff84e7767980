#pragma once

#include "analysis/ColourRole.h"
#include "analysis/ObjectRef.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

class ObjectReading;
class pdfObjectCatalog;
struct DescriptionParts;
struct ObjectRecord;

/// What an indirect object is, as far as the document's structure is concerned: decided by the last
/// line of it that holds "/Type" and one of the names below.
enum class ObjectType : unsigned char
{
    isCatalog, ///< "/Catalog"
    isPages, ///< page tree node: "/Pages"
    isPage, ///< "/Page"
    isInfo, ///< "/Info"
    isNames, ///< "/Names"
    isTrailer, ///< object number 8000001 or higher
    isPlain, ///< anything else
};

/// The number that stands for trailers, which have none in PDF. No real file comes near it: a
/// cross-reference table of so many rows would fill 160 MB.
inline constexpr std::int64_t trailerNumber = 8'000'001;
/// The header line that a trailer's record gets.
inline constexpr std::string_view trailerHeader = "8000001 0 obj";

/// A reference as read: without a version, which is that of the record in which it stands.
struct RawRef
{
    std::int64_t objNo = 0;
    std::int64_t objGen = 0;
    bool isWhole = false; ///< false for one that could not be read: (0, 0, 0)
};

/// A reference of a Kids array as the catalog keeps it.
struct Kid
{
    std::int64_t objNo = 0;
    std::int64_t objGen = 0;
    /// Digits and signs of the numbers of all kids that the catalog keeps before this one: makes
    /// the place of a kid in a description line a matter of subtraction.
    std::size_t digitsBefore = 0;
};

/// A reference that a dictionary entry names.
enum class ObjectLink : unsigned char
{
    isNone,
    isRoot,
    isInfo,
    isPages,
    isNames,
    isMetadata,
    isParent,
    isContent,
};

/// The entries read from an object's dictionary; which there are depends on the object's kind.
class ObjectEntries
{
public:
    /// To be called at most once for a link, and for three links at most: no kind has more.
    /// @param value nothing for a link that the dictionary has not.
    void setLink(ObjectLink link, const std::optional<RawRef>& value)
    {
        if (!value)
            return;
        const auto free = std::find(theLinks.begin(), theLinks.end(), Link());
        if (free != theLinks.end())
            *free = {value->objNo, value->objGen, value->isWhole, link};
    }
    std::optional<RawRef> link(ObjectLink link) const
    {
        for (const Link& one : theLinks) {
            if (one.name == link)
                return RawRef{one.objNo, one.objGen, one.isWhole};
        }
        return std::nullopt;
    }

    std::int64_t count = 0; ///< Count of a page tree node, Size of a trailer
    std::size_t firstKid = 0; ///< the catalog's kids from here on
    std::size_t kidCount = 0;

    bool operator==(const ObjectEntries&) const = default;

private:
    struct Link
    {
        std::int64_t objNo = 0;
        std::int64_t objGen = 0;
        bool isWhole = false; ///< as in RawRef
        ObjectLink name = ObjectLink::isNone;

        bool operator==(const Link&) const = default;
    };

    std::array<Link, 3> theLinks;
};

/// A stretch of a file's bytes: from begin to before end.
struct ByteRange
{
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t size() const { return end - begin; }
    bool holds(std::size_t offset) const { return begin <= offset && offset < end; }
    bool operator==(const ByteRange&) const = default;
};

/// One indirect object, or one trailer, found in a file: a light value that looks into its catalog.
///
/// The record keeps offsets into the file's bytes rather than texts: a file can hold ten million
/// objects. Valid as long as the catalog.
class pdfObject
{
public:
    /// Object number; trailerNumber for a trailer, 0 where the header line has none.
    std::int64_t objNo() const;
    /// Generation number; 0 where the header line has none.
    std::int64_t objGen() const;
    /// Saved version: 1 plus the number of "%%EOF" lines before the object's end.
    std::int64_t objVer() const;
    ObjectType objType() const;

    /// Where it stands in the file: from the start of its first line ("trailer" for a trailer) to
    /// the line that ended it, the bytes of streams included: to "endobj" or "startxref" there, to
    /// the line's start where the word does not stand in its first bytes.
    ByteRange range() const;
    /// Its place in the order of the scan: that by which the catalog's object() finds it.
    std::size_t index() const { return theIndex; }

    /// References of the dictionary; absent where no piece of it holds the key.
    std::optional<ObjectRef> theRoot() const;
    std::optional<ObjectRef> theInfo() const;
    std::optional<ObjectRef> thePages() const;
    std::optional<ObjectRef> theNames() const;
    std::optional<ObjectRef> theMetadata() const;
    std::optional<ObjectRef> theParent() const;
    std::optional<ObjectRef> theContent() const;

    /// The references of a page tree node's Kids array, in order.
    std::vector<ObjectRef> theChildren() const;
    /// Count of a page tree node; 0 for other kinds and where it cannot be read.
    std::int64_t thePageCount() const;
    /// Size of a trailer; 0 likewise.
    std::int64_t theSize() const;
    /// The line after the header line of a plain, Info or Names object; empty for other kinds and
    /// where there is none.
    std::string_view theText() const;

    /// The object's lines, trimmed: its header line first ("8000001 0 obj" for a trailer), then the
    /// lines up to the one that ended it, streams and keywords left out. Read anew from the file.
    std::vector<std::string_view> theStringArray() const;

    /// Colour of the description line: red for the catalog and trailers, green for page tree nodes,
    /// Info and Names, default for pages, blue for the rest.
    ColourRole descriptionRole() const;
    /// Number of characters of the description line, its line feed not counted.
    std::size_t descriptionLength() const;
    /// Appends a stretch of the description line, without its line feed: at most count characters
    /// from position on. Cheap also in the middle of a line of a gigabyte.
    /// Precondition: position <= descriptionLength().
    void appendDescription(std::size_t position, std::size_t count, std::u16string& text) const;
    /// The whole description line, with its line feed.
    std::u16string descriptionLine() const;

private:
    friend class pdfObjectCatalog;
    pdfObject(const pdfObjectCatalog& catalog, std::size_t index)
        : theCatalog(&catalog)
        , theIndex(index)
    {
    }

    const ObjectRecord& record() const;
    std::optional<ObjectRef> link(ObjectLink link) const;
    std::optional<ObjectRef> reference(const ObjectEntries& entries, ObjectLink link) const;
    void appendLink(std::string_view label, const ObjectEntries& entries, ObjectLink link,
        std::string& head) const;
    std::string trailerHead(const ObjectEntries& entries) const;
    std::string objectHead(const ObjectReading& reading) const;
    DescriptionParts descriptionParts(const ObjectReading& reading) const;

    const pdfObjectCatalog* theCatalog;
    std::size_t theIndex; ///< in scan order
};

} // namespace tarnwick
