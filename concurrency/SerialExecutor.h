// SerialExecutor runs jobs one at a time, in the order they were submitted, on
// a thread of its own. It is how work leaves the interface thread for something
// that must never be used by two threads at once, such as a SQLite connection.
//
// Thread: created and destroyed on one thread; submit() may be called from any.

#pragma once

#include <QFuture>
#include <QPromise>
#include <QString>

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>

namespace quire {

class SerialExecutor
{
public:
    // name: shown by debuggers, at most 15 bytes of it.
    explicit SerialExecutor(const QString &name);

    // Runs every job already submitted, and those that they submit, then joins
    // the thread. Every future handed out is therefore finished once this
    // returns. Never from inside a job: a thread cannot wait for itself.
    ~SerialExecutor();

    SerialExecutor(const SerialExecutor &) = delete;
    SerialExecutor &operator=(const SerialExecutor &) = delete;

    // Queues a job. The future finishes with the job's value, or rethrows the
    // exception the job threw with its type kept. A plain function and not a
    // coroutine, so that a closure may be passed from inside a coroutine.
    template<typename Job>
    auto submit(Job job) -> QFuture<std::invoke_result_t<Job>>;

    // True on the executor's own thread, that is, inside a job.
    bool isCurrentThread() const;

private:
    void enqueue(std::function<void()> task);
    void runLoop(const QString &name);

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_tasks;
    bool m_closing = false;
    std::thread m_thread; // last: starts once everything above exists
};

template<typename Job>
auto SerialExecutor::submit(Job job) -> QFuture<std::invoke_result_t<Job>>
{
    using Value = std::invoke_result_t<Job>;

    auto promise = std::make_shared<QPromise<Value>>();
    auto future = promise->future();
    promise->start();

    // shared_ptr, because std::function requires a copyable target; moved on,
    // so that the queue alone holds the job, however soon it runs.
    auto held = std::make_shared<Job>(std::move(job));
    enqueue([promise = std::move(promise), held = std::move(held)]() mutable {
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
