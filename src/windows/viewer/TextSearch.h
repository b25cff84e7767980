#pragma once

#include "FoldedText.h"
#include "SearchChoices.h"
#include "SearchPattern.h"

#include <cstddef>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Where a searched text was found.
struct TextMatch
{
    std::size_t start = 0; ///< UTF-16 units of the text searched in
    std::size_t length = 0; ///< at least 1

    bool operator==(const TextMatch&) const = default;
};

/// Finds a text in the pages of a document, one page at a time.
///
/// Time grows with the page's and the searched text's length, never with their product. Matches
/// cover whole grapheme clusters, do not overlap, and follow each other in the page:
/// - Respecting or ignoring case, a text that ends within a cluster is no match there, however the
///   cluster is encoded: "e" is found neither in U+00E9 nor in "e" with U+0301, as both are the
///   same character, and "s" is not found in "ß".
/// - Literally, code points are found wherever they stand; the match then extends over the clusters
///   that they are part of.
/// A line end matches a space, together with the blanks around it; so does a line end in the
/// searched text. Lone surrogates are code points like others.
///
/// Words are also found where they are broken: at a line's end behind a hyphen, spelled with the
/// hyphen or without; at a soft hyphen, spelled with a hyphen or none; and in scripts without
/// blanks between words at any line's end. Matches cover what breaks them. Where two matches
/// overlap, the one that ends first counts.
///
/// Use an object from one thread at a time.
class TextSearch
{
public:
    TextSearch(std::u16string_view pattern, SearchOptions options);
    ~TextSearch();

    /// @param stop ends the search early; the matches found so far are returned.
    std::vector<TextMatch> matches(std::u16string_view page, const std::stop_token& stop = {});

private:
    class Clusters;

    TextMatch accepted(std::size_t begin, std::size_t end, std::size_t free);

    SearchOptions theOptions;
    SearchPattern thePattern;
    FoldedText theFolded;
    std::unique_ptr<Clusters> theClusters;
};

} // namespace tarnwick
