#include "analysis/ReferenceWalk.h"

#include "RecordCursor.h"
#include "ReferenceLetters.h"

#include <algorithm>
#include <bit>

namespace tarnwick {

namespace {

constexpr std::size_t slice = std::size_t{4} << 20; ///< between two looks at the stop token

} // namespace

bool walkReferences(const pdfObjectCatalog& catalog, const TakeReference& take,
    const std::function<void(std::size_t bytesDone)>& progress, const std::stop_token& stop)
{
    const std::string_view text = catalog.bytes();
    RecordCursor cursor(catalog);
    const auto takeBlock = [&](std::size_t offset) {
        for (std::uint64_t bits = referenceLetters(text, offset); bits != 0; bits &= bits - 1) {
            const auto found = ReferenceScan::endingAt(
                text, offset + static_cast<std::size_t>(std::countr_zero(bits)));
            if (found && cursor.isCode(found->begin))
                take(*found, cursor.owner(found->begin));
        }
    };
    for (std::size_t offset = 1; offset < text.size();) {
        if (stop.stop_requested())
            return false;
        const std::size_t goal = offset + std::min(slice, text.size() - offset);
        for (; offset < goal; offset += std::min(letterBlock, text.size() - offset))
            takeBlock(offset);
        if (progress)
            progress(offset);
    }
    return true;
}

} // namespace tarnwick
