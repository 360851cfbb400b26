#include "faults/Torture.h"

#include "testing/ResourceUse.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <vector>

namespace quire::testing {

namespace {

// A run that found one fault often finds it again; nobody reads the hundredth.
constexpr qint64 findingsShown = 10;

quint32 chosenSeed()
{
    bool isNumber = false;
    const quint32 given = qEnvironmentVariable("QUIRE_SEED").toUInt(&isNumber);
    return isNumber ? given : std::random_device{}();
}

// Tests of one seed must not all draw the same numbers.
std::mt19937 generator(quint32 seed, std::string_view id)
{
    std::vector<quint32> numbers(id.begin(), id.end());
    numbers.push_back(seed);
    std::seed_seq sequence(numbers.begin(), numbers.end());
    return std::mt19937(sequence);
}

double factor()
{
    bool isNumber = false;
    const double given = qEnvironmentVariable("QUIRE_TORTURE").toDouble(&isNumber);
    return (isNumber && given > 0 ? given : 1.0) / (isInstrumented ? 3 : 1);
}

} // namespace

Torture::Torture(const char *id, const char *what)
    : m_id(id)
    , m_what(what)
    , m_seed(chosenSeed())
    , m_random(generator(m_seed, id))
{
    std::printf("%s: QUIRE_SEED=%u\n", m_id, m_seed);
    std::fflush(stdout);
}

Torture::~Torture()
{
    std::printf("scoreboard | %s | %s | %lld | %lld | %u\n", m_id, m_what, m_rounds, m_findings, m_seed);
    std::fflush(stdout);
}

int Torture::below(int limit)
{
    return std::uniform_int_distribution<int>(0, limit - 1)(m_random);
}

void Torture::addFinding(const QString &finding)
{
    if (++m_findings <= findingsShown) {
        ADD_FAILURE() << m_id << ", QUIRE_SEED=" << m_seed << ": " << finding.toStdString();
    }
}

void Torture::addFindings(const QStringList &findings)
{
    for (const QString &finding : findings) {
        addFinding(finding);
    }
}

int Torture::scaled(int rounds)
{
    return std::max(1, int(std::min(rounds * factor(), 1e9)));
}

int Torture::stride(int every)
{
    return std::max(1, int(std::min(std::round(every / factor()), 1e9)));
}

} // namespace quire::testing
