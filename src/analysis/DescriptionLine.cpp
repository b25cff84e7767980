#include "DescriptionLine.h"

#include "DecimalInteger.h"

#include <algorithm>

namespace tarnwick {

namespace {

/// "(" number ", " generation ", " version ")" without the numbers.
constexpr std::size_t referenceFrame = 6;
constexpr std::size_t separatorLength = 2; // ", "

} // namespace

KidsText::KidsText(
    const ChunkedVector<Kid>& kids, std::size_t first, std::size_t count, std::int64_t version)
    : theKids(kids)
    , theFirst(first)
    , theCount(count)
    , theVersion(version)
{
}

/// Where a kid's reference begins in the list; for the index behind the last, where the next would.
std::size_t KidsText::offsetOfKid(std::size_t index) const
{
    if (index == 0)
        return 1;
    const Kid& last = theKids[theFirst + index - 1];
    const std::size_t digits = last.digitsBefore + decimalLength(last.objNo)
        + decimalLength(last.objGen) - theKids[theFirst].digitsBefore;
    return 1 + digits + index * (referenceFrame + decimalLength(theVersion) + separatorLength);
}

std::size_t KidsText::length() const
{
    return theCount == 0 ? 2 : offsetOfKid(theCount) - separatorLength + 1;
}

void KidsText::appendKid(std::size_t index, std::string& text) const
{
    const Kid& kid = theKids[theFirst + index];
    text += '(';
    appendDecimal(kid.objNo, text);
    text += ", ";
    appendDecimal(kid.objGen, text);
    text += ", ";
    appendDecimal(theVersion, text);
    text += index + 1 == theCount ? ")]" : "), ";
}

void KidsText::append(std::size_t position, std::size_t count, std::u16string& text) const
{
    std::size_t low = 0; // the last kid that begins at or before position
    std::size_t high = theCount;
    while (high - low > 1) {
        const std::size_t middle = low + (high - low) / 2;
        (offsetOfKid(middle) <= position ? low : high) = middle;
    }
    std::string list;
    std::size_t start = 0; // of list within the whole
    if (low == 0)
        list = theCount == 0 ? "[]" : "[";
    else
        start = offsetOfKid(low);
    const std::size_t wanted = std::min(count, length() - position) + position - start;
    for (std::size_t kid = low; kid < theCount && list.size() < wanted; ++kid)
        appendKid(kid, list);
    appendCharacters(std::string_view(list).substr(position - start, count), text);
}

void appendCharacters(std::string_view bytes, std::u16string& text)
{
    const std::size_t start = text.size();
    text.resize(start + bytes.size());
    std::transform(bytes.begin(), bytes.end(), text.begin() + static_cast<std::ptrdiff_t>(start),
        [](char byte) { return static_cast<char16_t>(static_cast<unsigned char>(byte)); });
}

} // namespace tarnwick
