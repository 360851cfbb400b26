// What the tests of faults share: how often to try, from which seed, and the
// one line that each prints for the scoreboard of scripts/torture.sh.
//
// The environment: QUIRE_TORTURE multiplies every number of rounds (1 unless
// set, fractions allowed); QUIRE_SEED repeats the run that printed it.
//
// Thread: the test's.

#pragma once

#include <QString>
#include <QStringList>

#include <random>

namespace quire::testing {

class Torture
{
public:
    // id: the row of the scoreboard, as "R03". what: in a few words, without a
    // vertical bar. Prints the seed.
    Torture(const char *id, const char *what);

    // Prints the line of the scoreboard: "scoreboard | id | what | rounds |
    // findings | seed".
    ~Torture();

    Torture(const Torture &) = delete;
    Torture &operator=(const Torture &) = delete;

    // Of this run. The generator starts from it and from the id.
    quint32 seed() const { return m_seed; }
    std::mt19937 &random() { return m_random; }

    // From 0 to below `limit`, which is at least 1.
    int below(int limit);

    // Counts what was tried.
    void addRounds(int rounds = 1) { m_rounds += rounds; }

    // Counts what must not be, and fails the test.
    void addFinding(const QString &finding);
    void addFindings(const QStringList &findings);

    // `rounds` times the factor of this run, at least 1. Sanitized builds, which
    // take a few times as long, do a third of it.
    static int scaled(int rounds);

    // For what is gone through in order: of how many to try one, so that a run of
    // factor 1 tries one of `every` and a longer one more, up to each.
    static int stride(int every);

private:
    const char *m_id;
    const char *m_what;
    quint32 m_seed;
    std::mt19937 m_random;
    qint64 m_rounds = 0;
    qint64 m_findings = 0;
};

} // namespace quire::testing
