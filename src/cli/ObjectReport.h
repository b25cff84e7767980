#pragma once

#include "Arguments.h"
#include "JsonText.h"
#include "compare/ObjectComparison.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// What a comparison of objects prints.
struct ReportedDifference
{
    ObjectDifference difference;
    std::vector<std::string> entries; ///< keys with their slashes whose values differ
};

/// The entries of an object that is set out an entry a line (PDFObject::text), by key; of a value
/// that is no dictionary the whole, under no key.
std::map<std::string, std::string> entriesOf(std::string_view text);
/// Keys whose values differ, in order, but for those that say how a stream is packed.
/// @param partners numbers of objects before, and what they are after; others keep theirs.
std::vector<std::string> differingEntries(std::string_view before, std::string_view after,
    const std::map<std::uint32_t, std::uint32_t>& partners, bool isStream);
/// The text with other numbers in its references.
std::string withNumbers(
    std::string_view text, const std::map<std::uint32_t, std::uint32_t>& partners);

/// A line for each: what became of it, its numbers before and after, its group, and what differs.
std::string linesOf(const std::vector<ReportedDifference>& differences);
/// Members of an open object: "equal" and "objects".
void appendDifferences(const std::vector<ReportedDifference>& differences, JsonText& json);

} // namespace tarnwick
