#pragma once

#include "protocol/EngineLimits.h"
#include "protocol/EngineProtocol.h"
#include "protocol/MessageFields.h"

#include <array>

namespace tarnwick {

/// Messages on what objects are known by when documents are compared.

/// What an object is to a person, by what it says of itself and how it is reached.
enum class EngineObjectRole : std::uint8_t
{
    isOther,
    isPageContent,
    isAnnotation, ///< or a form's field or value, a signature
    isMetadata,
    isStructure,
    isFontOrImage,
    isSetting,
};

enum class EngineSignForm : std::uint8_t
{
    isUnreadable,
    isPlain,
    isStream,
};

using EngineDigest = std::array<std::uint8_t, 32>; ///< SHA-256

/// What one object says, its entries in one order and its numbers and strings in one spelling. Of a
/// stream Length and the filters that are undone do not count.
struct EngineObjectSign
{
    std::uint32_t number = 0;
    std::uint32_t lengthObject = 0; ///< number of the object that Length refers to; 0 without one
    std::uint32_t links = 0; ///< of this object in the answer
    std::uint8_t role = 0; ///< EngineObjectRole
    std::uint8_t form = 0; ///< EngineSignForm
    std::uint8_t isPacked = 0; ///< 1: data is of the stream as it is stored, not decoded
    std::uint8_t isReached = 0; ///< 1: the trailer leads to it
    EngineDigest entries = {}; ///< of the value, with the numbers that it refers to
    EngineDigest shape = {}; ///< of the value without them
    EngineDigest data = {}; ///< of the stream; zeros without one
};
static_assert(sizeof(EngineObjectSign) == 112);

/// A reference in an object's value.
struct EngineObjectLink
{
    std::uint64_t path = 0; ///< stands for the keys and places that lead to it
    std::uint32_t target = 0; ///< number of an object
    std::uint32_t isUpward = 0; ///< 1: to what the object belongs to, as Parent
};
static_assert(sizeof(EngineObjectLink) == 16);

struct SignResult
{
    std::uint32_t next = 0; ///< where to go on; 0 at the end
    int root = 0; ///< number of the catalog; 0 where it has none
    int info = 0; ///< likewise of the Info dictionary
    PackedItems<EngineObjectSign> signs; ///< ascending
    PackedItems<EngineObjectLink> links; ///< of all of them, one object's behind another's

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.next);
        fields.number(message.root, 0, maximumObjectNumber);
        fields.number(message.info, 0, maximumObjectNumber);
        fields.items(message.signs, maximumSigns);
        fields.items(message.links, maximumSignLinks);
    }
};

/// What the document's objects are known by, but for object and cross-reference streams, whose
/// members count by themselves.
struct SignRequest
{
    static constexpr EngineRequest kind = EngineRequest::isSign;
    using Result = SignResult;

    std::uint32_t first = 0; ///< the lowest number
    PackedItems<std::uint32_t> numbers; ///< ascending; all where there are none

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.first);
        fields.items(message.numbers, maximumSigns);
    }
};

} // namespace tarnwick
