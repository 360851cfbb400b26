// The program is killed at random moments while it works: what it was told to be
// done is there, nothing is there by half, and the library opens again.

#include "faults/DeedTrial.h"
#include "faults/FaultBench.h"
#include "faults/Torture.h"
#include "faults/WorkerDeeds.h"
#include "persistence/database/SQLiteDatabase.h"
#include "records/Failure.h"
#include "reliability/QuireBackupManifest.h"
#include "testing/ChildProcess.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;

namespace {

// What the worker's journal tells of a library.
class Expectation
{
public:
    // Reads what was added to the journal since.
    void readOn(const QString &journal)
    {
        QFile file(journal);
        if (!file.open(QIODevice::ReadOnly) || !file.seek(m_read)) {
            return;
        }
        m_underWay.clear();
        while (!file.atEnd()) {
            const QByteArray line = file.readLine();
            m_read += line.size();
            const QStringList words = QString::fromUtf8(line.trimmed()).split(QLatin1Char(' '));
            if (words.value(0) == u"begin") {
                m_deed = {words.value(2), words.value(3).toInt()};
                m_underWay = m_deed.traces(words.value(1));
            } else if (words.value(0) == u"done") {
                m_told.insert(m_underWay);
                m_underWay.clear();
                if (m_deed.word == u"backup") {
                    m_backup = QString::fromUtf8(line.trimmed()).section(QLatin1Char(' '), 2);
                }
            }
        }
    }

    QStringList findings(const Traces &found) const
    {
        QStringList findings;
        for (auto told = m_told.cbegin(); told != m_told.cend(); ++told) {
            const QString number = found.value(told.key());
            if (number != *told && number != m_underWay.value(told.key(), *told)) {
                findings.append(QStringLiteral("%1 was told to be of deed %2 and is of %3")
                                    .arg(told.key(), *told, number.isEmpty() ? QStringLiteral("none") : number));
            }
        }
        return findings;
    }

    // The deed that was under way may have been done or not: it is as it is.
    void adopt(const Traces &found)
    {
        for (auto trace = m_underWay.cbegin(); trace != m_underWay.cend(); ++trace) {
            if (found.value(trace.key()) == *trace) {
                m_told.insert(trace.key(), *trace);
            }
        }
        m_underWay.clear();
    }

    const QString &backup() const { return m_backup; }

private:
    qint64 m_read = 0;
    Traces m_told;
    Traces m_underWay;
    WorkerDeed m_deed;
    QString m_backup; // the last that was told to be made
};

QStringList findingsOfBackup(const QString &path)
{
    if (path.isEmpty()) {
        return {};
    }
    const auto manifest = QuireBackupManifest::read(path + QStringLiteral(".manifest.json"));
    QFile file(path);
    if (!manifest || !file.open(QIODevice::ReadOnly)) {
        return {QStringLiteral("a backup that was told to be made is not there: ") + path};
    }
    const QByteArray digest = QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
    if (QString::fromLatin1(digest) != manifest->databaseSHA256) {
        return {QStringLiteral("a backup that was told to be made is not what its manifest says")};
    }
    return {};
}

class Killing
{
public:
    Killing(Place place, Torture &torture, bool early = false)
        : m_bench(place)
        , m_torture(torture)
        , m_early(early)
    {
    }

