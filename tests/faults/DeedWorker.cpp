// Opens the library in FOLDER and does one deed; for tests that let it end in the
// middle, at a failure point or at the CALL-th call to the disk.
// usage: quire_deed_worker FOLDER open|feed|torn-feed|audio|backup|move [CALL]
// "torn-feed", a broken twin for controls, imports in two transactions.
// Exits with 0 when the deed was done, with 1 after a failure.

#include "concurrency/SystemClock.h"
#include "faults/FaultBench.h"
#include "faults/FaultyDisk.h"
#include "persistence/AppDirectories.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"
#include "testing/ImportRecords.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>

using namespace quire;
using namespace quire::testing;

namespace {

void run(LibraryStore &store, const QString &deed)
{
    if (deed == u"feed" || deed == u"torn-feed") {
        if (deed == u"torn-feed") {
            done(store.updateBook(2, 1, QStringLiteral("read"), QStringLiteral("half of an import")));
        }
        QList<GoodreadsFeedBook> feed{fullFeedBook(QStringLiteral("3")), fullFeedBook(QStringLiteral("1000"))};
        store.upsertGoodreadsBooks(feed).waitForFinished();
    } else if (deed == u"audio") {
        QList<AudibleLibraryItem> items{
            fullAudibleItem(QStringLiteral("B3")), fullAudibleItem(QStringLiteral("B1000"))};
        store.mergeAudibleLibraryItems(items).waitForFinished();
    } else if (deed == u"backup") {
        store.backUpDatabase(std::nullopt).waitForFinished();
    } else if (deed == u"move") {
        const QString library = done(store.databaseURL());
        done(store.relocateDatabase(QFileInfo(library).path() + QStringLiteral("/Elsewhere")));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    FaultyDisk &disk = FaultyDisk::instance();
    disk.watch(arguments.value(1));
    if (arguments.size() > 3) {
        disk.strike(arguments.value(3).toInt(), FaultyDisk::Lasting::Once, FaultyDisk::Stroke::End);
    }
    const SystemClock clock;
    // The default folder is not given to a store, as the program does not: then it
    // keeps the record of the library's place.
    const bool isDefault = arguments.value(1) == AppDirectories::supportDirectory();
    LibraryStore store(clock, isDefault ? std::nullopt : std::optional(arguments.value(1)));
    try {
        store.prepare(true).waitForFinished();
        run(store, arguments.value(2));
        store.shutdown().waitForFinished();
        return 0;
    } catch (const Failure &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
