#pragma once

#include "analysis/ChunkedVector.h"
#include "analysis/ObjectRecord.h"
#include "analysis/SharedBytes.h"
#include "analysis/pdfObject.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// How many objects of each kind a file holds.
struct ObjectCounts
{
    std::size_t total = 0;
    std::size_t pages = 0; ///< of kind isPage
    std::size_t catalogs = 0;
    std::size_t infoObjects = 0; ///< objects that call themselves Info
    std::size_t trailers = 0;
    std::int64_t maximumVersion = 0;
};

/// All objects and trailers found in one file.
///
/// Nothing is merged or replaced: an object that stands in several versions, or twice in one, has a
/// record for each time. Immutable once the scan that fills it has ended; any thread may read.
class pdfObjectCatalog
{
public:
    /// @param bytes what the records' offsets point into.
    explicit pdfObjectCatalog(SharedBytes bytes);

    /// Number of objects.
    std::size_t size() const { return theRecords.size(); }
    /// An object in the order of the scan. Precondition: index < size().
    pdfObject object(std::size_t index) const { return pdfObject(*this, index); }
    /// An object in the order of the object list: ascending by version, then by number; equal ones
    /// in the order of the scan. Precondition: index < size().
    pdfObject listedObject(std::size_t index) const;

    /// What the records are stored as, for those who read an object's lines.
    /// @{
    std::string_view bytes() const { return theBytes.view; }
    /// Precondition: the record is of this catalog and has a detail.
    const ObjectDetail& detail(const ObjectRecord& record) const
    {
        return theDetails[record.number];
    }
    /// The references of all Kids arrays that the details speak of.
    const ChunkedVector<Kid>& kids() const { return theKids; }
    /// @}

    /// The object of a number as a reference in a saved version means it: of the latest version at
    /// or before that one; of several in one version the last in the file. Two records of the same
    /// lines are one object, that of the first "endobj" behind them. A search in the sorted list:
    /// some microseconds for ten million objects, some more for each thousand versions.
    /// @param objNo trailerNumber finds trailers. @returns nothing where no version has it.
    std::optional<pdfObject> find(
        std::int64_t objNo, std::int64_t objVer = std::numeric_limits<std::int64_t>::max()) const;
    /// Every object of that number, in the order of the file; records of the same lines once.
    std::vector<pdfObject> findAll(std::int64_t objNo) const;

    /// What took an object's place: the next object of its number in its version, else the first in
    /// the next version that has one. @returns nothing for an object that is current.
    std::optional<pdfObject> findAfter(const pdfObject& object) const;

    /// The first record, in the order of the scan, whose range() ends behind an offset; size()
    /// where there is none.
    std::size_t firstEndingBehind(std::size_t offset) const;
    /// The first record whose range() holds an offset in the file.
    std::optional<pdfObject> recordAt(std::size_t offset) const;
    /// Where an object stands in the object list: the way back from listedObject().
    std::size_t listIndex(const pdfObject& object) const;

    ObjectCounts counts() const;
    /// The counts in words; several lines, no line feed at the end.
    std::string makeSummary() const;

private:
    friend class pdfObject;
    friend class ObjectCollector;

    std::int64_t objNo(const ObjectRecord& record) const
    {
        return record.hasDetail ? detail(record).objNo : std::int64_t{record.number};
    }
    std::size_t startOf(const ObjectRecord& record) const
    {
        return record.hasDetail ? detail(record).start : std::size_t{record.offset};
    }
    /// Behind what an object says on the line that ends it.
    std::size_t endOf(const ObjectRecord& record) const;
    std::size_t scanIndex(std::size_t listed) const
    {
        return theOrder.empty() ? listed : theOrder[listed];
    }
    /// The part of the object list that one version's objects of a number are.
    struct ListRange
    {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    /// The first of a range's objects that begins at or behind an offset, or the range's end.
    std::size_t firstFrom(const ListRange& range, std::size_t offset) const;
    /// Versions are counted from 0 here, those without objects left out.
    /// @{
    std::size_t versionsUpTo(std::int64_t objVer) const;
    ListRange rangeIn(std::size_t version, std::int64_t objNo) const;
    /// @}
    ListRange rangeOf(const pdfObject& object) const; ///< of its version and number

    /// In the object list; indices in scan order.
    bool comesBefore(std::uint32_t one, std::uint32_t other) const;
    void sortList();

    SharedBytes theBytes;
    ChunkedVector<ObjectRecord> theRecords;
    ChunkedVector<ObjectDetail> theDetails;
    ChunkedVector<Kid> theKids;
    /// Where each version that has objects begins, in the scan and in the list alike.
    std::vector<std::uint32_t> theVersionStarts;
    std::pmr::vector<std::uint32_t> theOrder; ///< empty when the list has the order of the scan
};

} // namespace tarnwick
