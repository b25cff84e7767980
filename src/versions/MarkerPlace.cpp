#include "MarkerPlace.h"

#include "analysis/ObjectSource.h"
#include "analysis/StoredStream.h"
#include "analysis/StructureWords.h"

#include <algorithm>

namespace tarnwick {

MarkerPlace::MarkerPlace(std::string_view bytes, std::vector<CrossReferenceRow> rows)
    : theBytes(bytes)
    , theRows(std::move(rows))
{
    std::erase_if(theRows, [bytes](const CrossReferenceRow& row) {
        return row.use != RowUse::isPlain || row.place >= bytes.size();
    });
    std::sort(theRows.begin(), theRows.end(),
        [](const CrossReferenceRow& a, const CrossReferenceRow& b) { return a.place < b.place; });
}

/// The number that an object is, such as the Length of a stream.
std::optional<std::int64_t> MarkerPlace::numberOf(std::uint64_t object) const
{
    const auto row = std::find_if(theRows.begin(), theRows.end(),
        [object](const CrossReferenceRow& candidate) { return candidate.number == object; });
    if (row == theRows.end())
        return std::nullopt;
    const auto begin = static_cast<std::size_t>(row->place);
    return ObjectSource(theBytes, {begin, theBytes.size()}).wholeNumber();
}

void MarkerPlace::look(std::size_t begin, std::size_t marker)
{
    theObject = begin;
    theStreamBegin = theStreamEnd = 0;
    const ByteRange range{begin, theBytes.size()};
    const ObjectSource source(theBytes, range, std::max(marker - begin, ObjectSource::usualLimit));
    std::size_t end = source.valueEnd();
    if (source.streamBegin()) {
        const SourceValue* const entry = source.entry("Length");
        std::optional<std::int64_t> length = source.integer("Length");
        if (entry && entry->token.kind == TokenKind::isReference)
            length = numberOf(static_cast<std::uint64_t>(entry->token.number));
        const StoredStream stream = findStream(theBytes, range, source, length);
        theStreamBegin = stream.range.begin;
        theStreamEnd = end = stream.range.end;
    }
    const std::size_t word = theBytes.find(LineWord::endobj, end);
    theObjectEnd = word == std::string_view::npos ? end : word;
}

std::optional<VersionFlag> MarkerPlace::flagOf(std::size_t marker)
{
    const auto behind = std::upper_bound(theRows.begin(), theRows.end(), marker,
        [](std::size_t place, const CrossReferenceRow& row) { return place < row.place; });
    const bool isKnown = theObject && marker >= *theObject && marker < theObjectEnd;
    if (!isKnown) {
        if (behind == theRows.begin())
            return std::nullopt;
        look(static_cast<std::size_t>(std::prev(behind)->place), marker);
    }
    if (marker >= theStreamBegin && marker < theStreamEnd)
        return VersionFlag::isInStream;
    if (marker >= *theObject && marker < theObjectEnd)
        return VersionFlag::isInObject;
    return std::nullopt;
}

} // namespace tarnwick
