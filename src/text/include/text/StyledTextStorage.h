#pragma once

#include "analysis/ReferenceScan.h"
#include "analysis/StyledText.h"
#include "text/TextStorage.h"

namespace tarnwick {

/// Serves the lines of a listing to a text view.
class StyledTextStorage : public TextStorage
{
public:
    explicit StyledTextStorage(StyledText text);

    qsizetype lineCount() const override;
    qsizetype lineLength(qsizetype index) const override;
    TextLine line(
        qsizetype index, qsizetype position = 0, qsizetype count = 1'000'000) const override;
    std::optional<std::size_t> lineOffset(qsizetype index) const override;
    std::optional<TextRange> linkAt(TextPosition position) const override;

    /// A reference to an object, as the text has it.
    struct Reference
    {
        ScannedReference target;
        TextRange range;
    };
    /// The reference that holds a place or ends there, in the listing or in the object list.
    std::optional<Reference> referenceAt(TextPosition position) const;

    const StyledText& text() const { return theText; }
    /// The file's offset of a place in the listing; nothing for other places.
    std::optional<std::size_t> offsetOf(TextPosition position) const;
    /// The place in the listing that shows an offset of the file; nothing without a listing.
    std::optional<TextPosition> placeOf(std::size_t offset) const;

private:
    bool isElided(std::size_t line) const;
    std::optional<Reference> listReferenceAt(TextPosition position) const;
    std::optional<Reference> sourceReferenceAt(TextPosition position) const;

    StyledText theText;
    qsizetype theLineCount;
};

} // namespace tarnwick
