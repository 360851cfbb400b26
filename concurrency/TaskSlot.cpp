#include "concurrency/TaskSlot.h"

#include "concurrency/Detach.h"

namespace quire {

// Lives at least as long as the task, so that the callable's captures are valid
// in every step of the coroutine.
struct TaskSlot::Entry
{
    std::function<QCoro::Task<>(std::stop_token)> work;
    std::stop_source source;
    bool finished = false;
};

TaskSlot::TaskSlot() = default;

TaskSlot::~TaskSlot()
{
    cancel();
}

QCoro::Task<> TaskSlot::run(std::shared_ptr<Entry> entry)
{
    struct MarkFinished
    {
        Entry &entry;
        ~MarkFinished()
        {
            entry.finished = true;
            entry.work = nullptr; // its captures go with the task, not with the slot
        }
    } mark{*entry};
    const auto task = entry->work(entry->source.get_token());
    co_await task;
}

void TaskSlot::start(std::function<QCoro::Task<>(std::stop_token)> work)
{
    cancel();
    m_entry = std::make_shared<Entry>();
    m_entry->work = std::move(work);
    detach(run(m_entry));
}

void TaskSlot::cancel()
{
    if (m_entry) {
        const auto entry = std::move(m_entry);
        entry->source.request_stop();
    }
}

bool TaskSlot::isRunning() const
{
    return m_entry && !m_entry->finished;
}

} // namespace quire
