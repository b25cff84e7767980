#pragma once

#include "EngineDocument.h"
#include "ObjectText.h"
#include "protocol/TableMessages.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tarnwick {

/// Tells a portion of the file's table, and of objects within object streams what they are and
/// refer to. What had to be read for that is dropped again, so that a table of millions does not
/// fill the engine.
class TableReader
{
public:
    explicit TableReader(const EngineDocument& document);

    /// @param first number that the portion begins with. @returns FZ_ERROR_NONE or
    ///   FZ_ERROR_MEMORY; what else goes wrong is unreadable.
    int read(int first, TableResult& result);

private:
    struct Entry
    {
        char type = 0;
        int generation = 0; ///< of one in an object stream its place there
        std::int64_t offset = 0; ///< of one in an object stream the stream's number
        bool isLoaded = false;
    };
    int readRows(int first, TableResult& result);
    bool wasRepaired() const;
    Entry entryOf(int number) const;
    EngineTableRow rowOf(int number, const Entry& entry) const;
    void findSections();
    std::uint64_t sectionOf(int number) const;
    bool takeMember(const Entry& entry, EngineTableRow& row);
    std::string spelled(int number);
    std::size_t kindOf(const std::string& text);
    void readRoots(TableResult& result);

    const EngineDocument& theDocument;
    fz_context* theContext;
    ObjectText theText;
    std::unordered_set<std::int64_t> theContainers; ///< that have been unpacked
    std::unordered_map<std::string, std::size_t> theKinds;
    std::vector<EngineTableRow> theRows;
    std::vector<std::uint32_t> theReferences;
    std::vector<std::uint64_t> theSections; ///< where the parts of the table begin, the last first
    std::size_t theSpelled = 0; ///< bytes
    bool theIsCut = false;
    int theError = FZ_ERROR_NONE;
};

} // namespace tarnwick
