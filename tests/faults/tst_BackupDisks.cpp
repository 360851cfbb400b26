// Backups on disks that are full, locked, or not there, with the fault at every
// step: the library and the last good backup stay as they are, the failure has
// its type and its words, and half a backup is never left behind.

#include "faults/Torture.h"
#include "files/FileError.h"
#include "persistence/database/DatabaseError.h"
#include "reliability/FinishedBackup.h"
#include "testing/Await.h"
#include "testing/ResourceLimit.h"
#include "testing/SmallDisk.h"
#include "testing/TestLibrary.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

namespace {

// A library with a good backup in a folder of its own, and what is wrong after
// another one was tried.
class Scene
{
public:
    // backups: a folder that exists.
    explicit Scene(QString backups)
        : m_folder(std::move(backups))
    {
        SQLiteDatabase database(m_library.databasePath());
        for (int i = 1; i <= 30; ++i) {
            database.execute("INSERT INTO goodreads_books (goodreads_id, title, author, shelf, cover_data) VALUES (?, "
                             "'t', 'a', 'read', ?)",
                {QString::number(i), QByteArray(2'000, 'c')});
        }
        database.close();
        m_good = await(m_library.store().backUpDatabase(m_folder));
        m_library.clock().advance(1h);
        note();
    }

    TestLibrary &library() { return m_library; }
    const QString &folder() const { return m_folder; }
    const QString &good() const { return m_good; }
    qint64 backupBytes() const { return QFileInfo(m_good).size(); }

    using Deed = std::function<QString()>;
    Deed backUp()
    {
        return [this] { return await(m_library.store().backUpDatabase(m_folder)); };
    }

    // Does it, and remembers whether it failed.
    void attempt(const Deed &deed)
    {
        m_findings.clear();
        m_hasFailed = true;
        try {
            deed();
            m_hasFailed = false;
        } catch (const DatabaseError &error) {
            require(error.kind() == DatabaseError::Kind::Backup && !error.text().isEmpty(), error.description());
        } catch (const FileError &error) {
            require(error.code() != 0, error.description());
        } catch (const std::exception &error) {
            require(false, QString::fromUtf8(error.what()));
        }
    }

    bool hasFailed() const { return m_hasFailed; }

    // What is wrong now that the fault is over; nothing when all is well. A new
    // backup that stands is removed again.
    QStringList findings()
    {
        require(
            FinishedBackup::condition(m_good) == FinishedBackup::Condition::Good, QStringLiteral("the last backup"));
        require(SQLiteDatabase(m_library.databasePath()).integrityCheck(), QStringLiteral("the library's file"));
        require(titles() == m_titles, QStringLiteral("the library's titles"));

        const QString trusted = setting("lastKnownGoodBackup");
        QStringList left = names();
        for (const QString &name : m_names) {
            require(left.removeOne(name), QStringLiteral("lost ") + name);
        }
        if (trusted == m_trusted) { // there is none
            require(m_hasFailed, QStringLiteral("no backup and no failure"));
            require(left.isEmpty(), QStringLiteral("left behind: ") + left.join(u' '));
            require(setting("lastBackupAt") == m_notedAt, QStringLiteral("a time was noted"));
        } else {
            require(FinishedBackup::condition(trusted) == FinishedBackup::Condition::Good,
                QStringLiteral("the new backup"));
            require(left.size() == 2, QStringLiteral("beside the new backup: ") + left.join(u' '));
            QFile::remove(trusted);
            QFile::remove(trusted + QStringLiteral(".manifest.json"));
        }
        await(m_library.store().setSetting(QStringLiteral("still"), QStringLiteral("writable")));
        note();
        return m_findings;
    }

private:
    void require(bool isSo, const QString &finding)
    {
        if (!isSo) {
            m_findings.append(finding);
        }
    }

    void note()
    {
        m_names = names();
        m_titles = titles();
        m_trusted = setting("lastKnownGoodBackup");
        m_notedAt = setting("lastBackupAt");
    }

    QStringList names() const
    {
        return QDir(m_folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    QString setting(const char *key) const
    {
        return m_library.scalar("SELECT value FROM settings WHERE key = ?", {QString::fromUtf8(key)}).string({});
    }
    QList<SQLiteRow> titles() const { return m_library.query("SELECT * FROM goodreads_books ORDER BY id"); }

    TestLibrary m_library;
    QString m_folder;
    QString m_good;
    QStringList m_names;
    QList<SQLiteRow> m_titles;
    QString m_trusted;
    QString m_notedAt;
    bool m_hasFailed = false;
    QStringList m_findings;
};

// Makes the fault smaller and smaller until the deed succeeds: every step of it
// has then failed once.
class EveryStep
{
public:
    EveryStep(Torture &torture, Scene &scene)
        : m_torture(torture)
        , m_scene(scene)
    {
    }

    // fault: does the deed under the given number of whatever is short.
    void run(const std::function<void(int left)> &fault)
    {
        constexpr int tooMany = 1'000;
        for (int left = 0; left < tooMany; ++left) {
            fault(left);
            m_torture.addRounds();
            for (const QString &finding : m_scene.findings()) {
                m_torture.addFinding(QStringLiteral("%1 left: %2").arg(left).arg(finding));
            }
            if (!m_scene.hasFailed()) {
                EXPECT_GE(left, 1) << "it never failed";
                return;
            }
        }
        ADD_FAILURE() << "it never succeeded";
    }

private:
    Torture &m_torture;
    Scene &m_scene;
};

class BackupDisks : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { SmallDisk::isAvailable(); } // while there is one thread

    QString file(const QString &name) const { return m_root.filePath(name); }
    QString newFolder(const QString &name) const
    {
        EXPECT_TRUE(QDir().mkpath(file(name)));
        return file(name);
    }
    static void setMode(const QString &path, mode_t mode)
    {
        ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0);
    }

    QTemporaryDir m_root;
};

} // namespace

TEST_F(BackupDisks, ThatAreFullAtAnyBlock)
{
    if (!SmallDisk::isAvailable()) {
        GTEST_SKIP() << "this machine lets no test mount a disk";
    }
    Torture torture("R05", "backup to a full disk");
    SmallDisk disk(newFolder(QStringLiteral("disk")));
    Scene scene(file(QStringLiteral("disk")));
    EveryStep(torture, scene).run([&](int left) {
        disk.leaveBlocks(left);
        scene.attempt(scene.backUp());
        disk.leaveEverything();
    });
}

TEST_F(BackupDisks, ThatTakeNoMoreFiles)
{
    if (!SmallDisk::isAvailable()) {
        GTEST_SKIP() << "this machine lets no test mount a disk";
    }
    Torture torture("R05", "backup to a disk without room for a file");
    SmallDisk disk(newFolder(QStringLiteral("disk")));
    Scene scene(file(QStringLiteral("disk")));
    EveryStep(torture, scene).run([&](int left) {
        disk.leaveFiles(left);
        scene.attempt(scene.backUp());
        disk.leaveEverything();
    });
}

// The library's own journal is under it as well.
TEST_F(BackupDisks, ThatTakeNoLongerFile)
{
    Torture torture("R05", "backup under a limit of the file size");
    Scene scene(newFolder(QStringLiteral("backups")));
    EveryStep(torture, scene).run([&](int left) {
        const ShortFiles limit(rlim_t(left) * 4'096 / 2);
        scene.attempt(scene.backUp());
    });
}

TEST_F(BackupDisks, WithTooManyOpenFiles)
{
    Torture torture("R05", "backup with too many open files");
    Scene scene(newFolder(QStringLiteral("backups")));
    EveryStep(torture, scene).run([&](int left) {
        const FewFiles limit{std::size_t(left)};
        scene.attempt(scene.backUp());
    });
}

TEST_F(BackupDisks, WhereTheBackupsShareAFullDiskWithTheLibrary)
{
    if (!SmallDisk::isAvailable()) {
        GTEST_SKIP() << "this machine lets no test mount a disk";
    }
    Torture torture("R05", "library and backups on one full disk");
    const QByteArray before = qgetenv("TMPDIR"); // where a test library lies
    SmallDisk disk(newFolder(QStringLiteral("disk")));
    qputenv("TMPDIR", QFile::encodeName(file(QStringLiteral("disk"))));
    {
        Scene scene(newFolder(QStringLiteral("disk/backups")));
        EXPECT_TRUE(scene.library().folder().startsWith(file(QStringLiteral("disk"))));
        EveryStep(torture, scene).run([&](int left) {
            disk.leaveBlocks(left);
            scene.attempt(scene.backUp());
            disk.leaveEverything();
        });
    }
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
}

TEST_F(BackupDisks, WhereTheReaderMayNotWrite)
{
    Torture torture("R05", "backup without rights");
    const QString backups = newFolder(QStringLiteral("backups"));
    setMode(m_root.path(), 0777);
    setMode(backups, 0777);
    const UnprivilegedUser user(m_root.path());
    Scene scene(backups);
    const auto root = [](auto work) {
        if (::getuid() == 0) {
            ASSERT_EQ(::seteuid(0), 0);
            work();
            ASSERT_EQ(::seteuid(65534), 0);
        } else {
            work();
        }
    };
    for (const mode_t mode : {0555, 0444, 0333, 0000}) {
        root([&] { setMode(backups, mode); });
        scene.attempt(scene.backUp());
        root([&] { setMode(backups, 0777); });
        torture.addRounds();
        EXPECT_TRUE(scene.hasFailed()) << std::oct << mode;
        torture.addFindings(scene.findings());
    }
    // The library's own folder, where its journal would be.
    root([&] { setMode(scene.library().folder(), 0555); });
    scene.attempt(scene.backUp());
    root([&] { setMode(scene.library().folder(), 0777); });
    torture.addRounds();
    EXPECT_TRUE(scene.hasFailed());
    torture.addFindings(scene.findings());
}

TEST_F(BackupDisks, ThatAreNoFolderAtAll)
{
    Torture torture("R05", "backup into what is no folder");
    Scene scene(newFolder(QStringLiteral("backups")));
    QFile in(file(QStringLiteral("a file")));
    ASSERT_TRUE(in.open(QIODevice::WriteOnly));
    ASSERT_TRUE(QFile::link(file(QStringLiteral("nowhere")), file(QStringLiteral("loose link"))));
    for (const QString &path :
        {QStringLiteral("a file"), QStringLiteral("a file/below"), QStringLiteral("loose link/below")}) {
        scene.attempt([&] { return await(scene.library().store().backUpDatabase(file(path))); });
        torture.addRounds();
        EXPECT_TRUE(scene.hasFailed() || path.startsWith(u"loose")) << qPrintable(path);
        torture.addFindings(scene.findings());
    }
}

// A copy without the care that is taken with a backup.
TEST_F(BackupDisks, ShowACopyThatTakesNoCare)
{
    Scene scene(newFolder(QStringLiteral("backups")));
    const auto careless = [&] {
        QString copy = scene.folder() + QStringLiteral("/careless.db");
        SQLiteDatabase::backUp(scene.library().databasePath(), copy);
        return copy;
    };
    {
        const ShortFiles limit(rlim_t(scene.backupBytes()) / 2);
        scene.attempt(careless);
    }
    EXPECT_TRUE(scene.hasFailed());
    EXPECT_FALSE(scene.findings().isEmpty());
}
