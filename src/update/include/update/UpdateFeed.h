#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// An entry of the update feed, as far as it matters. What is absent, or is no text, holds nothing.
struct FeedEntry
{
    std::optional<std::u16string> appName;
    std::optional<std::u16string> version;
    std::optional<std::u16string> url;

    bool operator==(const FeedEntry&) const = default;
};

/// A version that the feed offers, and where to download it.
struct UpdateOffer
{
    std::u16string version;
    std::u16string url;

    bool operator==(const UpdateOffer&) const = default;
};

/// What a feed has for the running program.
struct FeedOutcome
{
    std::u16string_view error; ///< to be told to the user; empty when the feed is sound
    bool holdsThisApplication = false;
    std::vector<UpdateOffer> offers; ///< in the feed's order

    bool operator==(const FeedOutcome&) const = default;
};

/// The texts of the error alert, and the message above them.
namespace UpdateTexts {

inline constexpr std::u16string_view errorMessage = u"An error occurred:";
inline constexpr std::u16string_view noVersion
    = u"Can't check for updates:\nNo app version string found.";
inline constexpr std::u16string_view unreadable = u"Error in update Property List.";
inline constexpr std::u16string_view noEntries = u"Update Property List has no entries.";

/// What the update alert says, above and below.
std::u16string offerMessage(std::u16string_view offeredVersion);
std::u16string offerDetails(std::u16string_view runningVersion);

}

/// Whether two texts are the same to a reader: canonically equivalent sequences count as equal,
/// letters of another case do not. Lone surrogates equal themselves only.
bool isSameText(std::u16string_view one, std::u16string_view other);

/// What the feed has for the version of Tarnwick that runs.
///
/// Every entry named "Tarnwick" counts. It makes an offer when its version is another one, older
/// ones included, and its address holds the download site's prefix anywhere. An entry without a
/// version or an address makes none.
/// @param entries nothing when the feed is no list.
FeedOutcome readFeed(const std::optional<std::vector<FeedEntry>>& entries,
    std::u16string_view runningVersion, std::u16string_view downloadPrefix);

/// Whether an answer to the request for the feed is one to read: its status is a success, and its
/// media type, without parameters such as the character set, is exactly text/xml or text/plain.
bool isFeedAnswer(int httpStatus, std::string_view contentType);

} // namespace tarnwick
