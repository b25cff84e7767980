#include "SourceSummary.h"

#include <string_view>

namespace tarnwick {

namespace {

std::string entryCount(std::string_view dictionary, const std::optional<int>& count)
{
    std::string line(dictionary);
    if (count)
        return line + " dictionary entry count = " + std::to_string(*count) + ".\n";
    return line + " dictionary couldn't be found.\n";
}

} // namespace

std::string summaryText(const DocumentFacts& facts, const std::optional<std::string>& flattened,
    const std::optional<std::string>& source)
{
    std::string text = "Summary from loaded PDF in Quartz 2D:\n";
    text += "PDF version " + std::to_string(facts.majorVersion) + "."
        + std::to_string(facts.minorVersion) + ".\n";
    text += "Found a total of " + std::to_string(facts.pageCount) + " pages.\n";
    text += entryCount("Info", facts.infoEntryCount);
    text += entryCount("Catalog", facts.catalogEntryCount) + "\n";
    if (flattened)
        text += "Flattened PDF (Quartz 2D) " + *flattened + "\n\n";
    if (source)
        text += "Source PDF file " + *source + "\n";
    return text;
}

} // namespace tarnwick
