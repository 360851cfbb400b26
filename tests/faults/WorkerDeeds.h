// The deeds of a worker that is killed, each of which leaves its number in the
// library where it can be found again, and how to find it.
//
// Thread: any.

#pragma once

#include "persistence/LibraryStore.h"

#include <QMap>
#include <QString>

#include <random>

namespace quire {
class SQLiteDatabase;
}

namespace quire::testing {

// Things of a library by name, as "note 3", "batch" or "feed 17", with the
// number of the deed that set each last.
using Traces = QMap<QString, QString>;

struct WorkerDeed
{
    QString word;
    int argument = 0; // of which title

    static WorkerDeed random(std::mt19937 &random);

    // Does it; what the store told, for the journal. Throws the store's failure.
    QString run(LibraryStore &store, const QString &number, const QString &backupFolder) const;

    // The traces that deed `number` leaves, and that it leaves as one.
    Traces traces(const QString &number) const;
};

// A closed library that the deeds work on, put into `folder`.
void createWorkersLibrary(const QString &folder);

// What a library holds of the deeds' traces. `torn` gets what only half of a deed
// could have left.
Traces tracesIn(const SQLiteDatabase &database, const QString &folder, QStringList &torn);

} // namespace quire::testing
