#include "concurrency/Detach.h"

#include "concurrency/Cancelled.h"

#include <QLoggingCategory>

namespace quire {

namespace {

Q_LOGGING_CATEGORY(lcDetach, "quire.concurrency")

std::function<void(const QString &)> &reporter()
{
    static std::function<void(const QString &)> installed;
    return installed;
}

void report(const QString &description)
{
    qCCritical(lcDetach).noquote() << "A detached task failed:" << description;
    if (reporter()) {
        reporter()(description);
    }
}

QCoro::Task<> watch(QCoro::Task<> task)
{
    try {
        co_await task;
    } catch (const Cancelled &) {
        // asked to stop, and it did
    } catch (const std::exception &error) {
        report(describe(error));
    } catch (...) {
        report(QStringLiteral("An unknown failure."));
    }
}

} // namespace

void detach(QCoro::Task<> task)
{
    watch(std::move(task));
}

void setDetachReporter(std::function<void(const QString &)> newReporter)
{
    reporter() = std::move(newReporter);
}

} // namespace quire
