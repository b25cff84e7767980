#pragma once

#include "analysis/SourceLexer.h"
#include "analysis/pdfObject.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// A value in an object's dictionary, as far as one token says it.
struct SourceValue
{
    std::string key; ///< of its entry, without slash, "#xx" resolved
    /// The value's token; of an array or a dictionary the one that opens it.
    SourceToken token;
};

/// What stands between an object's header and its stream or end: the object's value, read with the
/// rules of PDF instead of line by line.
class ObjectSource
{
public:
    /// Nearly every object; longer ones are often arrays of numbers.
    static constexpr std::size_t usualLimit = 65536;

    /// @param bytes the file's, borrowed. @param range of an object or a trailer:
    /// pdfObject::range().
    /// @param limit bytes of the source that are read at most.
    ObjectSource(std::string_view bytes, ByteRange range, std::size_t limit = usualLimit);

    /// The entries of the object's own dictionary, in order; none where it is something else.
    const std::vector<SourceValue>& entries() const { return theEntries; }
    /// The last entry of a key; null where there is none.
    const SourceValue* entry(std::string_view key) const;
    /// The name that an entry has as its value, without slash; empty where it has none.
    std::string name(std::string_view key) const;
    /// The number that an entry has as its value.
    std::optional<std::int64_t> integer(std::string_view key) const;
    /// The number that the whole object is.
    std::optional<std::int64_t> wholeNumber() const;

    /// Where the value begins: behind the header's "obj", or behind "trailer".
    std::size_t valueBegin() const { return theValueBegin; }
    /// Where the value ends: before "stream", "endobj" or the range's end.
    std::size_t valueEnd() const { return theValueEnd; }
    /// Where the stream's data begins (ISO 32000-2, 7.3.8.1); nothing for an object without one.
    std::optional<std::size_t> streamBegin() const { return theStreamBegin; }
    /// Whether the value was longer than the limit.
    bool isCut() const { return theIsCut; }

private:
    void readHeader(ByteRange range, std::size_t end);
    void readValue(SourceLexer& lexer, std::size_t end);
    void takeToken(const SourceToken& token);
    void beginStream(std::size_t wordEnd);

    std::string_view theBytes;
    std::vector<SourceValue> theEntries;
    std::optional<SourceToken> theFirstToken;
    std::size_t theTokens = 0;
    std::size_t theDepth = 0;
    bool hasKey = false;
    std::size_t theValueBegin = 0;
    std::size_t theValueEnd = 0;
    std::optional<std::size_t> theStreamBegin;
    bool theIsCut = false;
};

/// A reference in an object's source.
struct PlacedReference
{
    /// The names and places that lead to it: "/Resources/Font/F1", "/Kids[2]"; cut where more than
    /// 32 dictionaries and arrays stand within each other.
    std::string path;
    SourceToken token;
};

/// Calls take for each reference of an object's value, in order, until it returns false.
void forEachReference(std::string_view bytes, const ObjectSource& source,
    const std::function<bool(const PlacedReference&)>& take);

} // namespace tarnwick
