#include "PaneSource.h"

#include "text/PlainTextStorage.h"
#include "text/StyledTextStorage.h"

#include <limits>
#include <utility>

namespace tarnwick {

namespace {

template<class Storage> std::shared_ptr<const Storage> storageOf(const PlainTextView* view)
{
    return view ? std::dynamic_pointer_cast<const Storage>(view->textStorage()) : nullptr;
}

TextRange lineRange(const TextStorage& storage, std::size_t line)
{
    const auto index = static_cast<qsizetype>(line);
    return {{index, 0}, {index, storage.lineLength(index)}};
}

} // namespace

PaneSource::PaneSource(PlainTextView* view, std::shared_ptr<const SourceText> source)
    : theView(view)
    , theSource(std::move(source))
{
}

bool PaneSource::hasObjects() const
{
    return theSource && storageOf<StyledTextStorage>(theView);
}

std::optional<ScannedReference> PaneSource::referenceAt(TextPosition place) const
{
    const auto storage = storageOf<StyledTextStorage>(theView);
    const auto reference = storage ? storage->referenceAt(place) : std::nullopt;
    return reference ? std::optional(reference->target) : std::nullopt;
}

std::optional<pdfObject> PaneSource::objectAt(TextPosition place) const
{
    if (!hasObjects())
        return std::nullopt;
    const auto storage = storageOf<StyledTextStorage>(theView);
    if (const auto object = storage->text().objectOfLine(static_cast<std::size_t>(place.line)))
        return object;
    const std::optional<std::size_t> offset = storage->offsetOf(place);
    return offset ? catalog().recordAt(*offset) : std::nullopt;
}

std::int64_t PaneSource::versionAt(TextPosition place) const
{
    const std::optional<pdfObject> object = objectAt(place);
    return object ? object->objVer() : std::numeric_limits<std::int64_t>::max();
}

std::optional<std::size_t> PaneSource::offsetAt(TextPosition place) const
{
    if (const auto raw = storageOf<PlainTextStorage>(theView); raw && theSource)
        return static_cast<std::size_t>(raw->positionOf(place));
    const auto storage = storageOf<StyledTextStorage>(theView);
    if (!storage)
        return std::nullopt;
    const std::optional<std::size_t> offset = storage->offsetOf(place);
    return offset ? offset : storage->text().offsetOfLine(static_cast<std::size_t>(place.line));
}

std::optional<ByteRange> PaneSource::bytesAt(TextPosition place) const
{
    if (theView && theView->hasSelection()) {
        const std::optional<std::size_t> begin = offsetAt(theView->selection().begin);
        const std::optional<std::size_t> end = offsetAt(theView->selection().end);
        if (begin && end && *begin < *end)
            return ByteRange{*begin, *end};
    }
    const std::optional<pdfObject> object = objectAt(place);
    return object ? std::optional(object->range()) : std::nullopt;
}

std::optional<TextRange> PaneSource::placeOf(const pdfObject& object) const
{
    const auto storage = storageOf<StyledTextStorage>(theView);
    if (!storage)
        return std::nullopt;
    const StyledText& text = storage->text();
    std::optional<std::size_t> line = text.lineOfOffset(object.range().begin);
    if (!line)
        line = text.lineOfObject(object);
    return line ? std::optional(lineRange(*storage, *line)) : std::nullopt;
}

std::optional<TextRange> PaneSource::placeOf(std::size_t offset) const
{
    if (!theSource || offset >= theSource->theString().size())
        return std::nullopt;
    std::optional<TextPosition> begin;
    if (const auto storage = storageOf<StyledTextStorage>(theView))
        begin = storage->placeOf(offset);
    else if (const auto raw = storageOf<PlainTextStorage>(theView))
        begin = raw->placeOf(static_cast<qsizetype>(offset));
    if (!begin)
        return std::nullopt;
    return TextRange{*begin, {begin->line, begin->unit + 1}};
}

} // namespace tarnwick
