#pragma once

#include "protocol/CheckMessages.h"

#include <array>
#include <utility>

namespace tarnwick {

/// Gathers what a check has to say, no more of each code than are told.
class CheckNotes
{
public:
    void add(EngineFinding finding)
    {
        std::uint32_t& count = theCounts.at(static_cast<std::size_t>(finding.code));
        if (count++ < mostEngineFindings)
            theFindings.push_back(std::move(finding));
    }
    /// Counts further ones that are not told.
    void count(EngineFindingCode code, std::size_t further)
    {
        theCounts.at(static_cast<std::size_t>(code)) += static_cast<std::uint32_t>(further);
    }
    /// In the order of their codes.
    void giveTo(CheckResult& result);

private:
    std::array<std::uint32_t, engineFindingCodes> theCounts{};
    std::vector<EngineFinding> theFindings;
};

} // namespace tarnwick
