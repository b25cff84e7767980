#include "PDFDigestAnswers.h"

#include "protocol/EngineMessages.h"

#include <cstring>

namespace tarnwick {

std::optional<QList<PDFPageDigest>> readDigestAnswer(std::string_view payload, int count)
{
    const auto message = unpacked<DigestResult>(payload);
    if (!message || message->pages.size() != static_cast<std::size_t>(count))
        return std::nullopt;
    QList<PDFPageDigest> digests;
    digests.reserve(count);
    for (const EnginePageDigest& page : message->pages) {
        if (!page.isKnown && page.digest != decltype(page.digest)())
            return std::nullopt;
        PDFPageDigest& digest = digests.emplace_back();
        digest.object = page.object;
        digest.isKnown = page.isKnown;
        std::memcpy(digest.digest.data(), page.digest.data(), digest.digest.size());
    }
    return digests;
}

} // namespace tarnwick
