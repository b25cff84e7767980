// The saved versions of any bytes: cross-references as the engine reads them, and what the program
// makes of them.

#include "FuzzTarget.h"

#include "CrossReferenceReader.h"
#include "PDFCrossReferenceAnswers.h"
#include "versions/VersionChain.h"

#include <algorithm>

using namespace tarnwick;

namespace {

void readInto(VersionChain& chain, const EngineDocument& document)
{
    for (auto wanted = chain.wanted(); !wanted.empty(); wanted = chain.wanted()) {
        CrossReferenceRequest request;
        const std::vector<std::uint64_t> first = {wanted.front()};
        request.offsets = {{first.front()}};
        CrossReferenceResult result;
        require(readCrossReferences(document, request, result) == 0, "an answer");
        auto answer = readCrossReferenceAnswer(packed(result), first);
        require(answer && answer->sections.size() == 1, "an answer that is taken");
        chain.take(std::move(answer->sections.front()));
    }
}

bool isAscending(const std::vector<std::uint32_t>& numbers)
{
    return std::is_sorted(numbers.begin(), numbers.end(), std::less_equal<>())
        && (numbers.empty() || numbers.front() > 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = textOf(data, size);
    const EngineDocument document(bytes);
    VersionChain chain(bytes);
    readInto(chain, document);
    chain.resolve();
    std::size_t end = 0;
    for (const SavedVersion& version : chain.versions()) {
        require(version.begin == end && version.end > end && version.end <= size, "a cut");
        require(version.save >= 1 && version.save <= version.marker, "a number of a save");
        require(version.isOwn || version.changes == ObjectChanges(), "changes of no version");
        end = version.end;
        if (!version.changes)
            continue;
        for (const auto* list :
            {&version.changes->added, &version.changes->replaced, &version.changes->freed})
            require(isAscending(*list), "a list that does not ascend");
    }
    return 0;
}
