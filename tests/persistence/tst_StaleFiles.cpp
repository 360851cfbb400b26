#include "LineageTest.h"

#include "files/FileError.h"
#include "persistence/StaleFiles.h"
#include "testing/UnprivilegedUser.h"

using namespace quire;
using namespace quire::testing;

namespace {

class StaleFilesTest : public LineageTest
{
protected:
    StaleFilesTest()
    {
        library.open();
        library.close();
    }

    void set(const char *key, const QString &value)
    {
        library.execute("INSERT OR REPLACE INTO settings VALUES (?, ?)", {QString::fromLatin1(key), value});
    }

    // Files of these names in a folder that is made for them.
    static void fill(const QString &folder, const QStringList &names)
    {
        QDir().mkpath(folder);
        for (const QString &name : names) {
            putFile(folder + u'/' + name, "x");
        }
    }

    void clean() const
    {
        StaleFiles::cleanStaleTemporaryFiles(SQLiteDatabase(library.databasePath()), library.folder());
    }

    const QStringList published{QStringLiteral("a.quire.md.123.tmp"), QStringLiteral("quire.md.tmp"),
        QStringLiteral("notes.tmp"), QStringLiteral("a.quire.md.123.TMP"), QStringLiteral("a.quire.md.123"),
        QStringLiteral("quire.md"), QStringLiteral(".quire.md.7.tmp")};
    const QStringList publishedKept{QStringLiteral(".quire.md.7.tmp"), QStringLiteral("a.quire.md.123"),
        QStringLiteral("a.quire.md.123.TMP"), QStringLiteral("notes.tmp"), QStringLiteral("quire.md"),
        QStringLiteral("quire.md.tmp")};
};

} // namespace

TEST_F(StaleFilesTest, HalfWrittenReadingListsGoFromBothPublishingFolders)
{
    const QString deploy = library.file(QStringLiteral("deploy"));
    const QString own = library.file(QStringLiteral("Reader's lists"));
    fill(deploy, published);
    fill(own, published);
    set("localPublishPath", own);
    clean();
    EXPECT_EQ(namesIn(deploy), publishedKept);
    EXPECT_EQ(namesIn(own), publishedKept);
}

TEST_F(StaleFilesTest, ATildeIsNotExpanded)
{
    const QByteArray former = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(library.folder()));
    fill(library.file(QStringLiteral("lists")), published);
    set("localPublishPath", QStringLiteral("~/lists"));
    clean();
    qputenv("HOME", former);
    EXPECT_EQ(namesIn(library.file(QStringLiteral("lists"))).size(), published.size());
}

TEST_F(StaleFilesTest, BackupsWithoutAnEndGoWithManifestAndMarker)
{
    const QString backups = library.file(QStringLiteral("Database Backups"));
    const QString good = QStringLiteral("Quire Database 2026-11-20T10-00-00.000Z.db");
    const QString begun = QStringLiteral("Quire Database 2026-11-21T10-00-00.000Z.db");
    fill(backups,
        {good, good + QStringLiteral(".manifest.json"), begun, begun + QStringLiteral(".manifest.json"),
            begun + QStringLiteral(".incomplete"), begun + QStringLiteral("-journal"),
            QStringLiteral("lonely.db.incomplete"), QStringLiteral("notes.INCOMPLETE"), QStringLiteral(".hidden.db"),
            QStringLiteral(".hidden.db.incomplete")});
    set("backupPath", QStringLiteral("  "));
    clean();
    EXPECT_THAT(namesIn(backups),
        ::testing::UnorderedElementsAre(QStringLiteral(".hidden.db"), QStringLiteral(".hidden.db.incomplete"), good,
            good + QStringLiteral(".manifest.json"), QStringLiteral("notes.INCOMPLETE")));
}

TEST_F(StaleFilesTest, TheReadersOwnBackupFolderTakesThePlaceOfTheOther)
{
    const QString own = library.file(QStringLiteral("own"));
    const QString usual = library.file(QStringLiteral("Database Backups"));
    fill(own, {QStringLiteral("a.db"), QStringLiteral("a.db.incomplete")});
    fill(usual, {QStringLiteral("a.db"), QStringLiteral("a.db.incomplete")});
    set("backupPath", own);
    clean();
    EXPECT_TRUE(namesIn(own).isEmpty());
    EXPECT_EQ(namesIn(usual).size(), 2);
}

TEST_F(StaleFilesTest, FoldersThatAreNotThereAreFine)
{
    set("localPublishPath", library.file(QStringLiteral("missing")));
    set("backupPath", library.file(QStringLiteral("missing too")));
    clean();
    putFile(library.file(QStringLiteral("missing")), "a file in a folder's place");
    clean();
}

TEST_F(StaleFilesTest, WhatCannotBeRemovedStaysAndIsNoFailure)
{
    const QString deploy = library.file(QStringLiteral("deploy"));
    QDir().mkpath(deploy + QStringLiteral("/a.quire.md.1.tmp/full"));
    fill(deploy, {QStringLiteral("b.quire.md.2.tmp")});
    clean();
    EXPECT_EQ(namesIn(deploy), QStringList{QStringLiteral("a.quire.md.1.tmp")});
}

TEST_F(StaleFilesTest, AFolderThatCannotBeListedEndsTheCleaning)
{
    const QString own = library.file(QStringLiteral("own"));
    const QString backups = library.file(QStringLiteral("Database Backups"));
    fill(own, published);
    fill(backups, {QStringLiteral("a.db.incomplete")});
    set("localPublishPath", own);
    QFile::setPermissions(own, {});
    {
        const UnprivilegedUser user(library.folder());
        EXPECT_EQ(thrownBy<FileError>([this] { clean(); })->path(), own);
    }
    EXPECT_EQ(namesIn(backups).size(), 1);
    QFile::setPermissions(own, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST_F(StaleFilesTest, EveryOpeningCleansWhetherAfterACrashOrNot)
{
    const QString backups = library.file(QStringLiteral("Database Backups"));
    for (const bool recovering : {false, true}) {
        fill(backups, {QStringLiteral("a.db"), QStringLiteral("a.db.incomplete")});
        library.open(recovering);
        EXPECT_TRUE(namesIn(backups).isEmpty());
        library.close();
    }
}
