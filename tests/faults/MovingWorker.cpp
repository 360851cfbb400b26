// Opens the reader's library, edits it and moves it from folder to folder until
// it is killed, noting in JOURNAL which edits it is about to make and which the
// store has told to be done.
// usage: quire_moving_worker PLACE JOURNAL SEED [careless]
// PLACE: where the folders are that it moves to, besides the default one.
//
// A line of the journal is "begin N" or "done N". With "careless", the broken twin
// for controls, the new folder is recorded before the library is there.

#include "concurrency/SystemClock.h"
#include "faults/FaultBench.h"
#include "faults/WorkerJournal.h"
#include "files/DurableFile.h"
#include "persistence/AppDirectories.h"
#include "persistence/database/DatabaseFiles.h"
#include "persistence/QuireLibraryLocation.h"
#include "records/Failure.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>
#include <random>

using namespace quire;
using namespace quire::testing;

namespace {

class Mover
{
public:
    Mover(LibraryStore &store, const QString &place, bool careless)
        : m_store(store)
        , m_folders{AppDirectories::supportDirectory(), place + QStringLiteral("/Cloud"),
              place + QStringLiteral("/It's 100% 読書")}
        , m_careless(careless)
    {
    }

    void move(std::mt19937 &random)
    {
        const QString folder = m_folders[std::uniform_int_distribution<qsizetype>(0, m_folders.size() - 1)(random)];
        const QString target = folder + QStringLiteral("/quire.db");
        if (done(m_store.databaseURL()) != target) {
            DatabaseFiles::remove(target); // as a reader tidies up, so that each move is one of its own
            if (m_careless) {
                QuireLibraryLocation::save(folder, QuireLibraryLocation::recordURL());
            }
        }
        done(m_store.relocateDatabase(folder));
    }

private:
    LibraryStore &m_store;
    QStringList m_folders;
    bool m_careless;
};

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const WorkerJournal journal(arguments.value(2));
    std::mt19937 random(arguments.value(3).toUInt());
    const SystemClock clock;
    LibraryStore store(clock);
    Mover mover(store, arguments.value(1), arguments.value(4) == u"careless");
    try {
        store.prepare(true).waitForFinished();
        std::puts("open");
        std::fflush(stdout);
        for (quint32 number = arguments.value(3).toUInt();; ++number) {
            journal.add(QStringLiteral("begin %1").arg(number));
            done(store.updateBook(1, 3, QStringLiteral("read"), QString::number(number)));
            journal.add(QStringLiteral("done %1").arg(number));
            mover.move(random);
        }
    } catch (const Failure &failure) {
        std::printf("failed: %s\n", failure.what());
        return 1;
    }
}
