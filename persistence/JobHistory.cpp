#include "persistence/JobHistory.h"

#include "persistence/database/SQLiteDatabase.h"

namespace quire::JobHistory {

void record(SQLiteDatabase &database, const QuireJobEvent &event)
{
    database.execute(R"sql(
        INSERT INTO background_job_history (job_kind, state, attempt, message)
        VALUES (?, ?, ?, ?)
    )sql",
        {rawValue(event.job), event.state, event.attempt, event.message});
}

void markInterruptedJobs(SQLiteDatabase &database)
{
    for (const QuireBackgroundJob job : allBackgroundJobs) {
        if (job == QuireBackgroundJob::Maintenance) {
            continue;
        }
        const auto rows = database.query(R"sql(
            SELECT state, attempt FROM background_job_history
             WHERE job_kind = ? ORDER BY id DESC LIMIT 1
        )sql",
            {rawValue(job)});
        if (rows.isEmpty()) {
            continue;
        }
        const QString state = rows.first().string(QStringLiteral("state"), {});
        if (state == QStringLiteral("running") || state == QStringLiteral("retrying")) {
            record(database,
                {.job = job,
                    .state = QStringLiteral("interrupted"),
                    .attempt = rows.first().intValue(QStringLiteral("attempt")).value_or(1),
                    .message = QStringLiteral("The previous Quire session ended before this operation completed.")});
        }
    }
}

} // namespace quire::JobHistory
