// Turns the signals that end a session (SIGTERM, SIGINT, SIGHUP) into an
// ordinary event, so that the program closes its library before it goes.
//
// Thread: interface thread; one object a process.

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quire {

class TerminationSignals final : public QObject
{
    Q_OBJECT

public:
    // Catches the signals from now on.
    explicit TerminationSignals(QObject *parent = nullptr);

    // Gives the signals back to the system.
    ~TerminationSignals() override;

Q_SIGNALS:
    // Once for each time the process was asked to end.
    void terminationRequested();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

// A closed pipe and a file that outgrows its limit are ordinary failures of a
// write here, not the end of the process.
void ignoreWriteSignals();

} // namespace quire
