#include "CheckNotes.h"

#include <algorithm>

namespace tarnwick {

void CheckNotes::giveTo(CheckResult& result)
{
    result.findings = std::move(theFindings);
    std::stable_sort(result.findings.begin(), result.findings.end(),
        [](const EngineFinding& one, const EngineFinding& other) { return one.code < other.code; });
    result.counts = std::vector<std::uint32_t>(theCounts.begin(), theCounts.end());
}

} // namespace tarnwick
