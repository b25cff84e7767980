#pragma once

#include "EngineDocument.h"
#include "EnginePipe.h"
#include "ObjectRoles.h"
#include "PageDigests.h"
#include "PageLabels.h"
#include "PageTiles.h"
#include "WrittenFile.h"

#include <optional>

namespace tarnwick {

/// Answers the program's requests one after another until it goes.
class EngineServer
{
public:
    /// @param bytes the file. @param output descriptor for the flattened or printed document, or
    /// -1.
    EngineServer(std::string_view bytes, int output);

    /// Returns when the program closes its end.
    void run();

private:
    void serve(const EnginePipe::Request& request);
    void take(const OpenRequest& request);
    void take(const UnlockRequest& request);
    /// Any other request; nearly all are on an open document.
    template<typename Request> void take(const Request& request);
    void answerState(EngineDocument::State state, bool wasTried);
    void answerOpened();

    // What a request asks for. Each returns MuPDF's error code.
    int perform(const MeasureRequest& request, MeasureResult& result);
    int perform(const DigestRequest& request, DigestResult& result);
    int perform(const TileRequest& request, TileResult& result);
    int perform(const TextRequest& request, TextResult& result);
    int perform(const LinksRequest& request, LinksResult& result);
    int perform(const OutlineRequest& request, OutlineResult& result);
    int perform(const FlatRequest& request, WrittenResult& result);
    int perform(const PrintRequest& request, WrittenResult& result);
    int perform(const ObjectRequest& request, ObjectResult& result);
    int perform(const StreamRequest& request, StreamResult& result);
    int perform(const SignRequest& request, SignResult& result);
    int perform(const CrossReferenceRequest& request, CrossReferenceResult& result);
    int perform(const CheckRequest& request, CheckResult& result);
    int perform(const FactsRequest& request, FactsResult& result);
    int perform(const PictureRequest& request, PictureResult& result);
    int perform(const TableRequest& request, TableResult& result);

    WrittenFile::Progress progress();
    template<typename Answer> void answer(const Answer& message);
    void fail(int error);

    EnginePipe thePipe;
    EngineDocument theDocument;
    PageTiles theTiles;
    int theOutput;
    std::uint32_t theNumber = 0;
    EngineDocument::State theState = EngineDocument::State::isRefused;
    std::optional<std::vector<PageLabelRange>> theLabels;
    std::optional<ObjectRoles> theRoles;
    std::optional<PageDigests> theDigests;
};

} // namespace tarnwick
