#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <stop_token>
#include <string_view>
#include <vector>

namespace tarnwick {

/// What an object is to a person.
enum class ObjectGroup : std::uint8_t
{
    isOther,
    isPageContent, ///< pages and what they draw
    isAnnotation, ///< annotations, form fields and their values, signatures
    isMetadata,
    isStructure, ///< page tree, outline, names, tags
    isFontOrImage,
    isSetting, ///< the catalog, and what says how the document is shown and protected
};
inline constexpr std::size_t objectGroupCount = 7;

/// A word for scripts ("page-content").
std::string_view nameOf(ObjectGroup group);

/// A reference in an object.
struct SignLink
{
    std::uint64_t path = 0; ///< stands for the keys and places that lead to it
    std::uint32_t target = 0; ///< number of an object
    bool isUpward = false; ///< to what the object belongs to
};

/// What an object is known by: two of the same digests say the same, whatever the order of their
/// keys, the spelling of numbers and strings, and how their streams are packed.
struct ObjectSign
{
    using Digest = std::array<std::uint8_t, 32>;

    std::uint32_t number = 0;
    ObjectGroup group = ObjectGroup::isOther;
    bool isReadable = true;
    bool isReached = true; ///< the trailer leads to it
    bool isStream = false;
    bool isPacked = false; ///< data is of the stream as it is stored: it cannot be decoded
    std::uint32_t lengthObject = 0; ///< number of the object that has the stream's length, or 0
    Digest entries = {}; ///< of the value
    Digest shape = {}; ///< of the value, whatever its references lead to
    Digest data = {}; ///< of the stream
    std::vector<SignLink> links; ///< in the order of their paths
};

/// The objects of a document, or those that matter.
struct ObjectSigns
{
    std::vector<ObjectSign> list; ///< ascending by number
    std::uint32_t root = 0; ///< number of the catalog; 0 if there is none
    std::uint32_t info = 0; ///< likewise of the Info dictionary
};

/// What became of an object.
struct ObjectDifference
{
    enum class Kind : std::uint8_t
    {
        isAdded,
        isRemoved,
        isChanged,
        isMoved, ///< it says the same under another number
        isRewritten, ///< it says the same under its number, but was written again
        isUnreadable, ///< it cannot be read on one side or both, so nothing can be said
    };

    Kind kind = Kind::isAdded;
    ObjectGroup group = ObjectGroup::isOther;
    std::uint32_t before = 0; ///< number; 0 for one that was added
    std::uint32_t after = 0; ///< 0 for one that was removed
    bool isStream = false;
    bool hasOtherEntries = false; ///< of isChanged: its value differs
    bool hasOtherData = false; ///< of isChanged: its stream differs

    bool operator==(const ObjectDifference&) const = default;
};

/// A word for scripts ("added").
std::string_view nameOf(ObjectDifference::Kind kind);
/// Whether the documents differ in it: written again, or under another number, is no difference.
/// Of what cannot be read nobody knows.
bool isDifference(ObjectDifference::Kind kind);

/// Compares objects of two versions of one file, in which an object's number stays its own. Numbers
/// that are nothing but the length of a stream are passed over.
/// @param before, after the objects that a save has added, replaced or freed, or all.
/// @param rewritten numbers of those that the file has twice, ascending; those that say the same
///   are told of as isRewritten.
/// @returns by group, then by number.
std::vector<ObjectDifference> compareVersions(const ObjectSigns& before, const ObjectSigns& after,
    const std::vector<std::uint32_t>& rewritten);

/// Compares all objects of two documents, whose numbers need have nothing in common: objects pair
/// that say the same and lead to what says the same, then those that the same way leads to from a
/// pair, the catalog's first; then those that say the same where that is said once; then by number.
/// What is the same under its own number is not told of, nor what a trailer does not lead to.
/// @param[out] partners number of the partner by the number before; may be null.
std::vector<ObjectDifference> compareDocuments(const ObjectSigns& before, const ObjectSigns& after,
    std::map<std::uint32_t, std::uint32_t>* partners = nullptr, const std::stop_token& stop = {});

} // namespace tarnwick
