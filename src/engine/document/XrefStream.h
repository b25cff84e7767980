#pragma once

#include "SectionRows.h"
#include "analysis/ObjectSource.h"

#include <mupdf/pdf.h>

#include <array>
#include <string_view>
#include <vector>

namespace tarnwick {

/// A cross-reference stream (ISO 32000-2, 7.5.8).
class XrefStream
{
public:
    /// @param document any, which finds the filters; it is not read from.
    /// @param bytes the file, borrowed. @param range from the object's header on.
    /// @param source of that range, with a stream.
    XrefStream(fz_context* ctx, pdf_document* document, std::string_view bytes, ByteRange range,
        const ObjectSource& source);

    /// Reads the rows. @returns false when they are not all there, or make no sense.
    bool read(SectionRows& rows);

private:
    struct Subsection
    {
        std::int64_t first = 0;
        std::int64_t count = 0;
    };

    std::vector<std::int64_t> numbers(std::string_view key) const;
    bool readLayout();
    bool open();
    bool readSubsection(const Subsection& subsection, SectionRows& rows);
    bool readPortion(std::size_t wanted);
    bool takeRow(const unsigned char* row, std::int64_t number, SectionRows& rows) const;

    fz_context* theContext;
    pdf_document* theDocument;
    std::string_view theBytes;
    ByteRange theRange;
    const ObjectSource& theSource;
    std::array<std::size_t, 3> theWidths{};
    std::vector<Subsection> theSubsections;
    fz_stream* theStream = nullptr;
    std::vector<unsigned char> thePortion;
};

} // namespace tarnwick
