#include "XrefStream.h"

#include "Attempt.h"
#include "analysis/StoredStream.h"

#include <algorithm>

namespace tarnwick {

XrefStream::XrefStream(fz_context* ctx, pdf_document* document, std::string_view bytes,
    ByteRange range, const ObjectSource& source)
    : theContext(ctx)
    , theDocument(document)
    , theBytes(bytes)
    , theRange(range)
    , theSource(source)
{
}

/// The numbers of an array in the dictionary.
std::vector<std::int64_t> XrefStream::numbers(std::string_view key) const
{
    std::vector<std::int64_t> numbers;
    const SourceValue* const value = theSource.entry(key);
    if (!value || value->token.kind != TokenKind::isArrayOpen)
        return numbers;
    SourceLexer lexer(theBytes, value->token.end, theSource.valueEnd());
    for (SourceToken token = lexer.next(); token.kind == TokenKind::isInteger; token = lexer.next())
        numbers.push_back(token.number);
    return numbers;
}

bool XrefStream::readLayout()
{
    constexpr std::int64_t widest = 8;
    const std::vector<std::int64_t> widths = numbers("W");
    if (widths.size() < theWidths.size())
        return false;
    for (std::size_t column = 0; column < theWidths.size(); ++column) {
        if (widths[column] < 0 || widths[column] > widest)
            return false;
        theWidths[column] = static_cast<std::size_t>(widths[column]);
    }
    std::vector<std::int64_t> index = numbers("Index");
    if (index.empty())
        index = {0, theSource.integer("Size").value_or(0)};
    for (std::size_t place = 0; place + 1 < index.size(); place += 2) {
        if (index[place] < 0 || index[place] > maximumObjectNumber || index[place + 1] < 0)
            return false;
        theSubsections.push_back({index[place], index[place + 1]});
    }
    return theWidths[0] + theWidths[1] + theWidths[2] > 0;
}

/// Their data is never encrypted.
bool XrefStream::open()
{
    const StoredStream stored
        = findStream(theBytes, theRange, theSource, theSource.integer("Length"));
    fz_context* const ctx = theContext;
    const auto address = [this](std::size_t offset) {
        return reinterpret_cast<const unsigned char*>(theBytes.data() + offset);
    };
    fz_stream* header = nullptr;
    fz_stream* data = nullptr;
    pdf_obj* dictionary = nullptr;
    fz_var(header);
    fz_var(data);
    fz_var(dictionary);
    const int error = attempt(ctx, [&] {
        header = fz_open_memory(ctx, address(theRange.begin), theRange.size());
        std::int64_t begin = 0;
        dictionary = pdf_parse_ind_obj(ctx, theDocument, header, nullptr, nullptr, &begin, nullptr);
        data = fz_open_memory(ctx, address(stored.range.begin), stored.range.size());
        theStream = pdf_open_inline_stream(
            ctx, theDocument, dictionary, static_cast<int>(stored.range.size()), data, nullptr);
    });
    fz_drop_stream(ctx, header);
    fz_drop_stream(ctx, data);
    pdf_drop_obj(ctx, dictionary);
    return !error && theStream;
}

bool XrefStream::read(SectionRows& rows)
{
    if (!readLayout() || !open())
        return false;
    const bool isSound = std::all_of(theSubsections.begin(), theSubsections.end(),
        [&](const Subsection& one) { return !rows.isWhole() || readSubsection(one, rows); });
    fz_drop_stream(theContext, theStream);
    return isSound;
}

bool XrefStream::readSubsection(const Subsection& subsection, SectionRows& rows)
{
    constexpr std::int64_t rowsAtOnce = 4096;
    const std::size_t rowSize = theWidths[0] + theWidths[1] + theWidths[2];
    for (std::int64_t row = 0; row < subsection.count; row += rowsAtOnce) {
        const std::int64_t count = std::min(rowsAtOnce, subsection.count - row);
        if (!readPortion(static_cast<std::size_t>(count) * rowSize))
            return false;
        for (std::int64_t place = 0; place < count; ++place) {
            const std::size_t begin = static_cast<std::size_t>(place) * rowSize;
            if (!takeRow(thePortion.data() + begin, subsection.first + row + place, rows))
                return true;
        }
    }
    return true;
}

bool XrefStream::readPortion(std::size_t wanted)
{
    thePortion.resize(wanted);
    std::size_t got = 0;
    const int error = attempt(
        theContext, [&] { got = fz_read(theContext, theStream, thePortion.data(), wanted); });
    return !error && got == wanted;
}

bool XrefStream::takeRow(const unsigned char* row, std::int64_t number, SectionRows& rows) const
{
    std::array<std::uint64_t, 3> columns{1, 0, 0}; // without a type all stand by themselves
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if (theWidths[column] == 0)
            continue;
        columns[column] = 0;
        for (std::size_t byte = 0; byte < theWidths[column]; ++byte)
            columns[column] = columns[column] << 8 | *row++;
    }
    EngineRowUse use = EngineRowUse::isFree; // as well as what later standards may bring
    if (columns[0] == 1)
        use = EngineRowUse::isPlain;
    else if (columns[0] == 2)
        use = EngineRowUse::isPacked;
    return rows.take(use, number, columns[1], columns[2]);
}

} // namespace tarnwick
