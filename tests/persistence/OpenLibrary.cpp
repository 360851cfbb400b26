// Opens the library in the folder given as its only argument, for tests that
// end a process in the middle of that. Exits with 0 when it opened.

#include "concurrency/SystemClock.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const quire::SystemClock clock;
    quire::LibraryStore store(clock, QString::fromLocal8Bit(argv[1]));
    try {
        store.prepare(false).waitForFinished();
        return 0;
    } catch (const quire::Failure &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
