#pragma once

#include "protocol/CrossReference.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tarnwick {

struct TableResult;

/// Puts the portions of a file's table together, as the engine tells them.
class PDFTableAnswers
{
public:
    /// @param fileSize bytes of the file.
    explicit PDFTableAnswers(std::uint64_t fileSize)
        : theFileSize(fileSize)
    {
    }

    /// Takes the next portion, which begins at next().
    /// @returns whether it makes sense, and no limit is exceeded.
    bool take(std::string_view payload);

    /// The number that the next portion begins with; 0 again where the engine had to make the table
    /// anew and all has to be told once more.
    int next() const { return theNext; }
    int length() const { return theLength; }
    bool isComplete() const { return theHasBegun && theNext >= theLength; }

    CrossReference takeTable() { return std::move(theTable); }

private:
    bool isConsistent(const TableResult& message) const;
    void takeRows(const TableResult& message);
    std::uint32_t kindOf(const std::string& name);

    std::uint64_t theFileSize;
    int theNext = 0;
    int theLength = 0;
    bool theHasBegun = false;
    CrossReference theTable;
    std::unordered_map<std::string, std::uint32_t> theKinds;
};

} // namespace tarnwick
