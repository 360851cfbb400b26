// Identifiers of titles that no source has named.
//
// Thread: any.

#pragma once

#include "records/UUIDText.h"

#include <QString>

namespace quire {

// "manual:" and a fresh UUID in upper case.
inline QString newManualIdentifier()
{
    return QStringLiteral("manual:") + UUIDText::fresh();
}

} // namespace quire
