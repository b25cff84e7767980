#pragma once

#include "protocol/DocumentCheck.h"

#include <string>

namespace tarnwick {

/// What a finding of the engine says, in plain words of printable ASCII.
std::string engineSentence(const EngineFinding& finding);

/// How a document is encrypted, and what its permissions withhold from those who have only the
/// user's password (ISO 32000-2, 7.6.4.2, Table 22).
std::string encryptionSentence(const EngineEncryption& encryption);

} // namespace tarnwick
