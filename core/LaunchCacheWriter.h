// LaunchCacheWriter saves the launch cache on a thread of its own, one file after
// the other. What is asked for while it writes is written afterwards, once, in
// its newest state: a library that changes quickly is not written as often, and
// an older state never replaces a newer one.
//
// Thread: created, used and destroyed on one thread, which never waits for the
// disk before the destructor. A failure goes to the log and nowhere else.

#pragma once

#include "concurrency/SerialExecutor.h"
#include "core/QuireLaunchCache.h"

#include <memory>

namespace quire {

class LaunchCacheWriter
{
public:
    explicit LaunchCacheWriter(QuireLaunchCache cache);

    // Finishes what was asked for.
    ~LaunchCacheWriter();

    // library: absent when only the look has changed; a library that was asked
    // for and is not begun is written all the same.
    void save(const QuireLaunchPreferences &preferences, std::optional<QuireLibrarySnapshot> library);

private:
    struct Waiting;

    QuireLaunchCache m_cache;
    std::shared_ptr<Waiting> m_waiting;
    SerialExecutor m_executor; // last: ends before what it uses
};

} // namespace quire
