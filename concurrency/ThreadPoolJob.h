// Work that leaves the interface thread for the thread pool and brings back a
// value or the very exception that it threw.

#pragma once

#include <QFuture>
#include <QPromise>
#include <QThreadPool>

#include <exception>
#include <memory>
#include <type_traits>

namespace quire {

// Runs `job` on a thread of the application's pool; jobs run side by side, so
// they share nothing but immutable values. The future finishes with the job's
// value or failure, its type kept. A plain function and not a coroutine, so
// that a closure may be passed from inside a coroutine.
template<typename Job>
auto runOnThreadPool(Job job) -> QFuture<std::invoke_result_t<Job>>
{
    using Value = std::invoke_result_t<Job>;

    auto promise = std::make_shared<QPromise<Value>>();
    auto future = promise->future();
    promise->start();

    // shared_ptr, because std::function requires a copyable target.
    auto held = std::make_shared<Job>(std::move(job));
    QThreadPool::globalInstance()->start([promise, held]() mutable {
        try {
            if constexpr (std::is_void_v<Value>) {
                (*held)();
            } else {
                promise->addResult((*held)());
            }
        } catch (...) {
            promise->setException(std::current_exception());
        }
        held.reset(); // what the job captured dies before its waiter goes on
        promise->finish();
    });
    return future;
}

} // namespace quire
