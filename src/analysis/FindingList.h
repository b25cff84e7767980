#pragma once

#include "analysis/Findings.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick {

/// Gathers findings, no more of each code than are kept.
class FindingList
{
public:
    void add(FindingCode code, std::size_t offset, std::optional<std::size_t> object,
        std::string sentence)
    {
        std::size_t& count = theFindings.counts.at(static_cast<std::size_t>(code));
        if (count++ < Findings::mostKept)
            theFindings.list.push_back({code, offset, object, std::move(sentence)});
    }
    /// Counts further ones that are not kept.
    void count(FindingCode code, std::size_t further)
    {
        theFindings.counts.at(static_cast<std::size_t>(code)) += further;
    }
    bool has(FindingCode code) const
    {
        return theFindings.counts.at(static_cast<std::size_t>(code)) > 0;
    }
    Findings take() { return std::move(theFindings); }

private:
    Findings theFindings;
};

/// "object 17 0"
inline std::string objectName(std::int64_t objNo, std::int64_t objGen)
{
    return "object " + std::to_string(objNo) + ' ' + std::to_string(objGen);
}
inline std::string objectName(const pdfObject& object)
{
    return object.objType() == ObjectType::isTrailer ? "the trailer"
                                                     : objectName(object.objNo(), object.objGen());
}

/// An object's header, "17 0 obj".
struct PlacedHeader
{
    std::size_t begin = 0;
    std::size_t end = 0; ///< behind "obj"
    std::int64_t objNo = 0;
    std::int64_t objGen = 0;
};
/// The header that stands at an offset, or behind white space there; looks at 64 bytes.
std::optional<PlacedHeader> headerAt(std::string_view bytes, std::size_t offset);

/// The parts of a check; each is given the catalog and the list.
/// @{
void checkFrame(const pdfObjectCatalog& catalog, FindingList& list); ///< header, markers
void checkCrossReferences(
    const pdfObjectCatalog& catalog, FindingList& list); ///< startxref, tables, Prev
/// Length, markers within. @returns data in which the listing sees objects, though it is data: in
/// the order of the file, apart from each other.
std::vector<ByteRange> checkStreams(const pdfObjectCatalog& catalog, FindingList& list);
/// Objects that are there twice, not listed or hidden. @param nests from checkStreams().
void checkObjects(
    const pdfObjectCatalog& catalog, const std::vector<ByteRange>& nests, FindingList& list);
void checkNames(const pdfObjectCatalog& catalog, FindingList& list,
    const std::stop_token& stop); ///< what acts, what is embedded, encryption
/// @}

} // namespace tarnwick
