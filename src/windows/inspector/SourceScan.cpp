#include "inspector/SourceScan.h"

#include "text/PlainTextStorage.h"
#include "text/StyledTextStorage.h"

#include <QPromise>
#include <QThreadPool>

#include <new>
#include <utility>

namespace tarnwick {

SourceScan::SourceScan(const SharedBytes& bytes, SourceContent content, QObject* parent)
    : QObject(parent)
{
    connect(&theWatcher, &QFutureWatcher<Result>::finished, this, [this] {
        theResult = theWatcher.result();
        emit finished();
    });
    const auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    theWatcher.setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise, bytes, content, stop = theStop.get_token()] {
        promise->addResult(prepare(bytes, content, stop));
        promise->finish();
    });
}

SourceScan::~SourceScan()
{
    theStop.request_stop();
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
