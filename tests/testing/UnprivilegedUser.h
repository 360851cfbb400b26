// Permissions mean nothing to root, as whom tests may run: for the length of a
// scope, this process has the rights of nobody.

#pragma once

#include <QFile>
#include <QString>

#include <stdexcept>

#include <sys/stat.h>
#include <unistd.h>

namespace quire::testing {

class UnprivilegedUser
{
public:
    // folder: made passable for everybody, so that the test's own files stay
    // within reach. Changes nothing for an ordinary user.
    explicit UnprivilegedUser(const QString &folder)
    {
        if (::geteuid() != 0) {
            return;
        }
        ::chmod(QFile::encodeName(folder).constData(), 0755);
        if (::seteuid(nobody) != 0) {
            throw std::runtime_error("cannot become an ordinary user");
        }
        m_changed = true;
    }

    ~UnprivilegedUser()
    {
        if (m_changed && ::seteuid(0) != 0) {
            ::_exit(1); // nothing that follows would mean anything
        }
    }

    UnprivilegedUser(const UnprivilegedUser &) = delete;
    UnprivilegedUser &operator=(const UnprivilegedUser &) = delete;

private:
    static constexpr uid_t nobody = 65534;

    bool m_changed = false;
};

} // namespace quire::testing
