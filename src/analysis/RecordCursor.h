#pragma once

#include "CodeScan.h"
#include "analysis/pdfObjectCatalog.h"

#include <cstddef>
#include <optional>

namespace tarnwick {

/// Says of places in a file, asked about in rising order, whether they are code and whose.
class RecordCursor
{
public:
    /// @param catalog of the file; borrowed.
    explicit RecordCursor(const pdfObjectCatalog& catalog)
        : theCatalog(catalog)
        , theCode(catalog.bytes())
    {
    }

    /// Whether the token that begins at an offset is code. Precondition: no less than before.
    bool isCode(std::size_t offset)
    {
        moveTo(offset);
        return theCode.isCode(region(offset), offset);
    }

    /// The record whose object holds the offset that isCode() was last asked about.
    std::optional<std::size_t> owner(std::size_t offset)
    {
        return theCode.isBehindEnd() ? std::nullopt : record(offset);
    }

    /// The record that holds an offset; nothing where none does. Precondition: no less than before.
    std::optional<std::size_t> record(std::size_t offset)
    {
        moveTo(offset);
        const bool isWithin = theRecord < theCatalog.size() && theRange.begin <= offset;
        return isWithin ? std::optional(theRecord) : std::nullopt;
    }

private:
    /// Finds the first record that ends behind an offset: mostly the same as last time, or soon
    /// behind that.
    void moveTo(std::size_t offset)
    {
        constexpr std::size_t mostSteps = 8;
        for (std::size_t steps = 0; offset >= theRange.end; ++steps) {
            theRecord = hasRange && steps < mostSteps ? theRecord + 1
                                                      : theCatalog.firstEndingBehind(offset);
            hasRange = true;
            const std::size_t end = theCatalog.bytes().size();
            theRange = theRecord < theCatalog.size() ? theCatalog.object(theRecord).range()
                                                     : ByteRange{end, end};
        }
    }

    /// The record, or what stands before it and behind the one before that.
    ByteRange region(std::size_t offset) const
    {
        if (theRange.begin <= offset)
            return theRange;
        return {theRecord > 0 ? theCatalog.object(theRecord - 1).range().end : 0, theRange.begin};
    }

    const pdfObjectCatalog& theCatalog;
    CodeScan theCode;
    std::size_t theRecord = 0;
    ByteRange theRange; ///< of that record
    bool hasRange = false;
};

} // namespace tarnwick
