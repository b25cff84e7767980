#include "BytePattern.h"

#include <algorithm>

#include <string.h> // memmem() is not in <cstring>'s standard

namespace tarnwick {

namespace {

bool isBlank(char16_t unit)
{
    return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r' || unit == u'\u00A0';
}

/// Four bits of a byte and which of them are given; a mask of 16 for what is no digit.
struct Digit
{
    unsigned value = 0;
    unsigned mask = 0xF;
};

Digit digitOf(char16_t unit)
{
    if (unit == u'?')
        return {0, 0};
    if (unit >= u'0' && unit <= u'9')
        return {static_cast<unsigned>(unit - u'0')};
    const auto letter = static_cast<char16_t>(unit | 0x20);
    if (letter >= u'a' && letter <= u'f')
        return {static_cast<unsigned>(letter - u'a') + 10};
    return {0, 16};
}

} // namespace

BytePattern BytePattern::ofBytes(std::string_view bytes)
{
    BytePattern pattern;
    pattern.theBytes = bytes;
    pattern.theMask.assign(bytes.size(), '\xFF');
    pattern.theRunLength = bytes.size();
    return pattern;
}

BytePattern::Reading BytePattern::ofHex(std::u16string_view digits)
{
    using Problem = Reading::Problem;
    BytePattern pattern;
    std::size_t at = 0;
    while (at < digits.size()) {
        if (isBlank(digits[at])) {
            ++at;
            continue;
        }
        if (digits[at] == u'0' && at + 1 < digits.size() && (digits[at + 1] | 0x20) == u'x')
            at += 2;
        const std::size_t begin = at;
        for (; at < digits.size() && !isBlank(digits[at]); at += 2) {
            const Digit high = digitOf(digits[at]);
            if (high.mask > 0xF)
                return {{}, Problem::isNoDigit, digits.substr(at, 1)};
            if (at + 1 == digits.size() || isBlank(digits[at + 1]))
                return {{}, Problem::isHalfByte, digits.substr(at, 1)};
            const Digit low = digitOf(digits[at + 1]);
            if (low.mask > 0xF)
                return {{}, Problem::isNoDigit, digits.substr(at + 1, 1)};
            pattern.theBytes += static_cast<char>(high.value << 4 | low.value);
            pattern.theMask += static_cast<char>(high.mask << 4 | low.mask);
        }
        if (at == begin)
            return {{}, Problem::isHalfByte, digits.substr(at - 1, 1)}; // "0x" and nothing else
    }
    if (!pattern.isEmpty() && pattern.theMask.find_first_not_of('\0') == npos)
        return {{}, Problem::isAllUnknown};
    pattern.chooseRun();
    return {pattern};
}

void BytePattern::chooseRun()
{
    std::size_t length = 0;
    for (std::size_t at = 0; at < size(); ++at) {
        length = theMask[at] == '\xFF' ? length + 1 : 0;
        if (length > theRunLength) {
            theRunLength = length;
            theRunBegin = at + 1 - length;
        }
    }
}

bool BytePattern::matchesAt(std::string_view bytes, std::size_t offset) const
{
    for (std::size_t at = 0; at < size(); ++at) {
        if ((bytes[offset + at] & theMask[at]) != theBytes[at])
            return false;
    }
    return true;
}

std::size_t BytePattern::findIn(std::string_view bytes, std::size_t from) const
{
    if (isEmpty() || bytes.size() < size())
        return npos;
    const std::size_t last = bytes.size() - size(); // where a match may begin at most
    const bool isExact = theRunLength == size();
    for (std::size_t at = from; at <= last; ++at) {
        if (theRunLength > 0) {
            const char* const begin = bytes.data() + at + theRunBegin;
            const std::size_t length = last - at + theRunLength;
            const void* const found
                = ::memmem(begin, length, theBytes.data() + theRunBegin, theRunLength);
            if (!found)
                return npos;
            at += static_cast<std::size_t>(static_cast<const char*>(found) - begin);
        }
        if (isExact || matchesAt(bytes, at))
            return at;
    }
    return npos;
}

} // namespace tarnwick
