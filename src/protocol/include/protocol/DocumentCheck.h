#pragma once

#include "protocol/CheckMessages.h"

#include <array>

namespace tarnwick {

/// What the engine tells of a document as a whole, as the program believes it (CheckResult).
struct DocumentCheck
{
    std::vector<EngineFinding> findings; ///< in the order of their codes
    std::array<std::uint32_t, engineFindingCodes> counts{}; ///< of each code, told or not
    EngineEncryption encryption;
    int members = 0;
    int objectStreams = 0;
    int pageCount = 0; ///< of the document
    int pagesLookedAt = 0;
};

} // namespace tarnwick
