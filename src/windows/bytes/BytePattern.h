#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

/// Bytes to be looked for, some of which may be any.
///
/// What has no such bytes is found at the speed of the C library's memmem(); else the longest run
/// of given bytes is found that way, and what is around it compared.
class BytePattern
{
public:
    static constexpr std::size_t npos = std::string_view::npos;

    /// Matches nothing.
    BytePattern() = default;
    /// Exactly these bytes; none match nothing.
    static BytePattern ofBytes(std::string_view bytes);

    struct Reading;
    /// Reads hexadecimal digits: pairs with or without blanks between them ("DE AD", "DEAD"), "0x"
    /// before a run of them, and "?" for a digit that may be any ("D?", "??").
    static Reading ofHex(std::u16string_view digits);

    bool isEmpty() const { return theBytes.empty(); }
    std::size_t size() const { return theBytes.size(); }

    /// Offset of the first match that begins at from or behind it and lies in the bytes, or npos.
    std::size_t findIn(std::string_view bytes, std::size_t from) const;

private:
    void chooseRun();
    bool matchesAt(std::string_view bytes, std::size_t offset) const;

    std::string theBytes; ///< 0 in bits that may be any
    std::string theMask; ///< the bits that are compared; as long
    std::size_t theRunBegin = 0; ///< the longest run of bytes that are given in full
    std::size_t theRunLength = 0;
};

/// What came of reading hexadecimal digits.
struct BytePattern::Reading
{
    enum class Problem
    {
        isNone,
        isNoDigit, ///< neither a digit nor a question mark
        isHalfByte, ///< a run with an odd number of digits
        isAllUnknown, ///< not a single digit is given
    };

    BytePattern pattern; ///< empty where there is a problem, or nothing to read
    Problem problem = Problem::isNone;
    /// Of isNoDigit the character, of isHalfByte the run's last digit.
    std::u16string_view place = {};
};

} // namespace tarnwick
