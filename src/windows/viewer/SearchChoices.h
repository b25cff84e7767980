#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

/// How a search compares texts. The numbers are those of the usual comparison flags.
enum class SearchOptions
{
    isRespectingCase = 0, ///< canonically equivalent sequences are equal, case counts
    isIgnoringCase = 1, ///< the same, and case does not count
    isLiteral = 2, ///< code points one by one, so case counts too
};

/// The comparison that two check boxes choose. Literal comparison leaves no choice of case.
SearchOptions searchOptions(bool isCaseSensitiveOn, bool isLiteralOn);

/// Where stepping through a ring of matches leads: below 0 to the last match, behind the last to
/// the first, elsewhere it stays.
/// @param value any number. @param count of matches. @returns an index from 0, or nothing without
///   matches.
std::optional<std::int64_t> ringIndex(std::int64_t value, std::int64_t count);

/// The latest search texts, newest first, each once, ten at most.
class RecentSearches
{
public:
    static constexpr std::size_t limit = 10;
    /// Longer texts are cut for the menu and the settings; they are searched whole.
    static constexpr std::size_t longestText = 1000;

    /// Puts a text in front; one that is there already moves. An empty text changes nothing.
    /// @returns whether the list changed.
    bool add(const std::u16string& text);
    void clear() { theTexts.clear(); }
    /// Takes a stored list over: newest first; what breaks the rules above is left out.
    void restore(const std::vector<std::u16string>& texts);
    const std::vector<std::u16string>& texts() const { return theTexts; }

private:
    std::vector<std::u16string> theTexts;
};

} // namespace tarnwick
