#pragma once

#include "analysis/ChunkedVector.h"
#include "analysis/ObjectRecord.h"
#include "analysis/pdfObject.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace tarnwick {

class pdfObjectCatalog;

/// What one object's lines say: from its detail, or read from the file now.
class ObjectReading
{
public:
    /// @param catalog whose record it is; borrowed.
    ObjectReading(const pdfObjectCatalog& catalog, const ObjectRecord& record);

    ObjectReading(const ObjectReading&) = delete;
    ObjectReading& operator=(const ObjectReading&) = delete;

    std::int64_t objNo() const { return theDetail.objNo; }
    std::int64_t objGen() const { return theDetail.objGen; }
    const ObjectEntries& entries() const { return theDetail.entries; }
    /// The kids that the entries speak of are some of these.
    const ChunkedVector<Kid>& kids() const { return *theKids; }
    /// The second line; empty where there is none.
    std::string_view text() const { return theText; }

private:
    void readAgain(const pdfObjectCatalog& catalog, const ObjectRecord& record);

    ObjectDetail theDetail;
    std::string_view theText;
    ChunkedVector<Kid> theOwnKids;
    const ChunkedVector<Kid>* theKids = &theOwnKids;
};

/// The lines of a record's object, as pdfObject::theStringArray() has them, read from the file.
std::vector<std::string_view> readLines(
    const pdfObjectCatalog& catalog, const ObjectRecord& record);

} // namespace tarnwick
