#include "concurrency/SystemClock.h"

#include "concurrency/Cancelled.h"

#include <QFuture>
#include <QPromise>
#include <QTimer>

#include <QCoroFuture>

#include <memory>
#include <optional>

namespace quire {

Instant SystemClock::now() const
{
    return std::chrono::floor<Instant::duration>(std::chrono::system_clock::now());
}

namespace {

// One sleep. Timer and stop request race for finish(); the first wins. The
// promise is always finished, which is what makes the wait safe.
class Sleep : public QObject
{
public:
    explicit Sleep(std::chrono::nanoseconds duration)
    {
        m_promise.start();
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, &Sleep::finish);
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(duration);
        m_timer.start(std::max(wait, std::chrono::milliseconds(0)));
    }

    ~Sleep() override { finish(); }

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

} // namespace

QCoro::Task<> SystemClock::sleep(std::chrono::nanoseconds duration, std::stop_token stop)
{
    if (stop.stop_requested()) {
        throw Cancelled();
    }
    Sleep sleep(duration);
    // A stop may be requested on any thread; the timer belongs to this one.
    const auto wake = [&sleep] {
        QMetaObject::invokeMethod(&sleep, [&sleep] { sleep.finish(); }, Qt::QueuedConnection);
    };
    {
        const std::stop_callback onStop(stop, wake);
        const auto finished = sleep.future();
        co_await finished;
    }
    if (stop.stop_requested()) {
        throw Cancelled();
    }
}

} // namespace quire
