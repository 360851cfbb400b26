#include "reliability/QuireReliabilityError.h"

namespace quire {

QuireReliabilityError::QuireReliabilityError(Kind kind, QString detail)
    : m_kind(kind)
    , m_detail(std::move(detail))
{
}

QuireReliabilityError QuireReliabilityError::invalidImport(QString detail)
{
    return {Kind::InvalidImport, std::move(detail)};
}

QString QuireReliabilityError::description() const
{
    switch (m_kind) {
    case Kind::InvalidImport:
        return QStringLiteral("Quire rejected imported library data before changing the database: ") + m_detail;
    }
    Q_UNREACHABLE();
}

} // namespace quire
