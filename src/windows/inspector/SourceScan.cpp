#include "inspector/SourceScan.h"

#include "text/PlainTextStorage.h"
#include "text/StyledTextStorage.h"

#include <new>
#include <utility>

namespace tarnwick {

SourceScan::SourceScan(const SharedBytes& bytes, SourceContent content, QObject* parent)
    : QObject(parent)
{
    theWork.start(
        [bytes, content](const std::stop_token& stop) { return prepare(bytes, content, stop); },
        [this](Result result) {
            theResult = std::move(result);
            emit finished();
        });
}

SourceScan::Result SourceScan::prepare(
    const SharedBytes& bytes, SourceContent content, std::stop_token stop)
{
    try {
        auto source = std::make_shared<SourceText>(bytes);
        Result result;
        if (content == SourceContent::isRaw) {
            result.storage = std::make_shared<const PlainTextStorage>(bytes);
        } else {
            const bool withSource = content == SourceContent::isListing;
            result.storage = std::make_shared<const StyledTextStorage>(
                source->makeListing(withSource, std::move(stop)));
        }
        result.source = std::move(source);
        return result;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

} // namespace tarnwick
