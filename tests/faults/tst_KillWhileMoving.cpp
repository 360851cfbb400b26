// The program is killed at random moments while it moves its library about: the
// record names a whole library, which has every edit that was told to be done.

#include "faults/FaultBench.h"
#include "faults/Torture.h"
#include "persistence/AppDirectories.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/QuireLibraryLocation.h"
#include "records/Failure.h"
#include "testing/ChildProcess.h"

#include <QDirIterator>
#include <QFile>
#include <QThread>

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

namespace {

class KillingWhileMoving
{
public:
    KillingWhileMoving(Torture &torture, bool careless = false)
        : m_torture(torture)
        , m_careless(careless)
    {
        m_bench.reset(filledLibrary());
        done(m_bench.store().databaseURL()); // by now the environment is the bench's
    }

    // One life of the program. The findings.
    QStringList live()
    {
        QStringList arguments{m_bench.outside(QStringLiteral("elsewhere")), m_journal,
            QString::number(1 + m_torture.below(1'000'000'000))};
        if (m_careless) {
            arguments.append(QStringLiteral("careless"));
        }
        ChildProcess worker(QStringLiteral(QUIRE_MOVING_WORKER), arguments);
        QStringList findings;
        if (const auto line = worker.readLine(std::chrono::seconds(60)); line != QByteArrayLiteral("open")) {
            findings.append(QStringLiteral("does not open: ") + QString::fromUtf8(line.value_or("nothing said")));
        }
        QThread::usleep(unsigned(m_torture.below(150'000)));
        worker.kill();
        worker.waitUntilEnded();
        ageOwnerlessLocks();
        if (findings.isEmpty() && worker.exitStatus()) {
            findings.append(QStringLiteral("ended by itself: ")
                + QString::fromUtf8(worker.readLine(std::chrono::seconds(1)).value_or("nothing said")));
        }
        return findings + look();
    }

private:
    static FolderImage filledLibrary()
    {
        FaultBench bench(Place::DefaultFolder);
        bench.open();
        ManualBookDraft draft;
        draft.title = QStringLiteral("One");
        done(bench.store().addManualBook(draft, CoverBytes(QByteArray(200'000, 'c'))));
        bench.close();
        return bench.image();
    }

    // A lock without an owner is respected for two seconds: let them be over.
    void ageOwnerlessLocks() const
    {
        QDirIterator locks(m_bench.outside({}), {QStringLiteral("Quire Library.lock")}, QDir::Dirs | QDir::Hidden,
            QDirIterator::Subdirectories);
        while (locks.hasNext()) {
            const timespec longAgo[2]{};
            if (const QString lock = locks.next(); !QFile::exists(lock + QStringLiteral("/Owner.json"))) {
                ::utimensat(AT_FDCWD, QFile::encodeName(lock).constData(), longAgo, 0);
            }
        }
    }

    QStringList look()
    {
        readJournal();
        const QString folder = QuireLibraryLocation::configuredDirectory();
        const QString path = folder + QStringLiteral("/quire.db");
        if (!QFile::exists(path)) {
            return {QStringLiteral("the record names a folder without a library: ") + folder};
        }
        try {
            const SQLiteDatabase database(path);
            if (!database.integrityCheck()) {
                return {QStringLiteral("the integrity check found something")};
            }
            const QString found = database.scalar("SELECT notes FROM goodreads_books WHERE id = 1")->string({});
            if (found != m_told && found != m_underWay) {
                return {QStringLiteral("edit %1 was told to be done, and %2 is there").arg(m_told, found)};
            }
            m_told = found; // what was under way may have been done or not
        } catch (const Failure &failure) {
            return {QStringLiteral("cannot be read: ") + failure.description()};
        }
        return {};
    }

    void readJournal()
    {
        QFile file(m_journal);
        if (!file.open(QIODevice::ReadOnly) || !file.seek(m_read)) {
            return;
        }
        while (!file.atEnd()) {
            const QByteArray line = file.readLine();
            m_read += line.size();
            const QString number = QString::fromUtf8(line.trimmed()).section(u' ', 1);
            (line.startsWith("done") ? m_told : m_underWay) = number;
        }
    }

    FaultBench m_bench{Place::DefaultFolder};
    Torture &m_torture;
    bool m_careless;
    QString m_journal = m_bench.outside(QStringLiteral("journal"));
    qint64 m_read = 0;
    QString m_told; // the last edit that was told to be done
    QString m_underWay;
};

} // namespace

TEST(KillWhileMoving, LeavesAWholeLibraryThatTheRecordNames)
{
    Torture torture("R01", "the program is killed while it moves its library");
    KillingWhileMoving killing(torture);
    for (int kills = Torture::scaled(80); kills > 0; --kills) {
        const QStringList findings = killing.live();
        torture.addRounds();
        torture.addFindings(findings);
        if (!findings.isEmpty()) {
            return; // what follows would only repeat it
        }
    }
}

TEST(KillWhileMoving, AMoveThatIsRecordedTooEarlyIsCaught)
{
    Torture torture("R01-control", "a move that is recorded too early");
    KillingWhileMoving killing(torture, true);
    QStringList findings;
    for (int kills = 0; kills < 200 && findings.isEmpty(); ++kills) {
        findings = killing.live();
    }
    EXPECT_FALSE(findings.isEmpty());
}
