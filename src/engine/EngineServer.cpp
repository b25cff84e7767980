#include "EngineServer.h"

#include "Attempt.h"
#include "CrossReferenceReader.h"
#include "DocumentCheck.h"
#include "FlatWriter.h"
#include "ObjectFacts.h"
#include "ObjectReader.h"
#include "ObjectSigns.h"
#include "PageGeometry.h"
#include "PageLinks.h"
#include "PageText.h"
#include "PictureReader.h"
#include "PrintWriter.h"
#include "StreamReader.h"
#include "TableReader.h"

#include <algorithm>
#include <new>

namespace tarnwick {

EngineServer::EngineServer(std::string_view bytes, int output)
    : theDocument(bytes)
    , theTiles(theDocument)
    , theOutput(output)
{
}

void EngineServer::run()
{
    while (const std::optional<EnginePipe::Request> request = thePipe.read()) {
        theNumber = request->number;
        try {
            serve(*request);
        } catch (const std::bad_alloc&) {
            fail(FZ_ERROR_MEMORY);
        }
    }
}

void EngineServer::serve(const EnginePipe::Request& request)
{
    const bool isKnown = EngineRequests::visit(request.kind, [&](const auto& kind) {
        using Request = std::decay_t<decltype(kind)>;
        if (const std::optional<Request> message = unpacked<Request>(request.payload))
            take(*message);
        else
            fail(FZ_ERROR_GENERIC);
    });
    if (!isKnown)
        fail(FZ_ERROR_GENERIC);
}

template<typename Answer> void EngineServer::answer(const Answer& message)
{
    thePipe.answer(theNumber, Answer::kind, packed(message));
}

void EngineServer::fail(int error)
{
    const bool isFull = error == FZ_ERROR_MEMORY;
    answer(FailedAnswer{isFull ? EngineFault::isOutOfMemory : EngineFault::isDamaged});
}

// --- Opening -------------------------------------------------------------------------------------

void EngineServer::take(const OpenRequest&)
{
    answerState(theDocument.open(), false);
}

void EngineServer::take(const UnlockRequest& request)
{
    if (theState == EngineDocument::State::isLocked)
        answerState(theDocument.unlock(request.password), true);
    else
        fail(FZ_ERROR_GENERIC);
}

void EngineServer::answerState(EngineDocument::State state, bool wasTried)
{
    theState = state;
    switch (state) {
    case EngineDocument::State::isOpen:
        return answerOpened();
    case EngineDocument::State::isLocked:
        return answer(LockedAnswer{wasTried});
    case EngineDocument::State::isRefused:
        return answer(RefusedAnswer{theDocument.refusal()});
    }
}

namespace {

PageGeometry geometryOf(const EngineDocument& document, int index)
{
    fz_context* const ctx = document.context();
    pdf_obj* page = nullptr;
    fz_var(page);
    const int error
        = attempt(ctx, [&] { page = pdf_lookup_page_obj(ctx, document.document(), index); });
    return error || !page ? PageGeometry() : pageGeometry(ctx, page);
}

} // namespace

void EngineServer::answerOpened()
{
    const PdfVersion version = theDocument.version();
    const PageGeometry first
        = theDocument.pageCount() > 0 ? geometryOf(theDocument, 0) : PageGeometry();
    answer(OpenedAnswer{theDocument.pageCount(), version.major, version.minor,
        theDocument.infoEntryCount(), theDocument.catalogEntryCount(), first.width, first.height});
}

// --- The open document ---------------------------------------------------------------------------

template<typename Request> void EngineServer::take(const Request& request)
{
    typename Request::Result result;
    const bool isReady = !needsDocument<Request> || theState == EngineDocument::State::isOpen;
    const int error = isReady ? perform(request, result) : FZ_ERROR_GENERIC;
    if (error)
        fail(error);
    else
        thePipe.answer(theNumber, EngineAnswer::isDone, packed(result));
}

int EngineServer::perform(const MeasureRequest& request, MeasureResult& result)
{
    const int end = std::min(theDocument.pageCount(), request.first + request.count);
    if (!theLabels)
        theLabels = readPageLabels(theDocument.context(), theDocument.document());
    for (int page = request.first; page < end; ++page) {
        const PageGeometry geometry = geometryOf(theDocument, page);
        std::optional<std::string> label = pageLabel(*theLabels, page);
        const bool hasLabel = label.has_value();
        result.pages.push_back(
            {geometry.width, geometry.height, hasLabel, std::move(label).value_or(std::string())});
    }
    return FZ_ERROR_NONE;
}

int EngineServer::perform(const DigestRequest& request, DigestResult& result)
{
    return readDigests(theDocument, request, theDigests, result);
}

int EngineServer::perform(const TileRequest& request, TileResult& result)
{
    return theTiles.draw(request, result);
}

int EngineServer::perform(const TextRequest& request, TextResult& result)
{
    return readPageText(theDocument, request, result);
}

int EngineServer::perform(const LinksRequest& request, LinksResult& result)
{
    return readLinks(theDocument, request.page, result);
}

int EngineServer::perform(const OutlineRequest&, OutlineResult& result)
{
    return readOutline(theDocument, result);
}

int EngineServer::perform(const ObjectRequest& request, ObjectResult& result)
{
    return readObject(theDocument, request.number, result);
}

int EngineServer::perform(const SignRequest& request, SignResult& result)
{
    return readSigns(theDocument, request, theRoles, result);
}

int EngineServer::perform(const CrossReferenceRequest& request, CrossReferenceResult& result)
{
    return readCrossReferences(theDocument, request, result);
}

int EngineServer::perform(const CheckRequest&, CheckResult& result)
{
    checkDocument(theDocument, result);
    return FZ_ERROR_NONE;
}

int EngineServer::perform(const FactsRequest& request, FactsResult& result)
{
    return readFacts(theDocument, request.number, result);
}

int EngineServer::perform(const TableRequest& request, TableResult& result)
{
    return TableReader(theDocument).read(request.first, result);
}

// --- Files ---------------------------------------------------------------------------------------

WrittenFile::Progress EngineServer::progress()
{
    return [this](int done, int total) { answer(ProgressAnswer{done, total}); };
}

namespace {

/// Has a file written, and tells of it.
template<typename Writer> int write(Writer&& writer, WrittenResult& result)
{
    const int error = writer.write();
    result.size = writer.size();
    result.lostObjects = static_cast<std::uint32_t>(writer.lostObjects());
    for (const auto& [page, loss] : writer.losses())
        result.losses.push_back({page, loss});
    return error;
}

} // namespace

int EngineServer::perform(const FlatRequest&, WrittenResult& result)
{
    if (theOutput < 0)
        return FZ_ERROR_GENERIC;
    FlatWriter writer(theDocument, theOutput, progress());
    const int error = write(writer, result);
    result.origins = writer.origins();
    return error;
}

int EngineServer::perform(const PrintRequest& request, WrittenResult& result)
{
    if (theOutput < 0)
        return FZ_ERROR_GENERIC;
    return write(PrintWriter(theDocument, request, theOutput, progress()), result);
}

int EngineServer::perform(const StreamRequest& request, StreamResult& result)
{
    if (theOutput < 0)
        return FZ_ERROR_GENERIC;
    return StreamReader(theDocument, request, theOutput, progress()).read(result);
}

int EngineServer::perform(const PictureRequest& request, PictureResult& result)
{
    if (theOutput < 0)
        return FZ_ERROR_GENERIC;
    return PictureReader(theDocument, theOutput).read(request.number, result);
}

} // namespace tarnwick
