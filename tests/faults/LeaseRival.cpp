#include "faults/LeaseRival.h"

#include <stdexcept>

namespace quire::testing {

namespace {

using Steady = std::chrono::steady_clock;

// Long enough for the slowest of them to have read what it is told.
constexpr auto headStart = 300us;

template<typename Duration>
QString count(Duration duration)
{
    return QString::number(duration.count());
}

} // namespace

LeaseRival::LeaseRival(const QString &library, const Manner &manner)
    : m_process(std::make_unique<ChildProcess>(QStringLiteral(QUIRE_LEASE_CHILD),
        QStringList{library, manner.machine, count(manner.clockError), QString::number(manner.rounds),
            count(manner.pause), count(manner.heartbeat), count(manner.ownerless), count(manner.silent)},
        QMap<QString, QString>{{QStringLiteral("QUIRE_CHILD_DELAY"), count(manner.delay)},
            {QStringLiteral("QUIRE_CHILD_SEED"), QString::number(manner.seed % 0x7fffffff)},
            {QStringLiteral("QUIRE_CHILD_FLAW"), manner.flaw}}))
{
    if (m_process->readLine() != "ready") {
        throw std::runtime_error("the rival does not start");
    }
}

void LeaseRival::go(Steady::time_point start) const
{
    m_process->writeLine(QByteArray::number(std::chrono::nanoseconds(start.time_since_epoch()).count()));
}

LeaseRival::Answer LeaseRival::answer()
{
    const QByteArray said = m_process->readLine(60s).value_or(QByteArray());
    if (said.startsWith("won ")) {
        m_token = QUuid::fromString(QString::fromLatin1(said.mid(4)));
        return Answer::Won;
    }
    if (said == "busy") {
        return Answer::Busy;
    }
    return said == "none" ? Answer::None : Answer::Failed;
}

void LeaseRival::release() const
{
    m_process->writeLine("release");
}

bool LeaseRival::isReleased()
{
    return m_process->readLine(60s) == "released";
}

LeaseRival::Answer LeaseRival::acquire()
{
    go(Steady::now());
    return answer();
}

std::vector<LeaseRival::Answer> race(std::vector<LeaseRival> &rivals)
{
    const auto start = Steady::now() + headStart;
    for (const LeaseRival &rival : rivals) {
        rival.go(start);
    }
    std::vector<LeaseRival::Answer> answers;
    answers.reserve(rivals.size());
    for (LeaseRival &rival : rivals) {
        answers.push_back(rival.answer());
    }
    return answers;
}

} // namespace quire::testing
