// The window of bytes: stray bytes, lines and places, patterns and their matches, offsets as they
// are typed. The input: a byte for the length of what is typed, that in one byte for each
// character, and the file's bytes.

#include "FuzzTarget.h"

#include "ByteMatches.h"
#include "files/OffsetInput.h"
#include "text/HexStorage.h"

#include <string>

using namespace tarnwick;

namespace {

void checkMatches(std::string_view bytes, const BytePattern& pattern, std::string_view plain)
{
    ByteMatches matches(bytes, pattern);
    while (!matches.isComplete())
        matches.add(ByteMatches::search(bytes, pattern, matches.searchedTo()));
    std::uint64_t count = 0;
    std::size_t from = 0; // where the next match may begin
    for (auto answer = matches.next(0); !answer.isWrapped && count < matches.count();
         answer = matches.next(from)) {
        require(answer.kind == ByteMatches::Answer::Kind::isFound, "a match that is counted");
        require(answer.offset >= from && answer.offset <= bytes.size() - pattern.size(), "a match");
        require(plain.empty() || bytes.find(plain, from) == answer.offset, "the next text");
        require(matches.number(answer.offset) == ++count, "a match's number");
        require(count == 1 || matches.previous(answer.offset).offset < from, "the match before");
        from = answer.offset + pattern.size();
    }
    require(count == matches.count(), "the number of matches");
    require(plain.empty() || bytes.find(plain, from) == bytes.npos, "a further text");
}

void checkStray(std::string_view bytes, const StrayBytes& stray)
{
    const std::size_t header = bytes.find("%PDF-");
    require(stray.header.value_or(bytes.npos) == header, "the header");
    const std::size_t marker = bytes.rfind("%%EOF");
    require(stray.end.has_value() == (marker != bytes.npos), "the marker");
    require(!stray.end || (*stray.end >= marker + 5 && *stray.end <= bytes.size()), "its end");
}

void checkLines(const HexStorage& storage)
{
    using Column = HexStorage::Column;
    for (std::size_t byte = 0; byte <= storage.size(); ++byte) {
        for (const Column column : {Column::isHex, Column::isText})
            require(storage.byteAt(storage.positionOf(byte, column)) == byte, "a byte's place");
    }
    for (qsizetype index = 0; index < storage.lineCount(); ++index) {
        const TextLine line = storage.line(index);
        require(line.text.size() == storage.lineLength(index), "a line's length");
        for (const TextMark& mark : line.marks)
            require(
                mark.start >= 0 && mark.length > 0 && mark.start + mark.length <= line.text.size(),
                "a mark");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1)
        return 0;
    const std::string_view input = textOf(data + 1, size - 1);
    const std::string_view typed = input.substr(0, data[0]);
    const std::string_view bytes = input.substr(typed.size());
    std::u16string units;
    for (const char character : typed)
        units += static_cast<unsigned char>(character);

    const OffsetInput offset = readOffset(units, bytes.size());
    require(offset.offset.value_or(0) <= bytes.size(), "an offset behind the end");
    require(offset.offset.has_value() == (offset.problem == OffsetInput::Problem::isNone), "why");

    checkMatches(bytes, BytePattern::ofBytes(typed), typed);
    checkMatches(bytes, BytePattern::ofHex(units).pattern, {});
    const StrayBytes stray = findStrayBytes(bytes);
    checkStray(bytes, stray);
    checkLines(HexStorage({bytes, nullptr}, stray));
    return 0;
}
