#pragma once

#include <QFuture>
#include <QPromise>
#include <QThreadPool>

#include <memory>
#include <type_traits>
#include <utility>

namespace tarnwick {

/// Threads for work that is over soon. Scans of large files may keep the global pool busy for
/// minutes.
inline QThreadPool& shortWorkPool()
{
    static QThreadPool pool;
    return pool;
}

/// Runs short work in a thread of its pool: values in, a value out. The work touches nothing but
/// what it holds, and goes on when nobody waits for it any more. For the result in the main thread,
/// use QFuture::then() with a context object, which guards against what has gone meanwhile.
template<class Work> QFuture<std::invoke_result_t<Work>> runInPool(Work work)
{
    const auto promise = std::make_shared<QPromise<std::invoke_result_t<Work>>>();
    promise->start();
    shortWorkPool().start([promise, work = std::move(work)] {
        promise->addResult(work());
        promise->finish();
    });
    return promise->future();
}

} // namespace tarnwick
