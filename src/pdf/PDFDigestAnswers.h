#pragma once

#include "pdf/PDFPageDigests.h"

#include <optional>
#include <string_view>

namespace tarnwick {

/// Digests of pages, as the answers of PDFEngineAnswers.h. @param count of the pages that were
/// asked for, of which each has to have one.
std::optional<QList<PDFPageDigest>> readDigestAnswer(std::string_view payload, int count);

} // namespace tarnwick
