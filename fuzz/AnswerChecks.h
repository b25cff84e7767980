#pragma once

#include "PDFEngineAnswers.h"
#include "protocol/EngineMessages.h"

namespace tarnwick {

/// What an engine was asked for, as far as its answer has to fit.
struct AskedFor
{
    EngineRequest kind = EngineRequest::isOpen;
    int pageCount = 0; ///< of the document; of the pages to measure
    PDFTextDetail detail = PDFTextDetail::isPlain;
    QSize size; ///< of the tile
    bool writesFile = false;
};

/// Reads an answer as the program does, and ends the process where the result breaks what the
/// headers promise of it.
/// @returns whether the program takes the answer.
bool takesAnswer(const AskedFor& asked, std::string_view payload);

} // namespace tarnwick
