#pragma once

#include "Teller.h"

#include <array>
#include <vector>

namespace tarnwick {

/// One lie of an engine.
struct Lie
{
    const char* name; ///< what the engine claims, as a test's row says it
    EngineRequest at; ///< the request that it is told to
    void (*tell)(Teller& teller, const Question& question);
};

const std::vector<Lie>& allLies();

/// @returns null for an unknown name.
const Lie* lieNamed(std::string_view name);

// Parts of answers, in the layout of EngineProtocol.h.

/// @param detail as isText has it. All characters in one look.
PayloadWriter textAnswer(int detail, std::string_view latin1);
void putLink(
    PayloadWriter& result, const std::array<float, 4>& area, int page, std::string_view address);
void putEntry(PayloadWriter& result, int depth, std::string_view title, int page);
/// What isFlat and isPrint bring.
PayloadWriter writtenAnswer(std::uint64_t size);

} // namespace tarnwick
