// Opens the library in a folder and backs it up to another, for tests that end
// a process in the middle of that. Exits with 0 when there is a backup.
// usage: quire_backup_child FOLDER BACKUPS

#include "concurrency/SystemClock.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const quire::SystemClock clock;
    quire::LibraryStore store(clock, arguments.value(1));
    try {
        store.prepare(false).waitForFinished();
        store.backUpDatabase(arguments.value(2)).waitForFinished();
        return 0;
    } catch (const quire::Failure &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
