// Opens the library in a folder, says "ready", imports a batch and says "done".
// For tests that end it in the middle.
// usage: quire_import_child FOLDER goodreads|audible COUNT

#include "concurrency/SystemClock.h"
#include "persistence/CrashBatches.h"
#include "persistence/LibraryStore.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

namespace {

void say(const char *word)
{
    std::puts(word);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int count = arguments.value(3).toInt();

    const quire::SystemClock clock;
    quire::LibraryStore store(clock, arguments.value(1));
    store.prepare(false).waitForFinished();
    say("ready");
    if (arguments.value(2) == u"goodreads") {
        store.upsertGoodreadsBooks(quire::testing::crashFeed(count, true)).waitForFinished();
    } else {
        store.mergeAudibleLibraryItems(quire::testing::crashItems(count, true)).waitForFinished();
    }
    say("done");
    return 0;
}
