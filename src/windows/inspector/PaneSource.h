#pragma once

#include "analysis/ReferenceScan.h"
#include "analysis/SourceText.h"
#include "text/PlainTextView.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tarnwick {

/// A pane of the inspector with the source that it shows: which object stands where in it.
class PaneSource
{
public:
    PaneSource() = default;
    /// @param view borrowed. @param source null while the pane has none.
    PaneSource(PlainTextView* view, std::shared_ptr<const SourceText> source);

    PlainTextView* view() const { return theView; }
    /// Null while the pane has none. What pdfObject values look into lives as long.
    const std::shared_ptr<const SourceText>& source() const { return theSource; }
    /// Whether objects are known here: undecorated texts are not scanned.
    bool hasObjects() const;
    /// Precondition: hasObjects().
    const pdfObjectCatalog& catalog() const { return theSource->theCatalog(); }

    /// The reference that holds a place or ends there.
    std::optional<ScannedReference> referenceAt(TextPosition place) const;
    /// The object in whose lines a place is, or that a line of the object list describes.
    std::optional<pdfObject> objectAt(TextPosition place) const;
    /// The saved version as of which a reference at a place is to be followed: that of its object;
    /// the latest where none holds it.
    std::int64_t versionAt(TextPosition place) const;
    /// The file's offset at a place; of a line of the object list that of its object.
    std::optional<std::size_t> offsetAt(TextPosition place) const;

    /// The file's bytes that what is selected shows, else those of the object at a place.
    std::optional<ByteRange> bytesAt(TextPosition place) const;

    /// Where an object begins: its first line in the listing, else its line in the object list.
    std::optional<TextRange> placeOf(const pdfObject& object) const;
    /// The byte at an offset of the file; nothing in a pane without listing, or behind the file.
    std::optional<TextRange> placeOf(std::size_t offset) const;

private:
    PlainTextView* theView = nullptr;
    std::shared_ptr<const SourceText> theSource;
};

} // namespace tarnwick
