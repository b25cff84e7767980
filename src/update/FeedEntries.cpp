#include "FeedEntries.h"

namespace tarnwick {

namespace {

std::optional<std::u16string> textUnder(const PropertyList::Dictionary& entry, const char* key)
{
    const auto found = entry.constFind(QLatin1String(key));
    const QString* text = found == entry.constEnd() ? nullptr : found->string();
    return text ? std::optional(text->toStdU16String()) : std::nullopt;
}

} // namespace

std::optional<std::vector<FeedEntry>> feedEntries(const std::optional<PropertyList>& feed)
{
    const PropertyList::Array* list = feed ? feed->array() : nullptr;
    if (!list)
        return std::nullopt;
    std::vector<FeedEntry> entries;
    for (const PropertyList& item : *list) {
        const PropertyList::Dictionary* entry = item.dictionary();
        if (!entry)
            entries.emplace_back();
        else
            entries.push_back({textUnder(*entry, "AppName"), textUnder(*entry, "Version"),
                textUnder(*entry, "URL")});
    }
    return entries;
}

} // namespace tarnwick
