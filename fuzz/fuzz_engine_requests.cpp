// Any requests, to an engine with a document: a byte for the document, then frames as they come
// over the pipe.

#include "EngineRun.h"
#include "FuzzTarget.h"
#include "RequestFrames.h"

#include "support/PdfBuilder.h"

#include <array>

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

/// Every request begins with the opening of the document, or hardly any would come further.
std::string opening()
{
    std::string requests;
    appendRequest(requests, EngineRequest::isOpen);
    return requests;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::string requests = opening() + std::string(textOf(data + 1, size - 1));
    const EngineRun engine(document(data[0]), requests);
    for (const EngineRun::Answer& answer : engine.answers())
        require(answer.frame.size <= maximumAnswerSize, "a longer answer than the program takes");
    return 0;
}
