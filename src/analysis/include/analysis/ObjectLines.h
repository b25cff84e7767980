#pragma once

#include "analysis/LineScan.h"
#include "analysis/pdfObject.h"

#include <cstddef>
#include <limits>
#include <string_view>

namespace tarnwick {

/// Reads an object's lines anew from the file, portion by portion, the way the scan came by them.
class ObjectLines
{
public:
    /// Of no object.
    ObjectLines() = default;
    /// @param text the whole file. @param start offset of the object's first line.
    /// @param inXml whether that line stands in an XML object.
    ObjectLines(std::string_view text, std::size_t start, bool inXml)
        : theText(text)
        , thePosition(start)
        , theInXml(inXml)
    {
    }

    /// Calls take(std::string_view) for every line, trimmed, that has not been read before.
    /// @param end start of a line outside of streams, at which one of the object's records ends.
    template<class Take> void readTo(std::size_t end, Take take)
    {
        Receiver<Take> receiver{*this, take};
        LineScan scan(theText.substr(0, end), receiver, thePosition, theInXml);
        scan.advance(std::numeric_limits<std::size_t>::max());
        thePosition = end;
        theInXml = scan.inXml();
    }

private:
    template<class Take> struct Receiver
    {
        void takeLine(const ScannedLine& line)
        {
            // The first line may be a header, a trailer's keyword, or any other.
            if (!lines.hasFirst && line.kind == LineKind::isTrailer)
                take(trailerHeader);
            else if (!lines.hasFirst || line.kind == LineKind::isPlain)
                take(lines.theText.substr(line.offset, line.length));
            lines.hasFirst = true;
        }
        void takeStream(std::size_t) const { }

        ObjectLines& lines;
        Take& take;
    };

    std::string_view theText;
    std::size_t thePosition = 0;
    bool theInXml = false;
    bool hasFirst = false;
};

} // namespace tarnwick
