#include "CrossReferenceReader.h"

#include "Attempt.h"
#include "SectionRows.h"
#include "XrefStream.h"
#include "analysis/StructureWords.h"

#include <algorithm>

namespace tarnwick {

namespace {

/// Reads one cross-reference after another.
class Sections
{
public:
    explicit Sections(const EngineDocument& document)
        : theContext(document.context())
        , theBytes(document.bytes())
    {
    }
    Sections(const Sections&) = delete;
    Sections& operator=(const Sections&) = delete;
    ~Sections() { pdf_drop_document(theContext, theFilters); }

    EngineSection read(std::uint64_t offset, SectionRows& rows)
    {
        EngineSection section;
        if (!find(offset, rows, section)) {
            rows.forget();
            section = {};
        }
        section.rows = rows.count();
        section.isWhole = rows.isWhole();
        return section;
    }

private:
    bool find(std::uint64_t offset, SectionRows& rows, EngineSection& section)
    {
        std::size_t begin = std::min<std::uint64_t>(offset, theBytes.size());
        while (begin < theBytes.size() && isSourceSpace(theBytes[begin]))
            ++begin;
        SourceLexer lexer(theBytes, begin, theBytes.size());
        if (theBytes.substr(begin).starts_with(LineWord::xref)) {
            static_cast<void>(lexer.next());
            section.form = EngineSectionForm::isTable;
            return readTable(lexer, rows, section);
        }
        section.form = EngineSectionForm::isStream;
        const bool isNumbered = begin < theBytes.size() && isDecimalDigit(theBytes[begin])
            && lexer.next().kind == TokenKind::isInteger
            && lexer.next().kind == TokenKind::isInteger;
        const SourceToken word = isNumbered ? lexer.next() : SourceToken();
        return theBytes.substr(word.begin, word.end - word.begin) == LineWord::obj
            && readStream(begin, rows, section);
    }

    /// Subsections, each with the number of its first object and a count, until the trailer.
    bool readTable(SourceLexer& lexer, SectionRows& rows, EngineSection& section)
    {
        for (;;) {
            const SourceToken first = lexer.next();
            if (isWord(first, LineWord::trailer)) {
                readTrailer(ObjectSource(theBytes, {first.begin, theBytes.size()}), section);
                return true;
            }
            const SourceToken count = lexer.next();
            if (first.kind != TokenKind::isInteger || count.kind != TokenKind::isInteger)
                return false;
            for (std::int64_t row = 0; row < count.number; ++row) {
                if (!readRow(lexer, first.number, row, rows))
                    return false;
            }
        }
    }

    /// @returns false for what is no row.
    bool readRow(SourceLexer& lexer, std::int64_t first, std::int64_t row, SectionRows& rows)
    {
        const SourceToken place = lexer.next();
        const SourceToken generation = lexer.next();
        const SourceToken use = lexer.next();
        const bool isUsed = isWord(use, "n");
        if (place.kind != TokenKind::isInteger || generation.kind != TokenKind::isInteger
            || place.number < 0 || generation.number < 0 || (!isUsed && !isWord(use, "f"))
            || first > maximumObjectNumber)
            return false;
        // Some write free rows so, and nothing stands at 0 but the header.
        const bool isHeader
            = place.number == 0 && !theBytes.starts_with(std::to_string(first + row) + ' ');
        static_cast<void>(
            rows.take(isUsed && !isHeader ? EngineRowUse::isPlain : EngineRowUse::isFree,
                first + row, static_cast<std::uint64_t>(place.number),
                static_cast<std::uint64_t>(generation.number)));
        return true;
    }

    bool readStream(std::size_t begin, SectionRows& rows, EngineSection& section)
    {
        const ByteRange range{begin, theBytes.size()};
        const ObjectSource source(theBytes, range);
        if (source.name("Type") != "XRef" || !source.streamBegin() || !makeFilters())
            return false;
        readTrailer(source, section);
        section.stream = -1;
        return XrefStream(theContext, theFilters, theBytes, range, source).read(rows);
    }

    static void readTrailer(const ObjectSource& source, EngineSection& section)
    {
        section.prev = std::max<std::int64_t>(source.integer("Prev").value_or(-1), -1);
        section.stream = std::max<std::int64_t>(source.integer("XRefStm").value_or(-1), -1);
        section.root = referenceIn(source, "Root");
        section.info = referenceIn(source, "Info");
        section.isEncrypted = source.entry("Encrypt") != nullptr;
    }

    static int referenceIn(const ObjectSource& source, std::string_view key)
    {
        const SourceValue* const value = source.entry(key);
        const bool isReference = value && value->token.kind == TokenKind::isReference
            && value->token.number >= 0 && value->token.number <= maximumObjectNumber;
        return isReference ? static_cast<int>(value->token.number) : -1;
    }

    bool isWord(const SourceToken& token, std::string_view word) const
    {
        return token.kind == TokenKind::isKeyword
            && theBytes.substr(token.begin, token.end - token.begin) == word;
    }

    /// An empty document, for the filters of a stream.
    bool makeFilters()
    {
        const int error = theFilters
            ? FZ_ERROR_NONE
            : attempt(theContext, [this] { theFilters = pdf_create_document(theContext); });
        return !error;
    }

    fz_context* theContext;
    std::string_view theBytes;
    pdf_document* theFilters = nullptr;
};

} // namespace

int readCrossReferences(const EngineDocument& document, const CrossReferenceRequest& request,
    CrossReferenceResult& result)
{
    if (!document.context())
        return FZ_ERROR_MEMORY;
    if (request.offsets.empty())
        return FZ_ERROR_GENERIC;
    Sections sections(document);
    std::vector<EngineRow> rows;
    for (const EngineOffset& place : request.offsets) {
        const bool isFirst = result.sections.empty();
        SectionRows own(rows, isFirst ? request.firstRow : 0);
        result.sections.push_back(sections.read(place.offset, own));
        if (!own.isWhole())
            break;
    }
    result.rows = std::move(rows);
    return FZ_ERROR_NONE;
}

} // namespace tarnwick
