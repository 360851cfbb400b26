#include "reliability/QuireReliabilityError.h"

namespace quire {

QuireReliabilityError::QuireReliabilityError(Kind kind, QString detail)
    : m_kind(kind)
    , m_detail(std::move(detail))
{
}

QuireReliabilityError QuireReliabilityError::cloudConflictCopy(QString name)
{
    return QuireReliabilityError(Kind::CloudConflictCopy, std::move(name));
}

QuireReliabilityError QuireReliabilityError::invalidImport(QString detail)
{
    return QuireReliabilityError(Kind::InvalidImport, std::move(detail));
}

QuireReliabilityError QuireReliabilityError::cloudLibraryRolledBack()
{
    return QuireReliabilityError(Kind::CloudLibraryRolledBack);
}

QuireReliabilityError QuireReliabilityError::cloudLibraryDiverged()
{
    return QuireReliabilityError(Kind::CloudLibraryDiverged);
}

QString QuireReliabilityError::description() const
{
    switch (m_kind) {
    case Kind::CloudConflictCopy:
        return QStringLiteral("The cloud service created a conflicting Quire database named “") + m_detail
            + QStringLiteral("”. Quire will not write until the conflicting copies are reviewed.");
    case Kind::InvalidImport:
        return QStringLiteral("Quire rejected imported library data before changing the database: ") + m_detail;
    case Kind::CloudLibraryRolledBack:
        return QStringLiteral(
            "This cloud library is older than the copy previously opened on this Mac. Quire preserved it for recovery "
            "and will not overwrite it. Allow the cloud service to finish syncing, then reopen Quire.");
    case Kind::CloudLibraryDiverged:
        return QStringLiteral(
            "This cloud library has diverged from the copy previously opened on this Mac. Quire preserved it for "
            "recovery and will not overwrite either history.");
    }
    Q_UNREACHABLE();
}

} // namespace quire
