#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick {

/// A reference as it stands in a text: "17 0 R" in source (ISO 32000-2, 7.3.10), "(17, 0, 2)" in an
/// object list.
struct ScannedReference
{
    std::size_t begin = 0; ///< offset of its first character in the text
    std::size_t end = 0; ///< behind its last one
    /// What does not fit into 64 bits is the largest number that does.
    std::int64_t objNo = 0;
    std::int64_t objGen = 0;
    std::optional<std::int64_t> objVer; ///< saved version; an object list alone gives it

    bool operator==(const ScannedReference&) const = default;
};

/// Finds references in source and in object lists without looking at more than is asked for: lines
/// can be a gigabyte long.
///
/// Text is a string view of bytes or of UTF-16 units (lines as StyledText gives them). A reference
/// stands between characters that are no part of a word, its parts are separated by white space,
/// line breaks included: one that is broken over two lines is found in a text that holds both lines
/// with the break between them, as the file's bytes do. In a single line of a listing it is not
/// found; the bytes at offsetOfLine() of the listing have the rest. Signs, fractions and comments
/// make no reference. Strings and comments around a reference are not seen: whoever must not take
/// "(see 17 0 R)" for a reference asks SourceLexer.
namespace ReferenceScan {

/// What is read before and behind the place that is asked about. A longer one is not seen.
inline constexpr std::size_t reach = 64;

/// References that share a character with the stretch of count characters from begin on, in order.
/// Precondition: begin <= text.size().
/// @{
std::vector<ScannedReference> inSource(std::string_view text, std::size_t begin, std::size_t count);
std::vector<ScannedReference> inSource(
    std::u16string_view text, std::size_t begin, std::size_t count);
std::vector<ScannedReference> inObjectList(
    std::u16string_view text, std::size_t begin, std::size_t count);
/// @}

/// The reference that holds a position or ends there, as a caret stands between characters.
/// Precondition: position <= text.size().
/// @{
std::optional<ScannedReference> sourceReferenceAt(std::string_view text, std::size_t position);
std::optional<ScannedReference> sourceReferenceAt(std::u16string_view text, std::size_t position);
std::optional<ScannedReference> listReferenceAt(std::u16string_view text, std::size_t position);
/// @}

/// The reference whose "R" stands at an offset. Reads reach characters before it and one behind.
/// Precondition: letter < text.size().
std::optional<ScannedReference> endingAt(std::string_view text, std::size_t letter);

} // namespace ReferenceScan

} // namespace tarnwick
