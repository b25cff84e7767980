#pragma once

#include "pdf/PDFDocument.h"
#include "protocol/EngineProtocol.h"

#include <optional>

namespace tarnwick {

/// What the engine's answers say, taken apart and checked value by value. Each function gives
/// nothing for an answer that makes no sense or exceeds a limit (EngineLimits.h); an engine that
/// sends one is not to be trusted further.

/// Facts and the first page's size.
struct PDFOpenedAnswer
{
    PDFFacts facts;
    QSizeF firstPageSize;
};
std::optional<PDFOpenedAnswer> readOpenedAnswer(PayloadReader& reader);

/// Size of a page, each side held within [1, 14400] points, and its label if it has one.
struct PDFPageMeasure
{
    QSizeF size;
    std::optional<QString> label; ///< at most 255 characters
};
std::optional<QList<PDFPageMeasure>> readMeasureAnswer(PayloadReader& reader, int count);

/// An image of that size. It keeps the payload, which the reader reads, instead of copying
/// megabytes.
std::optional<QImage> readTileAnswer(
    PayloadReader& reader, const QByteArray& payload, const QSize& size);

std::optional<PDFPageText> readTextAnswer(PayloadReader& reader, PDFTextDetail detail);

/// Targets outside [0, pageCount) lead nowhere.
std::optional<QList<PDFLink>> readLinksAnswer(PayloadReader& reader, int pageCount);
std::optional<PDFOutline> readOutlineAnswer(PayloadReader& reader, int pageCount);

/// What the engine tells of a file that it has written.
struct PDFWrittenAnswer
{
    std::uint64_t size = 0; ///< in bytes
    PDFLosses losses; ///< of pages within [0, pageCount)
    qsizetype lostObjects = 0;
};
std::optional<PDFWrittenAnswer> readWrittenAnswer(PayloadReader& reader, int pageCount);

} // namespace tarnwick
