#pragma once

#include "protocol/CrossReferenceMessages.h"

#include <vector>

namespace tarnwick {

/// Collects the rows of one cross-reference: those that an answer has room for.
class SectionRows
{
public:
    /// @param rows of the answer, borrowed; rows are put behind. @param first rows that are known.
    SectionRows(std::vector<EngineRow>& rows, std::uint32_t first)
        : theRows(rows)
        , theBegin(rows.size())
        , theFirst(first)
    {
    }

    /// Takes a row as it stands in the file; one that can be no object's is passed over.
    /// @returns false when no more are wanted.
    bool take(EngineRowUse use, std::int64_t number, std::uint64_t place, std::uint64_t detail);
    void forget() { theRows.resize(theBegin); }

    bool isWhole() const { return theIsWhole; }
    std::uint32_t count() const { return static_cast<std::uint32_t>(theRows.size() - theBegin); }

private:
    std::vector<EngineRow>& theRows;
    std::size_t theBegin;
    std::uint32_t theFirst;
    std::uint32_t theSeen = 0;
    bool theIsWhole = true;
};

} // namespace tarnwick
