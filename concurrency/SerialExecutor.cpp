#include "concurrency/SerialExecutor.h"

#include "concurrency/ThreadName.h"

namespace quire {

SerialExecutor::SerialExecutor(const QString &name)
    : m_thread([this, name] { runLoop(name); })
{
}

SerialExecutor::~SerialExecutor()
{
    Q_ASSERT(!isCurrentThread());
    {
        const std::lock_guard lock(m_mutex);
        m_closing = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

bool SerialExecutor::isCurrentThread() const
{
    return m_thread.get_id() == std::this_thread::get_id();
}

void SerialExecutor::enqueue(std::function<void()> task)
{
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_wake.notify_one();
}

void SerialExecutor::runLoop(const QString &name)
{
    nameThisThread(name);

    std::unique_lock lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [this] { return m_closing || !m_tasks.empty(); });
        if (m_tasks.empty()) {
            return; // closing, and everything submitted has run
        }
        auto task = std::move(m_tasks.front());
        m_tasks.pop_front();

        lock.unlock();
        task();
        task = nullptr; // captured values die outside the lock
        lock.lock();
    }
}

} // namespace quire
