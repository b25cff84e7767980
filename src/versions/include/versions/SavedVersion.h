#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick {

/// What is special about a saved version. The first four say why a marker ends no version that
/// stands by itself.
enum class VersionFlag : std::uint8_t
{
    isLinearizedFirstPart, ///< ends the first part of a linearized file (ISO 32000-2, annex F)
    isInStream, ///< the marker is data of a stream
    isInObject, ///< the marker stands in a string or a comment of an object
    isWithoutCrossReference, ///< no startxref of its own, or one that leads to an earlier save's
    isRepaired, ///< its cross-reference cannot be read: a reader has to look for the objects
    isBehindUnknown, ///< the version before it cannot be known, nor what this one changed
    isBeyondLimits, ///< there is more cross-reference in the file than is looked into
    isNotInChain, ///< the last version's cross-references do not lead back to it
    isChainLoop, ///< its cross-references lead back to themselves
    isBeforeHeader, ///< bytes stand before the header; of the first version
    isBehindMarker, ///< more than blanks stand behind the last marker; of the last version
};
inline constexpr std::size_t versionFlagCount = 11;

/// A word for scripts: "marker-in-stream".
std::string_view nameOf(VersionFlag flag);

/// Numbers of objects that a save has changed, each list ascending and without object 0.
struct ObjectChanges
{
    std::vector<std::uint32_t> added; ///< in use now, and not before
    /// In use before and now, but elsewhere: another offset, generation or object stream, or in an
    /// object stream that is itself replaced. What they say may be the same.
    std::vector<std::uint32_t> replaced;
    std::vector<std::uint32_t> freed; ///< in use before, and not now

    bool operator==(const ObjectChanges&) const = default;
};

/// One marker "%%EOF" and the prefix of the file that ends with it (versionCuts()).
struct SavedVersion
{
    /// Where a startxref leads.
    enum class Target : std::uint8_t
    {
        isUnknown, ///< not looked at so far
        isNothing, ///< to no cross-reference, or there is no startxref
        isTable,
        isStream,
    };

    std::size_t marker = 1; ///< which one of the file, from 1
    /// Which save, from 1: the number of versions of their own up to here. A marker that ends none
    /// has the number of the last one before it, or 1.
    std::size_t save = 1;
    std::size_t begin = 0; ///< where the version before ends; bytes from there on are new
    std::size_t end = 0; ///< the cut: bytes of the prefix
    /// What the last startxref between begin and end says; nothing where there is none.
    std::optional<std::uint64_t> startxref;
    Target target = Target::isUnknown;
    std::optional<std::uint64_t> prev; ///< as the cross-reference says that startxref leads to
    std::optional<std::uint32_t> root; ///< number of this version's catalog, as its trailer says
    std::optional<std::uint32_t> info; ///< number of its Info dictionary
    bool isEncrypted = false;
    bool isOwn = false; ///< a version of its own, which a reader can open
    /// Against the version before it; empty in the first. Nothing where that cannot be known.
    std::optional<ObjectChanges> changes;
    std::vector<VersionFlag> flags; ///< ascending, each once

    std::size_t bytesAdded() const { return end - begin; }
    bool has(VersionFlag flag) const;
};

} // namespace tarnwick
