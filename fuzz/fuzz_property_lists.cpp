// The readers of property lists, and what an update feed in one means.

#include "FuzzTarget.h"

#include "BinaryPropertyList.h"
#include "FeedEntries.h"
#include "TextPropertyList.h"
#include "XmlPropertyList.h"

using namespace tarnwick;

namespace {

constexpr std::u16string_view prefix = u"https://a.example/";

/// Counts the values and keys. @param depth of the list itself, from 1.
std::size_t nodesIn(const PropertyList& list, int depth)
{
    std::size_t count = 1;
    if (!list.array() && !list.dictionary())
        return count;
    require(depth <= PropertyListBudget::maximumDepth, "lists too deep");
    if (const PropertyList::Array* const items = list.array())
        for (const PropertyList& item : *items)
            count += nodesIn(item, depth + 1);
    if (const PropertyList::Dictionary* const entries = list.dictionary())
        for (const PropertyList& entry : *entries)
            count += 1 + nodesIn(entry, depth + 1);
    return count;
}

void check(const std::optional<PropertyList>& list)
{
    if (list)
        require(nodesIn(*list, 1) <= PropertyListBudget::maximumNodes, "more values than allowed");
    for (const UpdateOffer& offer : readFeed(feedEntries(list), u"1.0", prefix).offers) {
        require(offer.version != u"1.0", "the running version offered");
        require(offer.url.find(prefix) != std::u16string::npos, "a foreign address offered");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    check(readPropertyList(bytes));
    check(readXmlPropertyList(bytes));
    check(readBinaryPropertyList(bytes));
    check(readTextPropertyList(bytes));
    return 0;
}
