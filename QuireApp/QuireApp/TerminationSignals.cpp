#include "QuireApp/QuireApp/TerminationSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace quire {

namespace {

constexpr std::array signalsOfTheEnd{SIGTERM, SIGINT, SIGHUP};

// A signal handler may touch little more than a file descriptor.
std::array<int, 2> pipeEnds{-1, -1};

void passOn(int)
{
    const int savedError = errno;
    const char byte = 1;
    const auto written = ::write(pipeEnds[1], &byte, 1);
    (void)written; // a full pipe already tells what there is to tell
    errno = savedError;
}

void setHandler(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent)
    : QObject(parent)
{
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals keep their ordinary meaning
    }
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (::read(pipeEnds[0], &byte, 1) == 1) {
            Q_EMIT terminationRequested();
        }
    });
    for (const int signal : signalsOfTheEnd) {
        setHandler(signal, passOn);
    }
}

TerminationSignals::~TerminationSignals()
{
    if (!m_notifier) {
        return;
    }
    for (const int signal : signalsOfTheEnd) {
        setHandler(signal, SIG_DFL);
    }
    m_notifier.reset();
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    pipeEnds = {-1, -1};
}

void ignoreWriteSignals()
{
    setHandler(SIGPIPE, SIG_IGN);
    setHandler(SIGXFSZ, SIG_IGN);
}

} // namespace quire
