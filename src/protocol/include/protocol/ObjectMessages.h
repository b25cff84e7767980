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

/// What an object is, where there is more to say of it than its entries.
enum class EngineObjectKind : std::uint8_t
{
    isOther,
    isImage,
    isForm,
    isFont,
    isFontProgram,
    isColourProfile,
    isEmbeddedFile,
    isFileSpec,
    isMetadata,
    isObjectStream,
    isCrossReference,
};

/// What a fact is about. Its text may have references, spelled as in an object.
enum class EngineFactKind : std::uint8_t
{
    isName, ///< of a font, a profile, a file
    isType, ///< of a font or its program; of an embedded file or a profile
    isSubset, ///< the letters before the name
    isDescendant, ///< the font within a composite one
    isProgram, ///< of a font: where it is, or that it is not embedded
    isGlyphs, ///< their number
    isEncoding,
    isToUnicode,
    isCharacters, ///< the codes that the font has widths for
    isPixels,
    isBits,
    isColours, ///< colour space
    isMask,
    isDecode,
    isBox,
    isMatrix,
    isResources,
    isGroup, ///< transparency group
    isComponents, ///< of a profile
    isDescription,
    isSize, ///< bytes
    isDate,
    isObjects, ///< in an object stream
    isExtended, ///< the object stream, the earlier section that this one goes on from
    isFile, ///< that a file specification has within the document
};

struct EngineFact
{
    EngineFactKind kind = EngineFactKind::isName;
    std::string text; ///< one line of ASCII

    static constexpr void describe(auto& fields, auto& fact)
    {
        fields.choice(fact.kind, EngineFactKind::isFile);
        fields.text(fact.text, longestFact);
    }
};

struct FactsResult
{
    EngineObjectKind kind = EngineObjectKind::isOther;
    std::vector<EngineFact> facts;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.choice(message.kind, EngineObjectKind::isCrossReference);
        fields.list(message.facts, maximumFacts);
    }
};

/// What an image, a font, a form or another object of a known kind is like. Apart from what an
/// object says, since it may have the library read fonts and profiles.
struct FactsRequest
{
    static constexpr EngineRequest kind = EngineRequest::isFacts;
    using Result = FactsResult;

    int number = 0; ///< any

    static constexpr void describe(auto& fields, auto& message) { fields.number(message.number); }
};

enum class EnginePictureEnd : std::uint8_t
{
    isDrawn,
    isDamaged, ///< drawn as far as its data goes
    isUnreadable, ///< nothing is drawn
};

/// The pixels are in the shared memory: for each four bytes blue, green, red and alpha, the colours
/// multiplied by it, row by row from the top.
struct PictureResult
{
    int width = 0; ///< pixels that were brought; 0 where nothing is drawn
    int height = 0;
    EnginePictureEnd end = EnginePictureEnd::isUnreadable;
    std::string remark; ///< why it is not whole; ASCII

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.width, 0, maximumPictureSide);
        fields.number(message.height, 0, maximumPictureSide);
        fields.choice(message.end, EnginePictureEnd::isUnreadable);
        fields.text(message.remark, longestReason);
    }
};

/// An image by itself; one with sides beyond maximumPictureSide comes reduced.
struct PictureRequest
{
    static constexpr EngineRequest kind = EngineRequest::isPicture;
    static constexpr bool writesFile = true;
    using Result = PictureResult;

    int number = 0; ///< of its object, any

    static constexpr void describe(auto& fields, auto& message) { fields.number(message.number); }
};

} // namespace tarnwick
