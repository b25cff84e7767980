#pragma once

#include "EngineDocument.h"
#include "EnginePipe.h"
#include "PageLabels.h"
#include "PageTiles.h"

#include <optional>

namespace tarnwick {

/// Answers the program's requests one after another until it goes.
class EngineServer
{
public:
    /// @param bytes the file. @param flat descriptor for the flattened or printed document, or -1.
    EngineServer(std::string_view bytes, int flat);

    /// Returns when the program closes its end.
    void run();

private:
    void serve(const EnginePipe::Request& request);
    void answerState(EngineDocument::State state, bool wasTried);
    void answerOpened();
    /// Runs what a request asks for on an open document. @returns MuPDF's error code.
    int perform(EngineRequest kind, PayloadReader& arguments, PayloadWriter& result);
    int measure(PayloadReader& arguments, PayloadWriter& result);
    int drawTile(PayloadReader& arguments, PayloadWriter& result);
    int readText(PayloadReader& arguments, PayloadWriter& result);
    int writeFlat(PayloadWriter& result);
    int writePrint(PayloadReader& arguments, PayloadWriter& result);
    void answerProgress(int done, int total);
    void answer(EngineAnswer kind, const PayloadWriter& payload);

    EnginePipe thePipe;
    EngineDocument theDocument;
    PageTiles theTiles;
    int theFlatDescriptor;
    std::uint32_t theNumber = 0;
    EngineDocument::State theState = EngineDocument::State::isRefused;
    std::optional<std::vector<PageLabelRange>> theLabels;
};

} // namespace tarnwick
