// Each failure point, in each state of the library that leads to it: the process
// ends there with its own status, and the next start recovers the library, also
// when the recovery is cut off itself.

#include "faults/Deeds.h"
#include "faults/Torture.h"
#include "persistence/OldLibraries.h"
#include "records/Failure.h"
#include "reliability/QuireFailureInjector.h"
#include "testing/ChildProcess.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;

namespace {

// A failure point and how to come to it.
struct Point
{
    const char *name;
    const char *deed;
};

constexpr Point pointsOfAnOpenLibrary[] = {
    {"goodreads-after-staging", "feed"},
    {"audible-after-staging", "audio"},
    {"backup-after-copy", "backup"},
    {"relocation-after-copy", "move"},
};
constexpr Point pointOfMigrations{"migration-before-commit", "open"};

// Points that belong to another room, with the test that reaches them there.
const QSet<QString> reachedElsewhere{
    QStringLiteral("publishing-after-staging"), // tst_LocalReadingList
};

class Crash
{
public:
    Crash(FaultBench &bench, const Point &point, Torture &torture)
        : m_bench(bench)
        , m_point(point)
        , m_torture(torture)
    {
    }

    // From `start` to the point, and from there on.
    void run(const FolderImage &start, const char *state)
    {
        m_where = QStringLiteral("%1, %2, %3: ")
                      .arg(QLatin1String(m_point.name), QLatin1String(nameOf(m_bench.place())), QLatin1String(state));
        m_bench.reset(start);
        const LibraryContent before = m_bench.content();
        m_bench.reset(start);
        const auto status = work(m_point.deed, {}, true);
        if (status != QuireFailureInjector::exitStatus) {
            find(QStringLiteral("was not reached"));
            return;
        }
        const FolderImage crashed = m_bench.image();
        m_bench.reset(crashed);
        expectRecovered(before);

        // The point once more, in a library that has just crashed there.
        m_bench.reset(crashed);
        if (work(m_point.deed, {}, true) != QuireFailureInjector::exitStatus) {
            find(QStringLiteral("was not reached a second time"));
        }
        expectRecovered(before);
        crashInRecovery(crashed, before);
    }

    const QStringList &findings() const { return m_findings; }

private:
    // The recovery ends at a call, at a later one, and so on until it passes.
    void crashInRecovery(const FolderImage &crashed, const LibraryContent &before)
    {
        const int stride = Torture::stride(12);
        for (int call = 1 + m_torture.below(stride);; call += stride) {
            m_bench.reset(crashed);
            const auto status = work("open", {QString::number(call)}, false);
            if (status == 0) {
                return;
            }
            if (status != QuireFailureInjector::exitStatus) {
                find(QStringLiteral("recovery failed at call %1").arg(call));
            }
            expectRecovered(before);
        }
    }

    std::optional<int> work(const char *deed, const QStringList &more, bool atPoint)
    {
        m_torture.addRounds();
        QMap<QString, QString> environment;
        if (atPoint) {
            environment.insert(QStringLiteral("QUIRE_ENABLE_FAILURE_TESTS"), QStringLiteral("1"));
            environment.insert(QStringLiteral("QUIRE_FAILURE_POINT"), QLatin1String(m_point.name));
        }
        ChildProcess worker(QStringLiteral(QUIRE_DEED_WORKER),
            QStringList{m_bench.folder(), QString::fromLatin1(deed)} + more, environment);
        worker.waitUntilEnded(std::chrono::minutes(2));
        return worker.exitStatus();
    }

    // The next start opens the library as it was, but for its schema and the
    // history of jobs; and it can be worked on.
    void expectRecovered(const LibraryContent &before)
    {
        try {
            m_bench.restart();
            m_bench.open(true);
            m_bench.close();
            const LibraryContent after = m_bench.content();
            const QStringList tables{QStringLiteral("settings"), QStringLiteral("book_tags")};
            for (const QString &table : tables) {
                if (after.rows.value(table) != before.rows.value(table)) {
                    find(QStringLiteral("other rows in ") + table);
                }
            }
            const QString titles = QStringLiteral("goodreads_books");
            if (before.version == after.version && after.rows.value(titles) != before.rows.value(titles)) {
                find(after.difference(before));
            }
            if (after.rows.value(titles).size() != before.rows.value(titles).size()) {
                find(QStringLiteral("titles were lost or came from nowhere"));
            }
        } catch (const Failure &failure) {
            find(QStringLiteral("does not open: ") + failure.description());
        }
        for (const QString &finding : m_bench.findingsOfFurtherWork()) {
            find(finding);
        }
        expectNoIncompleteBackup();
    }

