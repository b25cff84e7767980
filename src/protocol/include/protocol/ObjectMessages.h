#pragma once

#include "protocol/EngineLimits.h"
#include "protocol/EngineProtocol.h"
#include "protocol/MessageFields.h"

namespace tarnwick {

/// Messages on single objects: what one says, set out to be read, and what its stream holds. They
/// say what the file's cross-reference leads to: of an object that was replaced, the latest.

/// What a number of an object stands for in the file (ISO 32000-2, 7.3.10 and 7.5.4).
enum class EngineObjectState : std::uint8_t
{
    isMissing, ///< the file's table has no entry for it
    isFree, ///< its entry says that the object was deleted, or never was
    isUnreadable, ///< the entry leads to what is no object
    isPresent,
};

/// One filter of a stream, in the order in which a reader undoes them.
struct EngineFilter
{
    std::string name; ///< spelled with its slash
    std::string parameters; ///< spelled on one line; empty without any

    static constexpr void describe(auto& fields, auto& filter)
    {
        fields.text(filter.name, longestFilterText);
        fields.text(filter.parameters, longestFilterText);
    }
};

struct ObjectResult
{
    EngineObjectState state = EngineObjectState::isMissing;
    int generation = 0;
    std::uint64_t offset = 0; ///< of the object in the file; 0 in an object stream
    int container = 0; ///< number of the object stream that holds it; 0 outside of them
    int index = 0; ///< its place there, from 0
    std::string text; ///< an entry a line, indented; ASCII
    bool isCut = false; ///< text is the beginning: the object is longer or deeper
    bool isStream = false;
    std::vector<EngineFilter> filters; ///< of the stream, the first maximumFilters
    std::uint32_t filterCount = 0; ///< all of them
    std::int64_t statedLength = -1; ///< the stream's Length; -1 where it is no number

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.choice(message.state, EngineObjectState::isPresent);
        fields.number(message.generation, 0, 65535);
        fields.number(message.offset);
        fields.number(message.container, 0, maximumObjectNumber);
        fields.number(message.index, 0, maximumObjectNumber);
        fields.text(message.text, longestObjectText);
        fields.flag(message.isCut);
        fields.flag(message.isStream);
        fields.list(message.filters, maximumFilters);
        fields.number(message.filterCount);
        fields.number(
            message.statedLength, std::int64_t{-1}, std::numeric_limits<std::int64_t>::max());
    }
};

/// What an object says.
struct ObjectRequest
{
    static constexpr EngineRequest kind = EngineRequest::isObject;
    using Result = ObjectResult;

    int number = 0; ///< any

    static constexpr void describe(auto& fields, auto& message) { fields.number(message.number); }
};

enum class EngineStreamForm : std::uint8_t
{
    isRaw, ///< as stored, but without the file's encryption
    isDecoded, ///< with all of its filters undone
};

/// How far the reading of a stream came.
enum class EngineStreamEnd : std::uint8_t
{
    isWhole,
    isStopped, ///< at the limit
    isDamaged, ///< what follows makes no sense
    isUnknown, ///< nothing was read: a filter is none that the engine can undo
    isNone, ///< the object has no stream
};

/// The bytes of a stream are in the shared memory.
struct StreamResult
{
    std::uint64_t size = 0; ///< bytes
    EngineStreamEnd end = EngineStreamEnd::isNone;
    /// What the library says of the damage or in passing, the filter that is unknown; mostly empty.
    std::string remark;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.size, std::uint64_t{0}, largestStream);
        fields.choice(message.end, EngineStreamEnd::isNone);
        fields.text(message.remark, longestReason);
    }
};

/// What a stream holds; the engine reports each mebibyte.
struct StreamRequest
{
    static constexpr EngineRequest kind = EngineRequest::isStream;
    static constexpr bool writesFile = true;
    using Result = StreamResult;

    int number = 0; ///< of its object, any
    EngineStreamForm form = EngineStreamForm::isDecoded;
    std::uint64_t limit = 0; ///< bytes

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.number);
        fields.choice(message.form, EngineStreamForm::isDecoded);
        fields.number(message.limit, std::uint64_t{0}, largestStream);
    }
};

} // namespace tarnwick
