// Any requests, to an engine with a document. The input: a byte for the document, then for each
// request a byte for its kind, a byte for the length of its payload, and the payload. Behind kind 0
// everything goes over the pipe as it is.

#include "EngineRun.h"
#include "FuzzTarget.h"
#include "RequestFrames.h"

#include "support/PdfBuilder.h"

#include <array>

using namespace tarnwick;

namespace {

const std::string& document(std::size_t index)
{
    static const std::array<std::string, 2> documents = {
        PdfBuilder()
            .setCatalogEntries("/PageLabels << /Nums [ 0 << /S /r >> 2 << /S /D >> ] >>")
            .setInfo("<< /Title (a) >>")
            .addPage("A page\nof two lines", "/Rotate 90")
            .addPage("Another", "/CropBox [ 10 10 90 90 ]")
            .addDrawing("1 0 0 rg 0 0 50 50 re f")
            .bytes(),
        "no PDF",
    };
    return documents[index % documents.size()];
}

/// The frames, behind one that opens the document, or hardly any request would come further.
std::string framed(std::string_view input)
{
    std::string requests;
    appendRequest(requests, OpenRequest());
    while (input.size() >= 2 && input[0] != 0) {
        const auto length = static_cast<std::uint8_t>(input[1]);
        appendRequest(requests, static_cast<EngineRequest>(input[0]), input.substr(2, length));
        input.remove_prefix(std::min(input.size(), std::size_t{2} + length));
    }
    return requests.append(input.substr(input.empty() ? 0 : 1));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const EngineRun engine(document(data[0]), framed(textOf(data + 1, size - 1)));
    const auto largest = static_cast<std::uint32_t>(EngineRequests::largestResult());
    for (const EngineRun::Answer& answer : engine.answers()) {
        const auto kind = static_cast<EngineAnswer>(answer.frame.kind);
        require(answer.frame.size <= largestPayload(kind, largest),
            "a longer answer than the program takes");
    }
    return 0;
}