    void expectNoIncompleteBackup()
    {
        for (const QString &file : m_bench.image().keys()) {
            if (file.endsWith(u".incomplete")) {
                find(QStringLiteral("left behind: ") + file);
            }
        }
    }

    void find(const QString &finding) { m_findings.append(m_where + finding); }

    FaultBench &m_bench;
    Point m_point;
    Torture &m_torture;
    QString m_where;
    QStringList m_findings;
};

FolderImage emptyLibrary(Place place)
{
    FaultBench bench(place);
    bench.open();
    bench.close();
    return bench.image();
}

FolderImage oldLibrary(Place place, void (*create)(const QString &path))
{
    FaultBench bench(place);
    create(bench.folder() + QStringLiteral("/quire.db"));
    return bench.image();
}

void crashAtEveryPoint(Place place)
{
    Torture torture("R04", "the process ends at a failure point");
    const FolderImage filled = filledLibrary(place);
    const FolderImage empty = emptyLibrary(place);
    const FolderImage version0 = oldLibrary(place, [](const QString &path) { OldLibraries::createVersion0(path, 20); });
    const FolderImage version1 = oldLibrary(place, OldLibraries::createVersion1);
    FaultBench bench(place);
    for (const Point &point : pointsOfAnOpenLibrary) {
        Crash crash(bench, point, torture);
        crash.run(filled, "a filled library");
        crash.run(empty, "an empty library");
        torture.addFindings(crash.findings());
    }
    Crash migration(bench, pointOfMigrations, torture);
    migration.run({}, "no library");
    migration.run(version0, "a library of version 0");
    migration.run(version1, "a library of version 1");
    torture.addFindings(migration.findings());
}

// The names in the sources, so that a new point cannot be forgotten here.
QSet<QString> pointsInTheSources()
{
    static const QRegularExpression checkpoint(QStringLiteral("QuireFailureInjector::checkpoint\\(u\"([^\"]+)\"\\)"));
    QSet<QString> names;
    for (const char *folder : {"persistence", "reliability", "publishing", "sources", "core"}) {
        QDirIterator files(QStringLiteral(QUIRE_SOURCE_DIR "/") + QLatin1String(folder), {QStringLiteral("*.cpp")},
            QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            auto found = checkpoint.globalMatch(QString::fromUtf8(file.readAll()));
            while (found.hasNext()) {
                names.insert(found.next().captured(1));
            }
        }
    }
    return names;
}

} // namespace

TEST(FailurePoints, AreAllReachedHere)
{
    QSet<QString> reached = reachedElsewhere + QSet<QString>{QLatin1String(pointOfMigrations.name)};
    for (const Point &point : pointsOfAnOpenLibrary) {
        reached.insert(QLatin1String(point.name));
    }
    EXPECT_EQ(reached, pointsInTheSources());
}

TEST(FailurePoints, AreRecoveredFromInTheDefaultFolder)
{
    crashAtEveryPoint(Place::DefaultFolder);
}

TEST(FailurePoints, AreRecoveredFromInAChosenFolder)
{
    crashAtEveryPoint(Place::ChosenFolder);
}

// The control: an import that writes in two transactions is not as it was.
TEST(FailurePoints, AnImportInTwoTransactionsIsCaught)
{
    Torture torture("R04-control", "an import in two transactions");
    FaultBench bench(Place::ChosenFolder);
    Crash broken(bench, {"goodreads-after-staging", "torn-feed"}, torture);
    broken.run(filledLibrary(Place::ChosenFolder), "a filled library");
    EXPECT_THAT(broken.findings(),
        ::testing::Contains(::testing::Truly([](const QString &finding) { return finding.contains(u"and not “"); })));
}
