#pragma once

#include "analysis/pdfObject.h"

#include <cstddef>
#include <string_view>

namespace tarnwick {

/// Tells whether places of a file are code: outside of strings, comments and streams.
///
/// Asked for places in rising order it goes on from where it is, so that many places in one object
/// take no longer than one pass over it.
class CodeScan
{
public:
    /// @param text the file, borrowed.
    explicit CodeScan(std::string_view text)
        : theText(text)
    {
    }

    /// Whether the token that begins at an offset is code.
    /// @param region begins with code and holds the offset: an object, or what stands between two.
    bool isCode(ByteRange region, std::size_t offset);

    /// Whether "endobj" stands in the region before the place last asked about: what follows it is
    /// of another object, whatever the lines say.
    bool isBehindEnd() const { return theIsBehindEnd; }

private:
    void goOn(std::size_t end, std::size_t offset);
    void skipStream(std::size_t end);

    std::string_view theText;
    std::size_t theStart = std::string_view::npos; ///< of the region that was last asked about
    std::size_t thePosition = 0; ///< code begins here again
    bool theIsBehindEnd = false;
};

} // namespace tarnwick
