#pragma once

#include "analysis/BlockMasks.h"
#include "analysis/ByteClasses.h"
#include "analysis/Keywords.h"
#include "analysis/StructureWords.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <string_view>

namespace tarnwick {

/// What a LineScan found in a line, in the order in which the kinds are tested.
enum class LineKind
{
    isEndOfObject, ///< holds "endobj"
    isHeader, ///< holds "obj"
    isEndOfFile, ///< holds "%%EOF"
    isStartxref, ///< holds "startxref"
    isXref, ///< holds "xref"
    isTrailer, ///< holds "trailer"
    isPlain, ///< any other line that is not blank
};

/// A line as the receiver of a LineScan gets it.
struct ScannedLine
{
    LineKind kind = LineKind::isPlain;
    std::size_t start = 0; ///< offset of the line in the text, leading white space included
    std::size_t offset = 0; ///< offset of the trimmed line
    std::size_t length = 0; ///< of the trimmed line; at least 1
    bool holdsType = false; ///< "/Type"
    bool inXml = false; ///< the line stands in an XML object, before this line is looked at
};

/// Walks over a file's text line by line and tells its receiver what each line is.
///
/// Knows lines and keywords, not PDF's tokens, and so has an answer for any bytes. Streams are
/// passed over and reported by their length, but those of XML objects, whose lines are reported
/// like all others.
///
/// Receiver has takeLine(const ScannedLine&) and takeStream(std::size_t length).
template<class Receiver> class LineScan
{
public:
    /// @param start offset of the first line to look at. @param inXml whether it stands in an XML
    ///   object. Scanning from a line outside streams goes on as the scan that came by there did.
    LineScan(std::string_view text, Receiver& receiver, std::size_t start = 0, bool inXml = false)
        : theText(text)
        , theReceiver(receiver)
        , theLineStart(start)
        , theBlock(start)
        , theInXml(inXml)
    {
    }

    /// Goes on for at least so many bytes, or to the end.
    /// @returns false when the text is finished.
    bool advance(std::size_t bytes)
    {
        const std::size_t goal = theBlock + std::min(bytes, theText.size() - theBlock);
        while (theBlock < goal)
            takeBlock();
        if (theBlock < theText.size())
            return true;
        if (!isDone) {
            isDone = true;
            if (theLineStart <= theText.size())
                endLine(theText.size());
        }
        return false;
    }

    /// Whether the next line stands in an XML object.
    bool inXml() const { return theInXml; }

private:
    void takeBlock()
    {
        const BlockMasks masks = blockMasks(theText, theBlock);
        const std::size_t block = theBlock;
        theBlock += std::min(BlockMasks::blockSize, theText.size() - theBlock);
        for (std::uint64_t bits = masks.breaks | masks.suspects; bits != 0; bits &= bits - 1) {
            const auto bit = static_cast<unsigned>(std::countr_zero(bits));
            const std::size_t offset = block + bit;
            if (((masks.breaks >> bit) & 1u) == 0) {
                theFlags |= keywordsAt(theText, offset);
            } else if (endLine(offset)) {
                passStream(offset + 1);
                return;
            }
        }
    }

    /// The line from theLineStart to end is complete.
    /// @returns whether the contents of a stream that is not shown begin behind it.
    bool endLine(std::size_t end)
    {
        const std::size_t start = theLineStart;
        const unsigned flags = theFlags;
        theLineStart = end + 1;
        theFlags = 0;
        if ((flags & Keyword::endstream) != 0) {
            endStream();
            return false;
        }
        if ((flags & (Keyword::stream | Keyword::xml)) == Keyword::stream) {
            theStreamLength = 0;
            return !theInXml;
        }
        takeLine(start, end, flags);
        return false;
    }

    void endStream()
    {
        if (!theInXml) {
            if (theStreamLength > 0)
                --theStreamLength;
            theReceiver.takeStream(theStreamLength);
        }
        theInXml = false;
    }

    void takeLine(std::size_t start, std::size_t end, unsigned flags)
    {
        const char* text = theText.data();
        std::size_t first = start;
        std::size_t last = end;
        while (first < last && isLineSpace(text[first]))
            ++first;
        while (last > first && isLineSpace(text[last - 1]))
            --last;
        if (first == last)
            return;
        ScannedLine line;
        line.kind = kindOf(flags);
        line.start = start;
        line.offset = first;
        line.length = last - first;
        line.holdsType = (flags & Keyword::type) != 0;
        line.inXml = theInXml;
        if (line.kind == LineKind::isPlain && (flags & Keyword::xml) != 0)
            theInXml = theInXml || isOpenXml(theText.substr(first, last - first));
        theReceiver.takeLine(line);
    }

    /// A metadata stream that is not compressed is worth reading, so its lines are shown.
    static bool isOpenXml(std::string_view line)
    {
        return line.find("/FlateDecode") == std::string_view::npos;
    }

    static LineKind kindOf(unsigned flags)
    {
        if (flags == 0)
            return LineKind::isPlain;
        if ((flags & Keyword::endobj) != 0)
            return LineKind::isEndOfObject;
        if ((flags & Keyword::obj) != 0)
            return LineKind::isHeader;
        if ((flags & Keyword::endOfFile) != 0)
            return LineKind::isEndOfFile;
        if ((flags & Keyword::startxref) != 0)
            return LineKind::isStartxref;
        if ((flags & Keyword::xref) != 0)
            return LineKind::isXref;
        if ((flags & Keyword::trailer) != 0)
            return LineKind::isTrailer;
        return LineKind::isPlain;
    }

    /// Jumps over the contents of a stream by searching for the word "stream", which every line
    /// that ends or restarts one holds. The length counts each line with its line break, so it is a
    /// difference of offsets.
    void passStream(std::size_t contents)
    {
        std::size_t from = contents;
        for (;;) {
            const std::size_t hit = findStream(from);
            if (hit == std::string_view::npos) {
                theBlock = theText.size();
                theLineStart = theText.size() + 1; // no line is left
                return;
            }
            std::size_t start = hit;
            while (start > from && !isLineBreak(theText[start - 1]))
                --start;
            const std::size_t end = nextLineBreak(theText, hit);
            const std::string_view line = theText.substr(start, end - start);
            from = end + 1;
            if (line.find(LineWord::endstream) != std::string_view::npos) {
                theStreamLength = start - contents;
                endStream();
                theLineStart = from;
                theBlock = std::min(from, theText.size());
                return;
            }
            if (line.find(LineWord::xml) == std::string_view::npos)
                contents = from;
        }
    }

    std::size_t findStream(std::size_t from) const
    {
        return from < theText.size() ? theText.find(LineWord::stream, from)
                                     : std::string_view::npos;
    }

    std::string_view theText;
    Receiver& theReceiver;
    std::size_t theLineStart; ///< of the line being read; text.size() + 1 when none is left
    std::size_t theBlock; ///< where the next block of bytes begins
    std::size_t theStreamLength = 0; ///< keeps its value after a stream for a stray "endstream"
    unsigned theFlags = 0; ///< Keyword flags of the line being read
    bool theInXml;
    bool isDone = false;
};

} // namespace tarnwick
