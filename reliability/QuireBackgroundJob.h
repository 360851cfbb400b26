// The kinds of long-running work, their priorities, and one line of their
// history.

#pragma once

#include <QString>

#include <array>
#include <optional>

namespace quire {

enum class QuireBackgroundJob {
    GoodreadsSync,
    AudibleSync,
    Publishing,
    Backup,
    Artwork,
    Maintenance,
};

inline constexpr std::array allBackgroundJobs{QuireBackgroundJob::GoodreadsSync, QuireBackgroundJob::AudibleSync,
    QuireBackgroundJob::Publishing, QuireBackgroundJob::Backup, QuireBackgroundJob::Artwork,
    QuireBackgroundJob::Maintenance};

// The word that the job history holds.
QString rawValue(QuireBackgroundJob job);

enum class QuireJobPriority {
    Automatic = 0,
    Manual = 1,
};

// One line of job history.
struct QuireJobEvent
{
    QuireBackgroundJob job = QuireBackgroundJob::Maintenance;
    QString state; // "running", "retrying", "succeeded", "failed", "interrupted"
    qint64 attempt = 1; // from 1
    std::optional<QString> message;
};

} // namespace quire
