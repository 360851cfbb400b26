#include "concurrency/SystemClock.h"

#include "concurrency/Cancelled.h"

#include <QFuture>
#include <QPromise>
#include <QTimer>

#include <QCoroFuture>

#include <algorithm>

namespace quire {

Instant SystemClock::now() const
{
    return std::chrono::floor<Instant::duration>(std::chrono::system_clock::now());
}

namespace {

// A timer of Qt counts milliseconds in an int, about 24 days of them. Longer
// sleeps are slept in pieces.
constexpr std::chrono::nanoseconds longestPiece = std::chrono::hours(24);

// One piece of a sleep. Timer and stop request race for finish(); the first
// wins. The promise is always finished, which is what makes the wait safe.
class Piece : public QObject
{
public:
    explicit Piece(std::chrono::nanoseconds duration)
    {
        m_promise.start();
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, &Piece::finish);
        m_timer.start(std::chrono::ceil<std::chrono::milliseconds>(duration));
    }

    ~Piece() override { finish(); }

    QFuture<void> future() const { return m_promise.future(); }

    void finish()
    {
        if (!m_finished) {
            m_finished = true;
            m_timer.stop();
            m_promise.finish();
        }
    }

private:
    QTimer m_timer;
    QPromise<void> m_promise;
    bool m_finished = false;
};

QCoro::Task<> sleepPiece(std::chrono::nanoseconds duration, std::stop_token stop)
{
    Piece piece(duration);
    // A stop may be requested on any thread; the timer belongs to this one.
    const auto wake = [&piece] {
        QMetaObject::invokeMethod(
            &piece, [&piece] { piece.finish(); }, Qt::QueuedConnection);
    };
    const std::stop_callback onStop(stop, wake);
    const auto finished = piece.future();
    co_await finished;
}

} // namespace

QCoro::Task<> SystemClock::sleep(std::chrono::nanoseconds duration, std::stop_token stop)
{
    using Monotonic = std::chrono::steady_clock;
    const auto start = Monotonic::now();
    auto left = std::max(duration, std::chrono::nanoseconds(0));
    do {
        if (stop.stop_requested()) {
            throw Cancelled();
        }
        const auto piece = sleepPiece(std::min(left, longestPiece), stop);
        co_await piece;
        left = duration - (Monotonic::now() - start);
    } while (left.count() > 0);
    if (stop.stop_requested()) {
        throw Cancelled();
    }
}

} // namespace quire
