// TaskSlot holds one named piece of cancellable work. Starting another of its
// kind cancels the former first, so at most one of a kind is ever wanted.
// Cancelling is cooperative: the task sees its stop token and must test it
// after every suspension, before it touches anything.
//
// Thread: all on one thread, that of the tasks.

#pragma once

#include <QCoroTask>

#include <functional>
#include <memory>
#include <stop_token>

namespace quire {

class TaskSlot
{
public:
    TaskSlot();
    ~TaskSlot(); // cancels

    TaskSlot(const TaskSlot &) = delete;
    TaskSlot &operator=(const TaskSlot &) = delete;

    // Cancels what is in the slot, then runs `work` detached with a fresh
    // token. The slot keeps `work` until the task has ended, so what it captured
    // stays valid in every step of a coroutine lambda too.
    void start(std::function<QCoro::Task<>(std::stop_token)> work);

    // Asks the task to stop and empties the slot. Harmless on an empty slot.
    void cancel();

    // True from start() until the task has ended or was cancelled.
    bool isRunning() const;

private:
    struct Entry;
    static QCoro::Task<> run(std::shared_ptr<Entry> entry);

    std::shared_ptr<Entry> m_entry;
};

} // namespace quire
