#pragma once

#include "protocol/DocumentCheck.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace tarnwick {

/// The answer on a document as a whole, as those of PDFEngineAnswers.h: findings in the order of
/// their codes, no more of one than its count, on pages and offsets that exist, in plain words.
std::optional<DocumentCheck> readCheckAnswer(
    std::string_view payload, int pageCount, std::size_t fileSize);

} // namespace tarnwick
