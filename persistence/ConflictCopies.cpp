#include "persistence/ConflictCopies.h"

#include "files/FolderListing.h"
#include "persistence/RecoveryCopies.h"
#include "records/Failure.h"
#include "reliability/QuireReliabilityError.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace quire::ConflictCopies {

namespace {

// Services name them "quire (A's conflicted copy).db", "quire.sync-conflict-….db"
// and the like; all have this word in common.
bool isConflictCopy(const QString &path, const QString &databaseURL)
{
    const QFileInfo file(path);
    return file.suffix().toLower() == u"db" && path != databaseURL && file.fileName().toLower().contains(u"conflict");
}

void preserveIfPossible(const QString &url, const QString &reason, const QString &localStateDirectory, Instant now)
{
    try {
        RecoveryCopies::preserveDatabaseForRecovery(url, reason, localStateDirectory, now);
    } catch (const Failure &) {
        // The file itself stays; that it is there is what the reader must know.
    }
}

} // namespace

void rejectCloudConflictCopies(const QString &databaseURL, const QString &localStateDirectory, Instant now)
{
    const QString folder = QFileInfo(databaseURL).path();
    if (!QFileInfo::exists(folder)) {
        return;
    }
    for (const FolderEntry &entry : FolderListing::of(folder)) {
        const QString path = QFile::decodeName(entry.path.c_str());
        if (!isConflictCopy(path, databaseURL)) {
            continue;
        }
        preserveIfPossible(path, QStringLiteral("Cloud Conflict"), localStateDirectory, now);
        if (QFileInfo::exists(databaseURL)) {
            preserveIfPossible(databaseURL, QStringLiteral("Cloud Conflict Current"), localStateDirectory, now);
        }
        throw QuireReliabilityError::cloudConflictCopy(QFileInfo(path).fileName());
    }
}

} // namespace quire::ConflictCopies
