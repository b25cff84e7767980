#include "analysis/StoredStream.h"

#include "analysis/StructureWords.h"

#include <algorithm>

namespace tarnwick {

namespace {

bool endstreamFollows(std::string_view bytes, std::size_t position)
{
    while (position < bytes.size() && isSourceSpace(bytes[position]))
        ++position;
    return bytes.substr(position).starts_with(LineWord::endstream);
}

} // namespace

StoredStream findStream(std::string_view bytes, ByteRange object, const ObjectSource& source,
    std::optional<std::int64_t> length)
{
    StoredStream stream;
    stream.length = length;
    const std::size_t begin = *source.streamBegin();
    const std::size_t most = bytes.size() - begin;
    if (length && *length >= 0 && static_cast<std::uint64_t>(*length) <= most) {
        stream.range = {begin, begin + static_cast<std::size_t>(*length)};
        if (endstreamFollows(bytes, stream.range.end))
            return stream;
    }
    const std::size_t objectEnd = std::max(begin, object.end);
    std::size_t end = bytes.substr(0, objectEnd).find(LineWord::endstream, begin);
    stream.end = end == std::string_view::npos ? StoredStream::End::isMissing
                                               : StoredStream::End::isKeyword;
    end = std::min(end, objectEnd);
    if (end > begin && bytes[end - 1] == '\n')
        --end;
    if (end > begin && bytes[end - 1] == '\r')
        --end;
    stream.range = {begin, end};
    return stream;
}

std::optional<StoredStream> storedStream(
    const pdfObjectCatalog& catalog, const pdfObject& object, const ObjectSource& source)
{
    if (!source.streamBegin())
        return std::nullopt;
    const SourceValue* length = source.entry("Length");
    std::optional<std::int64_t> number = source.integer("Length");
    if (length && length->token.kind == TokenKind::isReference) {
        const std::optional<pdfObject> target = catalog.find(length->token.number, object.objVer());
        if (target)
            number = ObjectSource(catalog.bytes(), target->range()).wholeNumber();
    }
    return findStream(catalog.bytes(), object.range(), source, number);
}

} // namespace tarnwick
