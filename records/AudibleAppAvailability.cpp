#include "records/AudibleAppAvailability.h"

namespace quire {

QString AudibleAppAvailability::detail() const
{
    if (state == State::NotInstalled) {
        return QStringLiteral("Audible is not installed. Install the Audible app from the Mac App Store to sync audio "
                              "titles.");
    }
    if (!libraryURL) {
        return QStringLiteral("Audible is installed. Open it and sign in, then grant Quire access to the local "
                              "library.");
    }
    return QStringLiteral("Audible is installed and its local library is available.");
}

} // namespace quire
