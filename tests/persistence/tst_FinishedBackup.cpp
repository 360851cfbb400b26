#include "reliability/FinishedBackup.h"

#include "persistence/BackupTest.h"

using namespace quire;
using namespace quire::testing;

namespace {

using Condition = FinishedBackup::Condition;

class FinishedBackupTest : public BackupTest
{
protected:
    Condition condition() const { return FinishedBackup::condition(backup); }

    // The manifest with something in it changed.
    template<typename Change>
    void rewrite(Change change)
    {
        auto manifest = QuireBackupManifest::read(manifestPath);
        ASSERT_TRUE(manifest);
        change(*manifest);
        manifest->write(manifestPath);
    }

    QString backup = backUp();
    QString manifestPath = backup + QStringLiteral(".manifest.json");
};

} // namespace

TEST_F(FinishedBackupTest, IsGoodAndStaysAsItIs)
{
    const QByteArray before = bytesOf(backup);

    EXPECT_EQ(condition(), Condition::Good);

    EXPECT_EQ(bytesOf(backup), before);
    EXPECT_EQ(namesIn(folder()).size(), 2);
}

TEST_F(FinishedBackupTest, IsGoodWhereverItIsCopied)
{
    const QString copy = library.file(QStringLiteral("another name.db"));
    ASSERT_TRUE(QFile::copy(backup, copy));
    ASSERT_TRUE(QFile::copy(manifestPath, copy + QStringLiteral(".manifest.json")));

    EXPECT_EQ(FinishedBackup::condition(copy), Condition::Good);
}

TEST_F(FinishedBackupTest, IsUnfinishedWithAMarker)
{
    putFile(backup + QStringLiteral(".incomplete"), {});
    EXPECT_EQ(condition(), Condition::Unfinished);
}

TEST_F(FinishedBackupTest, NeedsAManifestThatCanBeRead)
{
    putFile(manifestPath, "{}");
    EXPECT_EQ(condition(), Condition::WithoutManifest);
    ASSERT_TRUE(QFile::remove(manifestPath));
    EXPECT_EQ(condition(), Condition::WithoutManifest);
}

TEST_F(FinishedBackupTest, IsDamagedWhenItIsGoneOrNoFile)
{
    ASSERT_TRUE(QFile::remove(backup));
    EXPECT_EQ(condition(), Condition::Damaged);
    ASSERT_TRUE(QDir().mkpath(backup));
    EXPECT_EQ(condition(), Condition::Damaged);
}

TEST_F(FinishedBackupTest, IsDamagedWhenABitIsOther)
{
    QByteArray bytes = bytesOf(backup);
    bytes[bytes.size() - 1] = char(bytes.back() ^ 1);
    putFile(backup, bytes);
    EXPECT_EQ(condition(), Condition::Damaged);
}

TEST_F(FinishedBackupTest, IsDamagedWhenTheManifestSaysAnythingElse)
{
    const auto manifest = *QuireBackupManifest::read(manifestPath);
    const auto expectDamaged = [&](auto change) {
        rewrite(change);
        EXPECT_EQ(condition(), Condition::Damaged);
        manifest.write(manifestPath);
    };
    expectDamaged([](QuireBackupManifest &m) { m.databaseSHA256 = QStringLiteral("0").repeated(64); });
    expectDamaged([](QuireBackupManifest &m) { m.schemaVersion = 3; });
    expectDamaged([](QuireBackupManifest &m) { m.libraryUUID[0] = u'-'; });
    expectDamaged([](QuireBackupManifest &m) { ++m.generation; });
    expectDamaged([](QuireBackupManifest &m) { ++m.bookCount; });
    expectDamaged([](QuireBackupManifest &m) { ++m.audiobookCount; });
    EXPECT_EQ(condition(), Condition::Good);
}

TEST_F(FinishedBackupTest, IsDamagedWhenSQLiteWouldTakeAFileBesideItForAPartOfIt)
{
    for (const char *suffix : {"-wal", "-journal"}) {
        putFile(backup + QLatin1String(suffix), "x");
        EXPECT_EQ(condition(), Condition::Damaged) << suffix;
        ASSERT_TRUE(QFile::remove(backup + QLatin1String(suffix)));
    }
    EXPECT_EQ(condition(), Condition::Good);
}
