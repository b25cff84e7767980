#pragma once

#include "pdf/PDFDocument.h"

#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick {

/// What the payloads of the engine's answers say (EngineMessages.h), in values that the program can
/// work with. Each function gives nothing for an answer that makes no sense or exceeds a limit; an
/// engine that sends one is not to be trusted further.

inline std::string_view viewOf(const QByteArray& payload)
{
    return {payload.constData(), static_cast<std::size_t>(payload.size())};
}

/// Facts and the first page's size.
struct PDFOpenedAnswer
{
    DocumentFacts facts;
    QSizeF firstPageSize;
};
std::optional<PDFOpenedAnswer> readOpenedAnswer(std::string_view payload);

/// Size of a page, each side held within [1, 14400] points, and its label if it has one.
struct PDFPageMeasure
{
    QSizeF size;
    std::optional<QString> label; ///< at most 255 characters
};
std::optional<QList<PDFPageMeasure>> readMeasureAnswer(std::string_view payload, int count);

/// An image of that size. It keeps the payload instead of copying megabytes.
std::optional<QImage> readTileAnswer(const QByteArray& payload, const QSize& size);

std::optional<PDFPageText> readTextAnswer(std::string_view payload, PDFTextDetail detail);

/// Targets outside [0, pageCount) lead nowhere.
std::optional<QList<PDFLink>> readLinksAnswer(std::string_view payload, int pageCount);
std::optional<PDFOutline> readOutlineAnswer(std::string_view payload, int pageCount);

/// What the engine tells of a file that it has written.
struct PDFWrittenAnswer
{
    std::uint64_t size = 0; ///< in bytes
    PDFLosses losses; ///< of pages within [0, pageCount)
    qsizetype lostObjects = 0;
    std::vector<std::uint32_t> origins; ///< numbers below maximumObjectNumber, or 0
};
std::optional<PDFWrittenAnswer> readWrittenAnswer(std::string_view payload, int pageCount);

} // namespace tarnwick