    // One library and a few lives on it. The findings.
    QStringList run(int lives)
    {
        m_bench.reset({});
        createWorkersLibrary(m_bench.folder());
        const QString journal = m_bench.outside(QStringLiteral("journal-%1").arg(m_libraries++));
        Expectation expected;
        QStringList findings;
        for (int life = 0; life < lives && findings.isEmpty(); ++life) {
            findings += live(journal);
            expected.readOn(journal);
            findings += look(expected);
        }
        return findings;
    }

private:
    // Half of the workers are killed while they start, the others at work.
    QStringList live(const QString &journal)
    {
        m_bench.letTimePass();
        QStringList arguments{m_bench.folder(), journal, QString::number(1 + m_torture.below(1'000'000'000))};
        if (m_early) {
            arguments.append(QStringLiteral("early"));
        }
        ChildProcess worker(QStringLiteral(QUIRE_KILLABLE_WORKER), arguments);
        QStringList findings;
        if (m_torture.below(2) == 0) {
            const auto line = worker.readLine(std::chrono::seconds(60));
            if (line != QByteArrayLiteral("open")) {
                findings.append(QStringLiteral("does not open: ") + QString::fromUtf8(line.value_or("nothing said")));
            }
            QThread::usleep(unsigned(m_torture.below(60'000)));
        } else {
            QThread::usleep(unsigned(m_torture.below(120'000)));
        }
        worker.kill();
        worker.waitUntilEnded();
        if (worker.exitStatus()) {
            findings.append(QStringLiteral("ended by itself: ")
                + QString::fromUtf8(worker.readLine(std::chrono::seconds(1)).value_or("nothing said")));
        }
        return findings;
    }

    QStringList look(Expectation &expected) const
    {
        QStringList findings;
        try {
            const SQLiteDatabase database(m_bench.folder() + QStringLiteral("/quire.db"));
            if (!database.integrityCheck()) {
                findings.append(QStringLiteral("the integrity check found something"));
            }
            QStringList torn;
            const Traces found = tracesIn(database, m_bench.folder(), torn);
            for (const QString &thing : torn) {
                findings.append(thing + QStringLiteral(" is there by half"));
            }
            findings += expected.findings(found);
            expected.adopt(found);
        } catch (const Failure &failure) {
            findings.append(QStringLiteral("cannot be read: ") + failure.description());
        }
        return findings + findingsOfBackup(expected.backup());
    }

    FaultBench m_bench;
    Torture &m_torture;
    bool m_early;
    int m_libraries = 0;
};

void killAtRandom(Place place)
{
    constexpr int livesPerLibrary = 25;
    Torture torture("R01", "the program is killed");
    Killing killing(place, torture);
    const int kills = Torture::scaled(250);
    for (int done = 0; done < kills; done += livesPerLibrary) {
        const int lives = std::min(livesPerLibrary, kills - done);
        torture.addFindings(killing.run(lives));
        torture.addRounds(lives);
    }
}

LibraryContent withoutHistory(LibraryContent content)
{
    content.rows.remove(QStringLiteral("background_job_history"));
    content.rows.remove(QStringLiteral("sqlite_sequence"));
    return content;
}

// One deed of a program, and the places where the library may rest on its way.
class KillingInADeed
{
public:
    // name: of the deed; word: what makes the worker do it.
    KillingInADeed(Place place, const char *name, const char *word)
        : m_bench(place)
        , m_word(QLatin1String(word))
    {
        for (const Deed &deed : allDeeds(place)) {
            if (qstrcmp(deed.name, name) == 0) {
                m_start = deed.start;
                const DeedTrial trial(deed, m_bench);
                for (const LibraryContent &rest : trial.rests()) {
                    m_rests.push_back(withoutHistory(rest));
                }
            }
        }
    }

    // Kills it at a moment of its usual duration. What was found.
    QStringList run(Torture &torture)
    {
        m_bench.reset(m_start);
        ChildProcess worker(QStringLiteral(QUIRE_DEED_WORKER), {m_bench.folder(), m_word});
        if (!m_duration) {
            QElapsedTimer clock;
            clock.start();
            worker.waitUntilEnded();
            m_duration = int(clock.nsecsElapsed() / 1'000);
        } else {
            QThread::usleep(unsigned(torture.below(*m_duration)));
            worker.kill();
            worker.waitUntilEnded();
        }
        return look();
    }

private:
    QStringList look()
    {
        QStringList findings;
        try {
            const LibraryContent content = withoutHistory(m_bench.content());
            if (std::find(m_rests.begin(), m_rests.end(), content) == m_rests.end()) {
                findings.append(QStringLiteral("between: ") + content.difference(m_rests.front()));
            }
        } catch (const Failure &failure) {
            findings.append(QStringLiteral("cannot be read: ") + failure.description());
        }
        m_bench.restart();
        return findings + m_bench.findingsOfFurtherWork();
    }

    FaultBench m_bench;
    QString m_word;
    FolderImage m_start;
    std::vector<LibraryContent> m_rests;
    std::optional<int> m_duration; // in microseconds, once it is known
};

void killInADeed(Place place, const char *what, const char *name, const char *word)
{
    Torture torture("R01", what);
    KillingInADeed killing(place, name, word);
    const int kills = Torture::scaled(25);
    for (int done = 0; done <= kills; ++done) { // the first is not killed
        torture.addFindings(killing.run(torture));
    }
    torture.addRounds(kills);
}

} // namespace

TEST(KillAtRandom, WhileItMigratesLeavesALibraryOfOneVersion)
{
    killInADeed(Place::DefaultFolder, "the program is killed while it migrates", "migration from version 0", "open");
    killInADeed(Place::ChosenFolder, "the program is killed while it migrates", "migration from version 1", "open");
}

TEST(KillAtRandom, WhileItMovesLeavesTheLibraryWhereTheRecordSays)
{
    killInADeed(Place::DefaultFolder, "the program is killed while it moves", "move to a chosen folder", "move");
}

TEST(KillAtRandom, LosesNothingThatWasToldToBeDoneInTheDefaultFolder)
{
    killAtRandom(Place::DefaultFolder);
}

TEST(KillAtRandom, LosesNothingThatWasToldToBeDoneInAChosenFolder)
{
    killAtRandom(Place::ChosenFolder);
}

// The control: a worker that notes a deed as done before it is.
TEST(KillAtRandom, AWorkerThatBelievesTooEarlyIsCaught)
{
    Torture torture("control", "a worker that believes too early");
    Killing killing(Place::ChosenFolder, torture, true);
    QStringList findings;
    for (int library = 0; library < 20 && findings.isEmpty(); ++library) {
        findings = killing.run(25);
    }
    EXPECT_THAT(findings, ::testing::Contains(::testing::Truly([](const QString &finding) {
        return finding.contains(u"was told to be of deed");
    }))) << findings.join(QLatin1Char('\n')).toStdString();
}
