#include "persistence/AudibleStatus.h"

namespace quire {

QString derivedStatus(const AudibleLibraryItem &item)
{
    if (item.isFinished) {
        return QStringLiteral("read");
    }
    if (item.isStarted || item.listeningProgress > 0) {
        return QStringLiteral("reading");
    }
    return QStringLiteral("to-read");
}

} // namespace quire
