#pragma once

#include "protocol/EngineLimits.h"
#include "protocol/EngineProtocol.h"
#include "protocol/MessageFields.h"
#include "protocol/ObjectMessages.h"

namespace tarnwick {

/// Messages on the file's table of all objects, its cross-reference (ISO 32000-2, 7.5.4 and 7.5.8),
/// as readers use it: of a number that several saves speak of, what the last one says.

/// An entry of the table.
struct EngineTableRow
{
    /// Of an object in the file where it begins, below the file's size. Of a free number where the
    /// section of the table that frees it begins; 0 where that is not known.
    std::uint64_t offset = 0;
    std::uint32_t number = 0;
    std::uint32_t container = 0; ///< number of the object stream that holds it; 0 outside of them
    std::uint32_t index = 0; ///< its place there, from 0
    std::uint32_t references = 0; ///< how many of the message's references are in this object
    std::uint16_t generation = 0;
    std::uint16_t kind = 0; ///< of one in an object stream: its place among the message's kinds
    std::uint8_t state = 0; ///< EngineObjectState, but isMissing
    std::uint8_t reserved[3] = {};
};
static_assert(sizeof(EngineTableRow) == 32);

/// What an object is, as objectKind() has it.
struct EngineKind
{
    std::string name; ///< printable ASCII

    static constexpr void describe(auto& fields, auto& kind)
    {
        fields.text(kind.name, longestKind);
    }
};

struct TableResult
{
    int length = 0; ///< above the highest number that the table has
    int next = 0; ///< the first number that the rows do not speak of; length when none is left
    /// The library has made a table of its own, since the file's is of no use.
    bool wasRepaired = false;
    bool isCut = false; ///< an object has more references than there is room for
    PackedItems<EngineTableRow> rows; ///< in the order of their numbers; those missing left out
    std::vector<EngineKind> kinds; ///< of objects in object streams
    /// The numbers that objects in object streams refer to, those of one behind those of another.
    PackedItems<std::uint32_t> references;
    PackedItems<std::uint32_t> roots; ///< that the trailer refers to

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.length, 0, maximumObjectNumber + 1);
        fields.number(message.next, 0, maximumObjectNumber + 1);
        fields.flag(message.wasRepaired);
        fields.flag(message.isCut);
        fields.items(message.rows, maximumTableRows);
        fields.list(message.kinds, maximumTableKinds);
        fields.items(message.references, maximumTableReferences);
        fields.items(message.roots, maximumTableReferences);
    }
};

/// A portion of the table.
struct TableRequest
{
    static constexpr EngineRequest kind = EngineRequest::isTable;
    using Result = TableResult;

    int first = 0; ///< number that it begins with

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.first, 0, maximumObjectNumber + 1);
    }
};

} // namespace tarnwick
