#include "persistence/database/DatabaseError.h"

namespace quire {

DatabaseError::DatabaseError(Kind kind, QString text)
    : m_kind(kind)
    , m_text(std::move(text))
{
}

QString DatabaseError::description() const
{
    switch (m_kind) {
    case Kind::Open:
        return QStringLiteral("Could not open the Quire database: ") + m_text;
    case Kind::Prepare:
        return QStringLiteral("Could not prepare a database query: ") + m_text;
    case Kind::Step:
        return QStringLiteral("Could not read or change the Quire database: ") + m_text;
    case Kind::Execute:
        return QStringLiteral("Could not update the Quire database: ") + m_text;
    case Kind::Backup:
        return QStringLiteral("Could not copy the Quire database: ") + m_text;
    case Kind::LibraryBusy:
    case Kind::InvalidLibraryLocation:
        return m_text;
    case Kind::MissingDatabase:
        return QStringLiteral("The Quire database was not created.");
    }
    Q_UNREACHABLE();
}

} // namespace quire
