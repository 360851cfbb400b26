// An environment variable of another value, for the length of a scope.

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace quire::testing {

class OwnVariable
{
public:
    // name: outlives the scope. value: a text or a path.
    OwnVariable(const char *name, const QString &value)
        : m_name(name)
    {
        qputenv(m_name, QFile::encodeName(value));
    }
    ~OwnVariable()
    {
        if (m_former.isNull()) {
            qunsetenv(m_name);
        } else {
            qputenv(m_name, m_former);
        }
    }

    OwnVariable(const OwnVariable &) = delete;
    OwnVariable &operator=(const OwnVariable &) = delete;

private:
    const char *m_name;
    QByteArray m_former = qgetenv(m_name);
};

} // namespace quire::testing
