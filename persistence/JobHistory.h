// The history of long-running jobs: rows that are only ever appended. The last
// row of a kind tells how it stands; "running" or "retrying" there means a job
// without an ending.
//
// Thread: the store's executor.

#pragma once

#include "reliability/QuireBackgroundJob.h"

namespace quire {

class SQLiteDatabase;

namespace JobHistory {

// Throws DatabaseError.
void record(SQLiteDatabase &database, const QuireJobEvent &event);

// Gives every job that the last session left without an ending one,
// "interrupted"; maintenance excepted, since it is the kind of the recovery
// itself. Throws DatabaseError.
void markInterruptedJobs(SQLiteDatabase &database);

} // namespace JobHistory
} // namespace quire
