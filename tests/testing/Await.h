// Waiting for asynchronous results in a test: runs the event loop until the
// answer is there, rethrows its failure, and fails instead of hanging.

#pragma once

#include <QCoroTask>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFuture>

#include <chrono>
#include <exception>
#include <optional>
#include <stdexcept>

namespace quire::testing {

using namespace std::chrono_literals;

inline constexpr std::chrono::milliseconds defaultLimit = 20s;

// Runs the event loop until `condition` holds; false when it never did.
template<typename Condition>
bool eventually(Condition condition, std::chrono::milliseconds limit = defaultLimit)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.hasExpired(limit.count())) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

template<typename T>
T await(QFuture<T> future, std::chrono::milliseconds limit = defaultLimit)
{
    if (!eventually([&future] { return future.isFinished(); }, limit)) {
        throw std::runtime_error("await: timed out");
    }
    future.waitForFinished(); // rethrows
    if constexpr (!std::is_void_v<T>) {
        return future.result();
    }
}

namespace detail {

template<typename T>
struct Outcome
{
    std::optional<T> value;
    std::exception_ptr failure;
    bool done = false;
};

template<>
struct Outcome<void>
{
    std::exception_ptr failure;
    bool done = false;
};

template<typename T>
QCoro::Task<> watch(QCoro::Task<T> task, std::shared_ptr<Outcome<T>> outcome)
{
    try {
        if constexpr (std::is_void_v<T>) {
            co_await task;
        } else {
            outcome->value = co_await task;
        }
    } catch (...) {
        outcome->failure = std::current_exception();
    }
    outcome->done = true;
}

} // namespace detail

template<typename T>
T await(QCoro::Task<T> task, std::chrono::milliseconds limit = defaultLimit)
{
    const auto outcome = std::make_shared<detail::Outcome<T>>();
    const auto watching = detail::watch<T>(std::move(task), outcome);
    if (!eventually([&outcome] { return outcome->done; }, limit)) {
        throw std::runtime_error("await: timed out");
    }
    if (outcome->failure) {
        std::rethrow_exception(outcome->failure);
    }
    if constexpr (!std::is_void_v<T>) {
        return std::move(*outcome->value);
    }
}

} // namespace quire::testing
