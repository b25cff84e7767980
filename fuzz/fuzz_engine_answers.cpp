// What an engine that was taken over may answer, as the program reads it: a byte for the request,
// a number for its pages, a byte for the text's detail, two for a tile's sides, and the answer.

#include "AnswerChecks.h"
#include "FuzzTarget.h"

using namespace tarnwick;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    PayloadReader input(textOf(data, size));
    AskedFor asked;
    asked.kind = static_cast<EngineRequest>(input.take<std::uint8_t>() % EngineRequests::count + 1);
    asked.pageCount = static_cast<int>(input.take<std::uint16_t>());
    asked.detail = static_cast<PDFTextDetail>(input.take<std::uint8_t>() % 3);
    asked.size.setWidth(1 + input.take<std::uint8_t>());
    asked.size.setHeight(1 + input.take<std::uint8_t>());
    constexpr std::size_t headSize = 6;
    takesAnswer(asked, size > headSize ? textOf(data, size).substr(headSize) : std::string_view());
    return 0;
}
