#pragma once

#include "Teller.h"

#include <vector>

namespace tarnwick {

/// One lie of an engine.
struct Lie
{
    const char* name; ///< what the engine claims, as a test's row says it
    EngineRequest at; ///< the request that it is told to
    void (*tell)(Teller& teller, const Question& question);
    /// The requests that fail of it, by the first words of their kinds; null where that may be any,
    /// since an engine that tells too much is ended at the next request.
    const char* failing = "";
};

const std::vector<Lie>& allLies();

/// @returns null for an unknown name.
const Lie* lieNamed(std::string_view name);

/// All characters in one look, or at places side by side.
TextResult textOf(EngineTextDetail detail, std::string_view latin1);

} // namespace tarnwick
