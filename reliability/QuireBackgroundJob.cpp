#include "reliability/QuireBackgroundJob.h"

namespace quire {

QString rawValue(QuireBackgroundJob job)
{
    switch (job) {
    case QuireBackgroundJob::GoodreadsSync:
        return QStringLiteral("goodreadsSync");
    case QuireBackgroundJob::AudibleSync:
        return QStringLiteral("audibleSync");
    case QuireBackgroundJob::Publishing:
        return QStringLiteral("publishing");
    case QuireBackgroundJob::Backup:
        return QStringLiteral("backup");
    case QuireBackgroundJob::Artwork:
        return QStringLiteral("artwork");
    case QuireBackgroundJob::Maintenance:
        return QStringLiteral("maintenance");
    }
    Q_UNREACHABLE();
}

} // namespace quire
