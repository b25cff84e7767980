#pragma once

#include "PDFEngineAnswers.h"
#include "pdf/PDFObject.h"

namespace tarnwick {

/// The answers on single objects, as those of PDFEngineAnswers.h.

/// @param number that was asked for. What stands beside a state that cannot have it, such as the
/// text of a missing object, makes no sense.
std::optional<PDFObject> readObjectAnswer(std::string_view payload, int number);

/// What the engine tells of a stream that it has written.
struct PDFStreamAnswer
{
    std::uint64_t size = 0; ///< in bytes, at most the limit
    PDFStreamEnd end = PDFStreamEnd::isNone;
    QString remark; ///< one line
};
std::optional<PDFStreamAnswer> readStreamAnswer(std::string_view payload, std::uint64_t limit);

} // namespace tarnwick
