// Identifiers of titles that no source has named.
//
// Thread: any.

#pragma once

#include <QString>
#include <QUuid>

namespace quire {

// "manual:" and a fresh UUID in upper case.
inline QString newManualIdentifier()
{
    return QStringLiteral("manual:") + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

} // namespace quire
