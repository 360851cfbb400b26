#include "files/FileError.h"

#include <QtGlobal>

namespace quire {

FileError::FileError(QString action, QString path, int code)
    : m_action(std::move(action))
    , m_path(std::move(path))
    , m_code(code)
{
}

QString FileError::description() const
{
    return QStringLiteral("Could not %1 “%2”: %3").arg(m_action, m_path, qt_error_string(m_code));
}

} // namespace quire
