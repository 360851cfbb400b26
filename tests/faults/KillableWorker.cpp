// Opens the library in FOLDER and works on it until it is killed, noting in
// JOURNAL what it is about to do and what the store has told to be done.
// usage: quire_killable_worker FOLDER JOURNAL SEED [early]
//
// A line of the journal is "begin N WORD ARGUMENT" or "done N TEXT". With
// "early", the broken twin for controls, a deed is noted as done before it is.

#include "concurrency/SystemClock.h"
#include "faults/WorkerDeeds.h"
#include "faults/WorkerJournal.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringList>

#include <cstdio>
#include <random>

using namespace quire;
using namespace quire::testing;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const WorkerJournal journal(arguments.value(2));
    std::mt19937 random(arguments.value(3).toUInt());
    const bool early = arguments.value(4) == u"early";

    const SystemClock clock;
    LibraryStore store(clock, arguments.value(1));
    try {
        store.prepare(true).waitForFinished();
        std::puts("open");
        std::fflush(stdout);
        for (quint32 number = arguments.value(3).toUInt();; ++number) {
            const WorkerDeed deed = WorkerDeed::random(random);
            const QString id = QString::number(number);
            journal.add(QStringLiteral("begin %1 %2 %3").arg(id, deed.word, QString::number(deed.argument)));
            if (early) {
                journal.add(QStringLiteral("done %1 ").arg(id));
            }
            const QString told = deed.run(store, id, QDir::cleanPath(arguments.value(2) + QStringLiteral("-backups")));
            if (!early) {
                journal.add(QStringLiteral("done %1 %2").arg(id, told));
            }
        }
    } catch (const Failure &failure) {
        std::printf("failed: %s\n", failure.what());
        return 1;
    }
}
