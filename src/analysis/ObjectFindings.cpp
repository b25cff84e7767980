#include "FindingList.h"
#include "RecordCursor.h"
#include "analysis/NameSearch.h"
#include "analysis/ObjectSource.h"
#include "analysis/StoredStream.h"
#include "analysis/StructureWords.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace tarnwick {

namespace {

std::string lengthSentence(const std::string& name, const StoredStream& stream)
{
    return "The Length of " + name + " is " + std::to_string(*stream.length)
        + ", but endstream follows behind " + std::to_string(stream.range.size()) + " bytes.";
}

/// @param isLengthKnown what Length says is what readers take it for.
void checkStream(const pdfObject& object, const StoredStream& stream, bool isLengthKnown,
    std::string_view bytes, FindingList& list)
{
    const std::string name = objectName(object);
    if (stream.end == StoredStream::End::isMissing)
        list.add(FindingCode::isStreamEndless, stream.range.begin, object.index(),
            "The stream of " + name + " has no endstream.");
    else if (stream.end == StoredStream::End::isKeyword && stream.length && isLengthKnown)
        list.add(FindingCode::isLengthDifferent, stream.range.begin, object.index(),
            lengthSentence(name, stream));
    const std::string_view data = bytes.substr(stream.range.begin, stream.range.size());
    const std::size_t marker = data.find(LineWord::endOfFile);
    if (marker != std::string_view::npos)
        list.add(FindingCode::isMarkerInObject, stream.range.begin + marker, object.index(),
            "The stream of " + name + " holds a marker %%EOF, which ends no save.");
}

} // namespace

/// Streams are found by their word. One that lies in the data of another is no stream. A Length
/// that is a reference may lead into an object stream, beside an older object of that number: it is
/// known in files without those.
std::vector<ByteRange> checkStreams(const pdfObjectCatalog& catalog, FindingList& list)
{
    const std::string_view bytes = catalog.bytes();
    const bool knowsAll = hiddenObjects(catalog).streams == 0;
    std::vector<ByteRange> nests;
    std::size_t dataEnd = 0;
    std::optional<std::size_t> last;
    for (std::size_t word = bytes.find(LineWord::stream); word != std::string_view::npos;
         word = bytes.find(LineWord::stream, std::max(word + 1, dataEnd))) {
        const std::size_t index = catalog.firstEndingBehind(word);
        if (index == catalog.size())
            break;
        const pdfObject object = catalog.object(index);
        const ByteRange range = object.range();
        if (range.begin > word || last == range.begin)
            continue;
        last = range.begin; // records may share their lines
        const ObjectSource source(bytes, range, range.size());
        const std::optional<StoredStream> stream = storedStream(catalog, object, source);
        if (!stream)
            continue;
        dataEnd = std::max(dataEnd, stream->range.end);
        if (stream->range.end > range.end)
            nests.push_back(stream->range);
        checkStream(object, *stream, knowsAll || source.integer("Length").has_value(), bytes, list);
    }
    return nests;
}

namespace {

/// @param nests in the order of the file, apart from each other.
bool isNested(const std::vector<ByteRange>& nests, std::size_t offset)
{
    const auto behind = std::upper_bound(nests.begin(), nests.end(), offset,
        [](std::size_t wanted, const ByteRange& nest) { return wanted < nest.end; });
    return behind != nests.end() && behind->holds(offset);
}

/// Objects of one number in one version stand beside each other in the list.
void checkTwice(
    const pdfObjectCatalog& catalog, const std::vector<ByteRange>& nests, FindingList& list)
{
    for (std::size_t index = 1; index < catalog.size(); ++index) {
        const pdfObject object = catalog.listedObject(index);
        const pdfObject before = catalog.listedObject(index - 1);
        const bool isPlace = object.objNo() > 0 && object.objType() != ObjectType::isTrailer;
        if (!isPlace || before.objNo() != object.objNo() || before.objVer() != object.objVer()
            || before.range().begin == object.range().begin || before.objGen() != object.objGen())
            continue;
        if (isNested(nests, object.range().begin) || isNested(nests, before.range().begin))
            continue;
        list.add(FindingCode::isObjectTwice, object.range().begin, object.index(),
            "Version " + std::to_string(object.objVer()) + " has " + objectName(object)
                + " twice; the one before stands at offset " + std::to_string(before.range().begin)
                + '.');
    }
}

/// Goes through the headers that the listing has no record of.
class UnlistedHeaders
{
public:
    explicit UnlistedHeaders(const pdfObjectCatalog& catalog)
        : theCatalog(catalog)
        , theBytes(catalog.bytes())
        , theWords(catalog)
        , theHeaders(catalog)
    {
    }

