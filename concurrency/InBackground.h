// Work that needs no order among its like: files of their own, long pure
// computations. It leaves the interface thread for the shared thread pool.
// What must never run twice at once belongs on a SerialExecutor instead.

#pragma once

#include <QFuture>
#include <QPromise>
#include <QThreadPool>

#include <exception>
#include <memory>
#include <type_traits>

namespace quire {

// Runs `job` on the pool. The future finishes with its value, or rethrows what
// it threw with the type kept. job: owns all it needs, as nobody keeps its
// caller alive; whatever it captured is gone before the future is finished.
// A plain function and not a coroutine, so that a closure may be passed from
// inside one.
//
// Thread: any.
template<typename Job>
auto inBackground(Job job) -> QFuture<std::invoke_result_t<Job>>
{
    using Value = std::invoke_result_t<Job>;

    // shared_ptr, because the pool requires a copyable function.
    const auto promise = std::make_shared<QPromise<Value>>();
    auto held = std::make_shared<Job>(std::move(job));
    auto future = promise->future();
    promise->start();
    QThreadPool::globalInstance()->start([promise, held = std::move(held)]() mutable {
        try {
            if constexpr (std::is_void_v<Value>) {
                (*held)();
            } else {
                promise->addResult((*held)());
            }
        } catch (...) {
            promise->setException(std::current_exception());
        }
        held.reset();
        promise->finish();
    });
    return future;
}

} // namespace quire
