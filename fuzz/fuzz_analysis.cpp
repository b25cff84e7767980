// The analysis of source text against the second, plain one: listing, object list, summary, saved
// versions.

#include "FuzzTarget.h"

#include "support/AnalysisDifferences.h"

using namespace tarnwick;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string difference = analysisDifferences(std::string(textOf(data, size)));
    require(difference.empty(), difference);
    return 0;
}
