#include "core/LaunchCacheWriter.h"

#include "persistence/AppLog.h"
#include "records/Failure.h"

#include <mutex>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace quire {

namespace {

// Nobody waits for the cache; what the reader does goes first.
void yieldToOthers()
{
    constexpr int politeness = 10;
    ::setpriority(PRIO_PROCESS, id_t(::gettid()), politeness); // of this thread alone, on Linux
}

} // namespace

struct LaunchCacheWriter::Waiting
{
    std::mutex mutex; // of both
    std::optional<QuireLaunchPreferences> preferences; // absent: nothing waits
    std::optional<QuireLibrarySnapshot> library;
};

LaunchCacheWriter::LaunchCacheWriter(QuireLaunchCache cache)
    : m_cache(std::move(cache))
    , m_waiting(std::make_shared<Waiting>())
    , m_executor(QStringLiteral("launch cache"))
{
    m_executor.submit(yieldToOthers);
}

LaunchCacheWriter::~LaunchCacheWriter() = default;

void LaunchCacheWriter::save(const QuireLaunchPreferences &preferences, std::optional<QuireLibrarySnapshot> library)
{
    std::optional<QuireLibrarySnapshot> replaced; // goes outside the lock
    {
        const std::lock_guard lock(m_waiting->mutex);
        m_waiting->preferences = preferences;
        if (library) {
            replaced = std::exchange(m_waiting->library, std::move(library));
        }
    }
    m_executor.submit([cache = m_cache, waiting = m_waiting] {
        std::optional<QuireLaunchPreferences> newest;
        std::optional<QuireLibrarySnapshot> newestLibrary;
        {
            const std::lock_guard lock(waiting->mutex);
            newest = std::exchange(waiting->preferences, std::nullopt);
            newestLibrary = std::exchange(waiting->library, std::nullopt);
        }
        if (!newest) {
            return; // written with an earlier request
        }
        try {
            cache.save(*newest, newestLibrary);
        } catch (const std::exception &error) {
            AppLog::write(QStringLiteral("Could not save launch cache: ") + describe(error));
        }
    });
}

} // namespace quire
