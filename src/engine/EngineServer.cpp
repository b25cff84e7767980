#include "EngineServer.h"

#include "Attempt.h"
#include "FlatWriter.h"
#include "PageGeometry.h"
#include "PageLinks.h"
#include "PageText.h"
#include "PrintWriter.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace tarnwick {

EngineServer::EngineServer(std::string_view bytes, int flat)
    : theDocument(bytes)
    , theTiles(theDocument)
    , theFlatDescriptor(flat)
{
}

void EngineServer::run()
{
    while (const std::optional<EnginePipe::Request> request = thePipe.read()) {
        theNumber = request->number;
        try {
            serve(*request);
        } catch (const std::bad_alloc&) {
            PayloadWriter fault;
            fault.put(static_cast<std::uint8_t>(EngineFault::isOutOfMemory));
            answer(EngineAnswer::isFailed, fault);
        }
    }
}

void EngineServer::answer(EngineAnswer kind, const PayloadWriter& payload)
{
    thePipe.answer(theNumber, kind, payload);
}

void EngineServer::serve(const EnginePipe::Request& request)
{
    PayloadReader arguments(request.payload);
    if (request.kind == EngineRequest::isOpen)
        return answerState(theDocument.open(), false);
    if (request.kind == EngineRequest::isUnlock && theState == EngineDocument::State::isLocked)
        return answerState(theDocument.unlock(std::string(arguments.takeText())), true);
    PayloadWriter result;
    const int error = theState == EngineDocument::State::isOpen
        ? perform(request.kind, arguments, result)
        : FZ_ERROR_GENERIC;
    if (!error)
        return answer(EngineAnswer::isDone, result);
    PayloadWriter fault;
    fault.put(static_cast<std::uint8_t>(
        error == FZ_ERROR_MEMORY ? EngineFault::isOutOfMemory : EngineFault::isDamaged));
    answer(EngineAnswer::isFailed, fault);
}

void EngineServer::answerState(EngineDocument::State state, bool wasTried)
{
    theState = state;
    PayloadWriter payload;
    switch (state) {
    case EngineDocument::State::isOpen:
        return answerOpened();
    case EngineDocument::State::isLocked:
        payload.put(static_cast<std::uint8_t>(wasTried));
        return answer(EngineAnswer::isLocked, payload);
    case EngineDocument::State::isRefused:
        payload.putText(theDocument.refusal());
        return answer(EngineAnswer::isRefused, payload);
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
    PayloadWriter facts;
    for (const int fact : {theDocument.pageCount(), version.major, version.minor,
             theDocument.infoEntryCount(), theDocument.catalogEntryCount()})
        facts.put(fact);
    facts.put(first.width);
    facts.put(first.height);
    answer(EngineAnswer::isOpened, facts);
}

int EngineServer::perform(EngineRequest kind, PayloadReader& arguments, PayloadWriter& result)
{
    switch (kind) {
    case EngineRequest::isMeasure:
        return measure(arguments, result);
    case EngineRequest::isTile:
        return drawTile(arguments, result);
    case EngineRequest::isText:
        return readText(arguments, result);
    case EngineRequest::isLinks:
        return readLinks(theDocument, arguments.take<int>(), result);
    case EngineRequest::isOutline:
        return readOutline(theDocument, result);
    case EngineRequest::isFlat:
        return writeFlat(result);
    case EngineRequest::isPrint:
        return writePrint(arguments, result);
    case EngineRequest::isOpen:
    case EngineRequest::isUnlock:
        break;
    }
    return FZ_ERROR_GENERIC;
}

/// For each page: float width, height, byte it has a label, text label.
int EngineServer::measure(PayloadReader& arguments, PayloadWriter& result)
{
    const int first = std::max(arguments.take<int>(), 0);
    const int count
        = std::min({arguments.take<int>(), theDocument.pageCount() - first, maximumMeasuredPages});
    if (!theLabels)
        theLabels = readPageLabels(theDocument.context(), theDocument.document());
    for (int page = first; page < first + count; ++page) {
        const PageGeometry geometry = geometryOf(theDocument, page);
        const std::optional<std::string> label = pageLabel(*theLabels, page);
        result.put(geometry.width);
        result.put(geometry.height);
        result.put(static_cast<std::uint8_t>(label.has_value()));
        result.putText(label.value_or(std::string()).substr(0, longestLabel));
    }
    return FZ_ERROR_NONE;
}

int EngineServer::drawTile(PayloadReader& arguments, PayloadWriter& result)
{
    TileOrder order;
    order.page = arguments.take<int>();
    order.scale = arguments.take<double>();
    order.rotation = arguments.take<int>();
    for (int* number : {&order.x, &order.y, &order.width, &order.height})
        *number = arguments.take<int>();
    const auto isSide = [](int side) { return side > 0 && side <= maximumTileSide; };
    const auto isPlace = [](int place) { return place >= -(1 << 28) && place <= 1 << 28; };
    if (!arguments.isDone() || !isSide(order.width) || !isSide(order.height) || !isPlace(order.x)
        || !isPlace(order.y) || !std::isfinite(order.scale) || order.scale <= 0)
        return FZ_ERROR_GENERIC;
    return theTiles.draw(order, result);
}

int EngineServer::readText(PayloadReader& arguments, PayloadWriter& result)
{
    const int page = arguments.take<int>();
    const int detail = arguments.take<std::uint8_t>();
    return readPageText(theDocument, page, detail, result);
}

void EngineServer::answerProgress(int done, int total)
{
    PayloadWriter progress;
    progress.put(done);
    progress.put(total);
    answer(EngineAnswer::isProgress, progress);
}

namespace {

/// [size of the file, lost objects, count of pages that lack something, then for each: int page,
/// byte EngineLoss].
void putWritten(const FlatFile& file, const FlatFile::Losses& losses, PayloadWriter& result)
{
    result.put(file.size());
    result.put(static_cast<std::uint32_t>(file.lostObjects()));
    result.put(static_cast<std::uint32_t>(losses.size()));
    for (const auto& [page, loss] : losses) {
        result.put(page);
        result.put(static_cast<std::uint8_t>(loss));
    }
}

} // namespace

int EngineServer::writeFlat(PayloadWriter& result)
{
    if (theFlatDescriptor < 0)
        return FZ_ERROR_GENERIC;
    FlatWriter writer(theDocument, theFlatDescriptor,
        [this](int done, int total) { answerProgress(done, total); });
    const int error = writer.write();
    putWritten(writer, writer.losses(), result);
    return error;
}

int EngineServer::writePrint(PayloadReader& arguments, PayloadWriter& result)
{
    bool isSound = theFlatDescriptor >= 0;
    const auto take = [&](double& number) {
        number = arguments.take<double>();
        isSound = isSound && std::isfinite(number);
    };
    PrintOrder order;
    for (double* number : {&order.width, &order.height, &order.left, &order.top})
        take(*number);
    const auto count = arguments.take<std::uint32_t>();
    if (!arguments.holds(count, printSheetSize))
        return FZ_ERROR_GENERIC;
    order.sheets.resize(count);
    for (PrintSheet& sheet : order.sheets) {
        sheet.page = arguments.take<int>();
        for (double* number : {&sheet.x, &sheet.y, &sheet.width, &sheet.height, &sheet.scale})
            take(*number);
    }
    if (!isSound || !arguments.isDone())
        return FZ_ERROR_GENERIC;
    PrintWriter writer(theDocument, order, theFlatDescriptor,
        [this](int done, int total) { answerProgress(done, total); });
    const int error = writer.write();
    putWritten(writer, writer.losses(), result);
    return error;
}

} // namespace tarnwick
