#pragma once

#include "PropertyList.h"
#include "update/UpdateFeed.h"

namespace tarnwick {

/// The entries of an update feed.
/// @param feed nothing when it could not be read.
/// @returns an entry for each item of the list, without name where the item is no dictionary;
///   nothing when the feed is no list.
std::optional<std::vector<FeedEntry>> feedEntries(const std::optional<PropertyList>& feed);

} // namespace tarnwick
