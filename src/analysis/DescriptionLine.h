#pragma once

#include "analysis/ChunkedVector.h"
#include "analysis/pdfObject.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// The reference list of a page tree node's Kids: "[(3, 0, 1), (4, 0, 1)]".
class KidsText
{
public:
    /// @param kids the catalog's kids, borrowed. @param first, count which of them are the node's.
    /// @param version that of the node's record.
    KidsText(
        const ChunkedVector<Kid>& kids, std::size_t first, std::size_t count, std::int64_t version);

    std::size_t length() const;
    /// Appends a stretch: at most count characters from position on, found without making the list
    /// before it. Precondition: position <= length().
    void append(std::size_t position, std::size_t count, std::u16string& text) const;

private:
    std::size_t offsetOfKid(std::size_t index) const;
    void appendKid(std::size_t index, std::string& text) const;

    const ChunkedVector<Kid>& theKids;
    std::size_t theFirst;
    std::size_t theCount;
    std::int64_t theVersion;
};

/// The parts that an object's description line is made of. The head is short; the text and the kids
/// can be as long as a file, and are cut from where they lie.
struct DescriptionParts
{
    std::string head;
    std::string_view text; ///< of the file; follows the head
    bool hasEllipsis = false; ///< U+2026 follows the text
    std::optional<KidsText> kids; ///< follows the head; borrows from where the kids lie
};

/// Appends characters of the file, or of ours, to a text: byte value = character number.
void appendCharacters(std::string_view bytes, std::u16string& text);

} // namespace tarnwick
