// The only way to start a coroutine that nobody awaits. A dropped task loses
// its exception without a word; this reports it.
//
// Thread: the thread the task runs on.

#pragma once

#include <QCoroTask>
#include <QString>

#include <functional>

namespace quire {

// Lets `task` run on by itself. A failure other than Cancelled is written to
// the logging category quire.concurrency and, when one is installed, handed to
// the reporter.
void detach(QCoro::Task<> task);

// Installs what else is told of a detached failure (the application's log);
// an empty function removes it. Called once, before the first detach.
void setDetachReporter(std::function<void(const QString &description)> reporter);

} // namespace quire