    /// Calls take for each, until it returns false.
    void forEach(const std::function<bool(const PlacedHeader&)>& take)
    {
        for (std::size_t word = theBytes.find(LineWord::obj); word != std::string_view::npos;
             word = theBytes.find(LineWord::obj, word + 1)) {
            if (word == 0 || !isSourceSpace(theBytes[word - 1]) || isListed(word - 1))
                continue;
            const std::optional<PlacedHeader> header = headerBefore(word);
            if (header && theHeaders.isCode(header->begin) && !take(*header))
                return;
        }
    }

private:
    /// Whether a place is of an object's own header, value or stream.
    bool isListed(std::size_t offset)
    {
        constexpr std::size_t usualHeader = 24;
        const std::optional<std::size_t> record = theWords.record(offset);
        if (!record)
            return false;
        const pdfObject object = theCatalog.object(*record);
        const ByteRange range = object.range();
        // Nearly every word asked about is that of the object's own header.
        if (offset < range.begin + usualHeader
            && theBytes.substr(range.begin, offset - range.begin).find(LineWord::obj)
                == std::string_view::npos)
            return true;
        if (theOwner != range.begin) {
            theOwner = range.begin;
            const ObjectSource source(theBytes, range, range.size());
            const std::optional<StoredStream> stream = storedStream(theCatalog, object, source);
            theOwnerEnd
                = stream ? std::max(stream->range.end, source.valueEnd()) : source.valueEnd();
        }
        return offset <= theOwnerEnd;
    }

    /// The header whose "obj" this is. Numbers that end what stands before, as in "0 1 2 0 obj",
    /// are none of it.
    std::optional<PlacedHeader> headerBefore(std::size_t word) const
    {
        constexpr std::size_t longest = 48;
        const auto isPart = [this](std::size_t offset) {
            return isSourceSpace(theBytes[offset]) || isDecimalDigit(theBytes[offset]);
        };
        std::size_t begin = word;
        while (begin > 0 && word - begin < longest && isPart(begin - 1))
            --begin;
        for (; begin < word; ++begin) {
            const bool isStart = isDecimalDigit(theBytes[begin])
                && (begin == 0 || !isSourceRegular(theBytes[begin - 1]));
            const std::optional<PlacedHeader> header
                = isStart ? headerAt(theBytes, begin) : std::nullopt;
            if (header)
                return header;
        }
        return std::nullopt;
    }

    const pdfObjectCatalog& theCatalog;
    std::string_view theBytes;
    RecordCursor theWords; ///< asked about every word
    RecordCursor theHeaders; ///< asked about those that matter
    std::size_t theOwner = std::string_view::npos; ///< start of the object last looked into
    std::size_t theOwnerEnd = 0;
};

} // namespace

std::optional<ByteRange> findUnlisted(const pdfObjectCatalog& catalog, std::int64_t objNo)
{
    const std::string_view bytes = catalog.bytes();
    std::optional<ByteRange> found;
    UnlistedHeaders(catalog).forEach([&](const PlacedHeader& header) {
        if (header.objNo != objNo)
            return true;
        // A record whose range holds the header ends somewhere else; that of a header over several
        // lines begins within it.
        std::size_t next = catalog.firstEndingBehind(header.begin);
        while (next < catalog.size() && catalog.object(next).range().begin < header.end)
            ++next;
        const std::size_t end
            = next < catalog.size() ? catalog.object(next).range().begin : bytes.size();
        found = ByteRange{header.begin, end};
        return false;
    });
    return found;
}

void checkObjects(
    const pdfObjectCatalog& catalog, const std::vector<ByteRange>& nests, FindingList& list)
{
    checkTwice(catalog, nests, list);
    UnlistedHeaders(catalog).forEach([&](const PlacedHeader& header) {
        list.add(FindingCode::isObjectNotListed, header.begin, std::nullopt,
            "Not in the listing is " + objectName(header.objNo, header.objGen)
                + ": it shares a line with others, or follows a line that reads as structure.");
        return true;
    });
    const HiddenObjects hidden = hiddenObjects(catalog);
    if (hidden.streams > 0)
        list.add(FindingCode::isObjectsHidden, 0, std::nullopt,
            std::to_string(hidden.objects) + " objects lie in " + std::to_string(hidden.streams)
                + " object streams, which the listing does not show.");
}

} // namespace tarnwick
