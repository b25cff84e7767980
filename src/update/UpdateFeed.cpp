#include "update/UpdateFeed.h"

#include <unicode/unorm2.h>

namespace tarnwick {

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace

std::u16string UpdateTexts::offerMessage(std::u16string_view offeredVersion)
{
    std::u16string text = u"An update to this app to version ";
    text += offeredVersion;
    return text + u" is available.";
}

std::u16string UpdateTexts::offerDetails(std::u16string_view runningVersion)
{
    std::u16string text = u"You are currently running Tarnwick version ";
    text += runningVersion;
    return text + u".\nPlease choose whether to download this update now in your default browser.";
}

bool isSameText(std::u16string_view one, std::u16string_view other)
{
    UErrorCode status = U_ZERO_ERROR;
    const auto isEquivalent = [&] {
        return unorm_compare(
                   one.data(), int32_t(one.size()), other.data(), int32_t(other.size()), 0, &status)
            == 0;
    };
    return one == other || (isEquivalent() && U_SUCCESS(status));
}

FeedOutcome readFeed(const std::optional<std::vector<FeedEntry>>& entries,
    std::u16string_view runningVersion, std::u16string_view downloadPrefix)
{
    FeedOutcome outcome;
    if (!entries)
        outcome.error = UpdateTexts::unreadable;
    else if (entries->empty())
        outcome.error = UpdateTexts::noEntries;
    else {
        for (const FeedEntry& entry : *entries) {
            if (!entry.appName || !isSameText(*entry.appName, u"Tarnwick"))
                continue;
            outcome.holdsThisApplication = true;
            if (!entry.version || !entry.url || isSameText(*entry.version, runningVersion)
                || entry.url->find(downloadPrefix) == std::u16string::npos)
                continue;
            outcome.offers.push_back({*entry.version, *entry.url});
        }
    }
    return outcome;
}

bool isFeedAnswer(int httpStatus, std::string_view contentType)
{
    const std::string_view mediaType = trimmed(contentType.substr(0, contentType.find(';')));
    return httpStatus >= 200 && httpStatus <= 299
        && (mediaType == "text/xml" || mediaType == "text/plain");
}

} // namespace tarnwick
