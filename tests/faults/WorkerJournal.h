// What a process that is to be killed notes of its work, for the test that kills
// it. Each line is one write: what was written survives the process.
//
// Thread: any, one at a time.

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace quire::testing {

class WorkerJournal
{
public:
    explicit WorkerJournal(const QString &path)
        : m_file(::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644))
    {
    }

    // line: without the line feed.
    void add(const QString &line) const
    {
        const QByteArray bytes = line.toUtf8() + '\n';
        if (::write(m_file, bytes.constData(), size_t(bytes.size())) != bytes.size()) {
            std::abort();
        }
    }

private:
    int m_file; // open until the process ends
};

} // namespace quire::testing
