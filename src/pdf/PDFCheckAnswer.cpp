#include "PDFCheckAnswer.h"

#include <algorithm>

namespace tarnwick {

namespace {

bool isPlain(const std::string& text)
{
    return std::all_of(text.begin(), text.end(), [](char one) { return one >= ' ' && one <= '~'; });
}

bool isSound(const EngineFinding& finding, int pageCount, std::size_t fileSize)
{
    if (finding.page >= pageCount || !isPlain(finding.text))
        return false;
    return finding.code != EngineFindingCode::isEntryElsewhere
        || (finding.said >= 0 && static_cast<std::uint64_t>(finding.said) < fileSize);
}

/// Whether each code has all of its findings, or as many as are told.
bool areCounted(const DocumentCheck& check)
{
    std::array<std::uint32_t, engineFindingCodes> told{};
    for (const EngineFinding& finding : check.findings)
        ++told.at(static_cast<std::size_t>(finding.code));
    return std::equal(
        told.begin(), told.end(), check.counts.begin(), [](std::uint32_t some, std::uint32_t all) {
            return some == std::min<std::uint32_t>(all, mostEngineFindings);
        });
}

} // namespace

std::optional<DocumentCheck> readCheckAnswer(
    std::string_view payload, int pageCount, std::size_t fileSize)
{
    auto message = unpacked<CheckResult>(payload);
    if (!message || message->counts.size() != engineFindingCodes
        || message->pagesLookedAt > pageCount || message->objectStreams > message->members
        || !isPlain(message->encryption.method))
        return std::nullopt;
    DocumentCheck check;
    for (std::size_t code = 0; code < engineFindingCodes; ++code)
        check.counts.at(code) = message->counts[code];
    check.findings = std::move(message->findings);
    check.encryption = std::move(message->encryption);
    check.members = message->members;
    check.objectStreams = message->objectStreams;
    check.pageCount = pageCount;
    check.pagesLookedAt = message->pagesLookedAt;
    const bool areSound = std::all_of(check.findings.begin(), check.findings.end(),
        [&](const EngineFinding& one) { return isSound(one, pageCount, fileSize); });
    const bool areOrdered = std::is_sorted(check.findings.begin(), check.findings.end(),
        [](const EngineFinding& one, const EngineFinding& other) { return one.code < other.code; });
    if (!areSound || !areOrdered || !areCounted(check))
        return std::nullopt;
    return check;
}

} // namespace tarnwick
