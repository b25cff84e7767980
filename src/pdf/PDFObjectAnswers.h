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

/// Characters that are not printable are replaced.
std::optional<PDFFacts> readFactsAnswer(std::string_view payload);

/// What the engine tells of a picture whose pixels it has written.
struct PDFPictureAnswer
{
    QSize size; ///< in pixels, each side within maximumPictureSide; empty without any
    PDFPictureEnd end = PDFPictureEnd::isUnreadable;
    QString remark; ///< one line

    std::size_t bytes() const
    {
        return static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()) * 4;
    }
};
std::optional<PDFPictureAnswer> readPictureAnswer(std::string_view payload);

} // namespace tarnwick
