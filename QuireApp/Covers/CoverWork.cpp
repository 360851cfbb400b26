#include "QuireApp/Covers/CoverWork.h"

#include "QuireApp/Covers/ArtworkImageCache.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace quire::CoverWork {

namespace {

QThreadPool &pool()
{
    static QThreadPool threads;
    static const bool prepared = [] {
        threads.setMaxThreadCount(std::max(1, QThread::idealThreadCount() - 1));
        threads.setThreadPriority(QThread::LowPriority);
        return true;
    }();
    Q_UNUSED(prepared)
    return threads;
}

} // namespace

QString finishedKey(const CoverSource &source, const CoverDrawing::Request &request)
{
    return source.resolvedCacheKey() + request.suffix();
}

void start(const CoverSource &source, const CoverDrawing::Request &request, std::stop_token stop,
    std::function<void(const QImage &)> done)
{
    Q_ASSERT(source.isPresent());
    pool().start([source, request, stop, done = std::move(done)] {
        if (stop.stop_requested()) {
            return;
        }
        ArtworkImageCache &cache = ArtworkImageCache::shared();
        const QImage picture = cache.decode(*source.data(), source.resolvedCacheKey());
        const QImage finished = CoverDrawing::draw(picture, request);
        cache.insert(finishedKey(source, request), finished);
        // Through the application object: the one that asked may be gone.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [stop, done, finished] {
                if (!stop.stop_requested()) {
                    done(finished);
                }
            },
            Qt::QueuedConnection);
    });
}

void startTask(std::function<void()> task)
{
    pool().start(std::move(task));
}

void finish()
{
    pool().clear();
    pool().waitForDone();
}

} // namespace quire::CoverWork
