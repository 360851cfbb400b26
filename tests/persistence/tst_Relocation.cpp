#include "files/DurableFile.h"
#include "files/FileError.h"
#include "persistence/AppDirectories.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/LibraryStore.h"
#include "persistence/QuireLibraryLocation.h"
#include "reliability/QuireLibraryLease.h"
#include "reliability/QuireReliabilityError.h"
#include "testing/Await.h"
#include "testing/ManualClock.h"
#include "testing/OwnDataDirectory.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>

#include <gmock/gmock.h>

#include <cerrno>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;
using Kind = DatabaseError::Kind;

namespace {

const DatabaseError notAbsolute(
    Kind::InvalidLibraryLocation, QStringLiteral("Choose an absolute folder for the Quire library."));
const DatabaseError existingIsDamaged(Kind::InvalidLibraryLocation,
    QStringLiteral("The existing Quire database in that folder failed its integrity check."));

QString databaseIn(const QString &folder)
{
    return folder + QStringLiteral("/quire.db");
}

void fill(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
}

QStringList titlesIn(const QString &folder)
{
    QStringList titles;
    for (const SQLiteRow &row :
        SQLiteDatabase(databaseIn(folder), true).query("SELECT title FROM goodreads_books ORDER BY id")) {
        titles.append(row.string(QStringLiteral("title"), {}));
    }
    return titles;
}

// A closed library in `folder` with one title.
void makeLibrary(const QString &folder, const QString &title, const QByteArray &cover = {})
{
    const ManualClock clock;
    LibraryStore store(clock, folder);
    await(store.prepare(false));
    ManualBookDraft draft;
    draft.title = title;
    await(store.addManualBook(draft, cover.isEmpty() ? std::nullopt : std::optional(CoverBytes(cover))));
    await(store.shutdown());
}

// Makes a table of the closed library at `path` disagree with its index, which
// only a check finds.
void damage(const QString &path)
{
    const qint64 page = SQLiteDatabase(path)
                            .scalar("SELECT rootpage FROM sqlite_master WHERE name = 'goodreads_books'")
                            ->intValue()
                            .value();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek((page - 1) * 4096 + 3); // the number of cells: none, though the index has one
    file.write(QByteArray("\x00\x00", 2));
}

// A library in the default folder, open, with one title.
class RelocationTest : public ::testing::Test
{
protected:
    RelocationTest() { reopen(); }
    ~RelocationTest() override { await(store->shutdown()); }

    // Quits and starts again.
    void reopen()
    {
        if (store) {
            await(store->shutdown());
        } else {
            makeLibrary(defaultFolder, QStringLiteral("One"));
        }
        store = std::make_unique<LibraryStore>(clock);
        await(store->prepare(false));
    }

    bool relocate(const QString &target) { return await(store->relocateDatabase(target)); }

    void addBook(const QString &title)
    {
        ManualBookDraft draft;
        draft.title = title;
        await(store->addManualBook(draft, std::nullopt));
    }

    QStringList titles()
    {
        QStringList result;
        for (const Book &book : await(store->books())) {
            result.append(book.title);
        }
        result.sort();
        return result;
    }

    QString file(const QString &name) const { return place.filePath(name); }

    // The library is where it was, under its lease, takes an edit, and is found
    // by the next start; of the move nothing is left in `folder`.
    void expectAsBefore(const QString &target, const QStringList &namesBefore = {})
    {
        EXPECT_EQ(await(store->databaseURL()), databaseIn(defaultFolder));
        EXPECT_EQ(QuireLibraryLocation::configuredDirectory(), defaultFolder);
        QStringList names = namesIn(target);
        names.removeAll(QStringLiteral(".Quire Locks"));
        EXPECT_EQ(names, namesBefore);
        QuireLibraryLease lease(target, clock);
        if (QFileInfo(target).isDir()) {
            lease.acquire(); // free again
        }
        addBook(QStringLiteral("Edited"));
        reopen();
        EXPECT_EQ(titles(), (QStringList{QStringLiteral("Edited"), QStringLiteral("One")}));
    }

    const OwnDataDirectory data;
    const ManualClock clock;
    const QTemporaryDir place; // for libraries elsewhere
    const QString defaultFolder = AppDirectories::supportDirectory();
    const QString folder = place.filePath(QStringLiteral("Reading"));
    std::unique_ptr<LibraryStore> store;
};

} // namespace

TEST_F(RelocationTest, ALibraryIsCopiedToItsNewFolderAndUsedThere)
{
    EXPECT_TRUE(relocate(file(QStringLiteral("Cloud/Reading"))));
    const QString target = file(QStringLiteral("Cloud/Reading"));
    EXPECT_EQ(await(store->databaseURL()), databaseIn(target));
    EXPECT_EQ(titles(), QStringList{QStringLiteral("One")});
    addBook(QStringLiteral("Two"));
    EXPECT_EQ(titlesIn(target), (QStringList{QStringLiteral("One"), QStringLiteral("Two")}));
    EXPECT_EQ(namesIn(target), (QStringList{QStringLiteral(".Quire Locks"), QStringLiteral("quire.db")}));
}

TEST_F(RelocationTest, TheOldFileStaysAsTheLastStateBeforeTheMove)
{
    relocate(folder);
    addBook(QStringLiteral("Two"));
    EXPECT_EQ(titlesIn(defaultFolder), QStringList{QStringLiteral("One")});
}

TEST_F(RelocationTest, TheNextStartFindsTheLibraryInItsNewFolder)
{
    relocate(folder);
    addBook(QStringLiteral("Two"));
    reopen();
    EXPECT_EQ(await(store->databaseURL()), databaseIn(folder));
    EXPECT_EQ(titles(), (QStringList{QStringLiteral("One"), QStringLiteral("Two")}));
}

TEST_F(RelocationTest, TheJournalModeFollowsTheFolder)
{
    EXPECT_EQ(
        SQLiteDatabase(databaseIn(defaultFolder)).scalar("PRAGMA journal_mode"), SQLiteValue(QStringLiteral("wal")));
    relocate(folder);
    EXPECT_EQ(SQLiteDatabase(databaseIn(folder)).scalar("PRAGMA journal_mode"), SQLiteValue(QStringLiteral("delete")));
    QDir(defaultFolder).remove(QStringLiteral("quire.db"));
    EXPECT_TRUE(relocate(defaultFolder));
    EXPECT_EQ(
        SQLiteDatabase(databaseIn(defaultFolder)).scalar("PRAGMA journal_mode"), SQLiteValue(QStringLiteral("wal")));
    EXPECT_EQ(titles(), QStringList{QStringLiteral("One")});
    EXPECT_TRUE(namesIn(defaultFolder).filter(QStringLiteral("Migration")).isEmpty());
}

TEST_F(RelocationTest, SecretsStayOnThisMachine)
{
    await(store->setSetting(QStringLiteral("goodreadsRssKey"), QStringLiteral("feed key")));
    relocate(folder);
    EXPECT_EQ(await(store->setting(QStringLiteral("goodreadsRssKey"))), QStringLiteral("feed key"));
    await(store->setSetting(QStringLiteral("netlifyToken"), QStringLiteral("token")));
    EXPECT_FALSE(QFile::exists(folder + QStringLiteral("/Credentials.plist")));
    reopen();
    EXPECT_EQ(await(store->setting(QStringLiteral("netlifyToken"))), QStringLiteral("token"));
    EXPECT_FALSE(QFile::exists(folder + QStringLiteral("/Cloud Library State")));
}

TEST_F(RelocationTest, TheOldLeaseIsGivenUpAndTheNewOneHeldUntilTheEnd)
{
    relocate(folder);
    QuireLibraryLease old(defaultFolder, clock);
    old.acquire();
    EXPECT_TRUE(old.isAcquired());
    old.release();
    EXPECT_EQ(thrownBy<DatabaseError>([&] { QuireLibraryLease(folder, clock).acquire(); })->kind(), Kind::LibraryBusy);
    await(store->shutdown());
    QuireLibraryLease free(folder, clock);
    free.acquire();
    EXPECT_TRUE(free.isAcquired());
}

TEST_F(RelocationTest, ThePresentFolderUnderAnyOfItsNamesIsNoMove)
{
    const QString link = file(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(defaultFolder, link));
    const QStringList before = namesIn(defaultFolder);
    for (const QString &name : {defaultFolder, QString(defaultFolder + QStringLiteral("/")), link,
             QString(link + QStringLiteral("/../link/.")), QString(defaultFolder + QStringLiteral("/a/.."))}) {
        EXPECT_FALSE(relocate(name));
        EXPECT_EQ(await(store->databaseURL()), databaseIn(defaultFolder));
    }
    EXPECT_EQ(namesIn(defaultFolder), before); // no record, no copy
}

TEST_F(RelocationTest, AFolderMayHaveAnyName)
{
    const QString names[] = {QStringLiteral("with blanks "), QStringLiteral("it's \"quoted\"; DROP TABLE --"),
        QStringLiteral("100%20 %s ?mode=memory#x&y"), QStringLiteral("file:a"), QStringLiteral("読書/Книги/كتب"),
        QStringLiteral("a\\b"), QStringLiteral("e\u0301"), QStringLiteral("line\nfeed"), QStringLiteral("~")};
    QStringList expected{QStringLiteral("One")};
    for (const QString &name : names) {
        const QString target = file(name);
        EXPECT_TRUE(relocate(target)) << qPrintable(name);
        EXPECT_EQ(await(store->databaseURL()), databaseIn(target));
        addBook(name);
        reopen();
        expected.append(name);
        expected.sort();
        EXPECT_EQ(titles(), expected);
        EXPECT_TRUE(QFile::exists(databaseIn(target)));
    }
}

TEST_F(RelocationTest, AFolderIsStandardized)
{
    EXPECT_TRUE(relocate(file(QStringLiteral("./a//b/../../Reading/"))));
    EXPECT_EQ(await(store->databaseURL()), databaseIn(folder));
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("a"))));
    EXPECT_EQ(QuireLibraryLocation::configuredDirectory(), folder);
}

TEST_F(RelocationTest, AFolderThroughALinkKeepsItsName)
{
    QDir().mkpath(file(QStringLiteral("Cloud")));
    const QString link = file(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(file(QStringLiteral("Cloud")), link));
    EXPECT_TRUE(relocate(link));
    EXPECT_EQ(await(store->databaseURL()), databaseIn(link));
    EXPECT_EQ(titlesIn(file(QStringLiteral("Cloud"))), QStringList{QStringLiteral("One")});
    EXPECT_FALSE(relocate(file(QStringLiteral("Cloud")))); // by then the present one
}

TEST_F(RelocationTest, AFolderOnAnotherDeviceTakesTheLibrary)
{
    const QTemporaryDir memory(QStringLiteral("/dev/shm/quire-XXXXXX"));
    struct stat here
    {
    };
    struct stat there
    {
    };
    if (!memory.isValid() || ::stat(QFile::encodeName(memory.path()).constData(), &there) != 0
        || ::stat(QFile::encodeName(defaultFolder).constData(), &here) != 0 || here.st_dev == there.st_dev) {
        GTEST_SKIP() << "needs a second device";
    }
    EXPECT_TRUE(relocate(memory.path()));
    EXPECT_EQ(titlesIn(memory.path()), QStringList{QStringLiteral("One")});
    QFile::remove(databaseIn(defaultFolder));
    EXPECT_TRUE(relocate(defaultFolder));
}

TEST_F(RelocationTest, AFolderWithALibraryOfItsOwnIsSwitchedToWithoutACopy)
{
    makeLibrary(folder, QStringLiteral("Theirs"));
    EXPECT_FALSE(relocate(folder));
    EXPECT_EQ(await(store->databaseURL()), databaseIn(folder));
    EXPECT_EQ(titles(), QStringList{QStringLiteral("Theirs")});
    EXPECT_EQ(titlesIn(defaultFolder), QStringList{QStringLiteral("One")});
    reopen();
    EXPECT_EQ(titles(), QStringList{QStringLiteral("Theirs")});
}

TEST_F(RelocationTest, CoversOfTheOldLibraryAreNotShownInTheNewOne)
{
    // The same row, and as many bytes.
    const CoverBytes ours(QByteArray(1000, 'a'));
    await(store->storeArtwork(
        ours, {.kind = ArtworkKind::Book, .id = 1, .title = QStringLiteral("One")}, QStringLiteral("manual")));
    EXPECT_EQ(await(store->books()).value(0).coverData, ours);
    makeLibrary(folder, QStringLiteral("Theirs"), QByteArray(1000, 'b'));
    relocate(folder);
    EXPECT_EQ(await(store->books()).value(0).coverData, CoverBytes(QByteArray(1000, 'b')));
}

TEST_F(RelocationTest, AStoreWithAFolderOfItsOwnMovesAndWritesNoRecord)
{
    makeLibrary(file(QStringLiteral("own")), QStringLiteral("Own"));
    LibraryStore own(clock, file(QStringLiteral("own")));
    await(own.prepare(false));
    EXPECT_TRUE(await(own.relocateDatabase(folder)));
    EXPECT_EQ(await(own.databaseURL()), databaseIn(folder));
    EXPECT_FALSE(QFile::exists(QuireLibraryLocation::recordURL()));
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("own/Library Location.json"))));
}

TEST_F(RelocationTest, AStoreWithAFolderOfItsOwnDoesNotReadTheRecord)
{
    relocate(folder);
    await(store->shutdown());
    LibraryStore own(clock, file(QStringLiteral("own")));
    EXPECT_EQ(await(own.databaseURL()), databaseIn(file(QStringLiteral("own"))));
}

TEST_F(RelocationTest, AClosedLibraryIsOpenInItsNewFolder)
{
    await(store->shutdown());
    EXPECT_TRUE(relocate(folder));
    EXPECT_EQ(titles(), QStringList{QStringLiteral("One")});
}

TEST_F(RelocationTest, AFolderThatIsNotAbsoluteIsRefused)
{
    for (const QString &name : {QString(), QStringLiteral("Reading"), QStringLiteral("~/Reading"),
             QStringLiteral("./Reading"), QStringLiteral("file:///tmp")}) {
        EXPECT_EQ(thrownBy<DatabaseError>([&] { relocate(name); }), notAbsolute);
    }
    expectAsBefore(folder);
}

TEST_F(RelocationTest, AFileInThePlaceOfTheFolderIsAFileFailure)
{
    fill(folder, "a file");
    EXPECT_EQ(thrownBy<FileError>([&] { relocate(folder); })->path(), folder);
    EXPECT_EQ(thrownBy<FileError>([&] { relocate(folder + QStringLiteral("/below")); })->code(), ENOTDIR);
    EXPECT_EQ(bytesOf(folder), "a file");
    expectAsBefore(file(QStringLiteral("none")));
}

TEST_F(RelocationTest, AParentThatTakesNoFoldersIsAFileFailure)
{
    QDir().mkpath(file(QStringLiteral("locked")));
    ::chmod(QFile::encodeName(file(QStringLiteral("locked"))).constData(), 0555);
    {
        const UnprivilegedUser user(place.path());
        EXPECT_EQ(thrownBy<FileError>([&] { relocate(file(QStringLiteral("locked/Reading"))); })->code(), EACCES);
    }
    expectAsBefore(file(QStringLiteral("locked/Reading")));
}

TEST_F(RelocationTest, AFolderThatAnotherMachineUsesIsBusyAndNothingElseHappens)
{
    const QString locked = folder + QStringLiteral("/.Quire Locks/Quire Library.lock");
    DurableFile::createFolder(locked);
    const QByteArray owner = R"({"token":"7F0C8A5E-2E0B-4B3C-9A55-0C8F6B1D2E3F","processID":1,"hostName":"Attic",)"
                             R"("hostID":"platform:00","createdAt":800000000})";
    fill(locked + QStringLiteral("/Owner.json"), owner);
    // The clock of the test stands still; the date of a file does not.
    QFile file(locked + QStringLiteral("/Owner.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(
        file.setFileTime(QDateTime::fromMSecsSinceEpoch(
                             std::chrono::floor<std::chrono::milliseconds>(clock.now()).time_since_epoch().count()),
            QFileDevice::FileModificationTime));
    file.close();

    EXPECT_EQ(thrownBy<DatabaseError>([&] { relocate(folder); }),
        DatabaseError(Kind::LibraryBusy,
            QStringLiteral("This Quire library is already in use. It is currently open on Attic. Close Quire on the "
                           "other Mac, allow the cloud service to finish syncing, and then open Quire again.")));
    EXPECT_EQ(namesIn(folder), QStringList{QStringLiteral(".Quire Locks")});
    EXPECT_EQ(bytesOf(locked + QStringLiteral("/Owner.json")), owner);
    QDir(locked).removeRecursively();
    expectAsBefore(folder);
}

TEST_F(RelocationTest, ALibraryThatDoesNotCopyWholeStaysWhereItIs)
{
    await(store->shutdown());
    damage(databaseIn(defaultFolder));
    await(store->prepare(false));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { relocate(folder); }),
        DatabaseError(
            Kind::InvalidLibraryLocation, QStringLiteral("The copied Quire database failed its integrity check.")));
    EXPECT_EQ(namesIn(folder), QStringList{QStringLiteral(".Quire Locks")});
    EXPECT_EQ(await(store->databaseURL()), databaseIn(defaultFolder));
}

TEST_F(RelocationTest, ALibraryThatIsNotThereCannotBeMoved)
{
    LibraryStore none(clock, file(QStringLiteral("none")));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { await(none.relocateDatabase(folder)); }),
        DatabaseError(Kind::Backup, QStringLiteral("The source database could not be opened.")));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { await(none.books()); }), DatabaseError(Kind::MissingDatabase));
    EXPECT_EQ(namesIn(folder), QStringList{QStringLiteral(".Quire Locks")});
}

TEST_F(RelocationTest, ALinkToNothingInThePlaceOfTheFileIsNotReplaced)
{
    QDir().mkpath(folder);
    ASSERT_TRUE(QFile::link(file(QStringLiteral("none")), databaseIn(folder)));
    EXPECT_EQ(thrownBy<FileError>([&] { relocate(folder); })->code(), EEXIST);
    expectAsBefore(folder, {QStringLiteral("quire.db")});
}

TEST_F(RelocationTest, ACopyThatDoesNotOpenUnderItsOwnNameIsTakenAwayAgain)
{
    QDir().mkpath(folder + QStringLiteral("/quire.db-journal/x"));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { relocate(folder); })->text(), QStringLiteral("disk I/O error"));
    expectAsBefore(folder, {QStringLiteral("quire.db-journal")});
}

TEST_F(RelocationTest, ADamagedLibraryInTheFolderIsRefusedAndLeftAlone)
{
    makeLibrary(folder, QStringLiteral("Theirs"));
    damage(databaseIn(folder));
    const QByteArray before = bytesOf(databaseIn(folder));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { relocate(folder); }), existingIsDamaged);
    EXPECT_EQ(bytesOf(databaseIn(folder)), before);
    QDir().remove(folder + QStringLiteral("/Cloud Library State"));
    expectAsBefore(folder, [&] {
        QStringList names = namesIn(folder);
        names.removeAll(QStringLiteral(".Quire Locks"));
        return names;
    }());
}

TEST_F(RelocationTest, WhatIsNoLibraryOfThisVersionIsRefusedAndLeftAlone)
{
    makeLibrary(folder, QStringLiteral("Theirs"));
    const QByteArray whole = bytesOf(databaseIn(folder));
    SQLiteDatabase(databaseIn(folder)).executeScript("PRAGMA user_version = 99");
    const QByteArray newer = bytesOf(databaseIn(folder));
    const struct
    {
        QByteArray bytes;
        DatabaseError failure;
    } cases[] = {
        {QByteArray("Not a library at all. ").repeated(1'000),
            DatabaseError(Kind::Execute, QStringLiteral("file is not a database"))},
        {whole.first(whole.size() / 2),
            DatabaseError(Kind::Execute, QStringLiteral("database disk image is malformed"))},
        {newer,
            DatabaseError(
                Kind::Open, QStringLiteral("This library was created by a newer version of Quire (schema 99)."))},
    };
    for (const auto &[bytes, failure] : cases) {
        fill(databaseIn(folder), bytes);
        EXPECT_EQ(thrownBy<DatabaseError>([&] { relocate(folder); }), failure);
        EXPECT_EQ(bytesOf(databaseIn(folder)), bytes);
        EXPECT_EQ(titles(), QStringList{QStringLiteral("One")});
    }
}

TEST_F(RelocationTest, AFolderInThePlaceOfTheFileIsRefused)
{
    QDir().mkpath(databaseIn(folder));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { relocate(folder); })->kind(), Kind::Open);
    expectAsBefore(folder, {QStringLiteral("quire.db")});
}

TEST_F(RelocationTest, ARecordThatCannotBeWrittenLeavesTheOldLibraryInUseAndNoCopy)
{
    QDir().mkpath(QuireLibraryLocation::recordURL());
    EXPECT_EQ(thrownBy<FileError>([&] { relocate(folder); })->path(), QuireLibraryLocation::recordURL());
    expectAsBefore(folder);
}

TEST_F(RelocationTest, ARecordThatCannotBeWrittenLeavesAnAdoptedLibraryWhereItIs)
{
    makeLibrary(folder, QStringLiteral("Theirs"));
    QDir().mkpath(QuireLibraryLocation::recordURL());
    EXPECT_THROW(relocate(folder), FileError);
    EXPECT_EQ(titlesIn(folder), QStringList{QStringLiteral("Theirs")});
    EXPECT_EQ(titles(), QStringList{QStringLiteral("One")});
}

TEST_F(RelocationTest, ARecordWhoseSyncFailedNamesTheOldFolderAgain)
{
    // Takes a rename, and cannot be opened to be synced.
    ::chmod(QFile::encodeName(defaultFolder).constData(), 0333);
    ::chmod(QFile::encodeName(place.path()).constData(), 0777);
    {
        const UnprivilegedUser user(data.path());
        EXPECT_EQ(thrownBy<FileError>([&] { relocate(folder); })->code(), EACCES);
        EXPECT_TRUE(QFile::exists(QuireLibraryLocation::recordURL()));
    }
    ::chmod(QFile::encodeName(defaultFolder).constData(), 0755);
    expectAsBefore(folder);
}

TEST_F(RelocationTest, CopiesThatKilledMovesLeftAreTakenAwayByTheNext)
{
    const QString left = folder + QStringLiteral("/Quire Database Migration 7F0C8A5E-2E0B-4B3C-9A55-0C8F6B1D2E3F.db");
    const QString ofTheReader = folder + QStringLiteral("/Quire Database Migration.db");
    QDir().mkpath(folder);
    for (const QString &path : {left, QString(left + QStringLiteral("-journal")), ofTheReader}) {
        fill(path, "half a page");
    }
    EXPECT_TRUE(relocate(folder));
    EXPECT_EQ(namesIn(folder),
        (QStringList{QStringLiteral(".Quire Locks"), QFileInfo(ofTheReader).fileName(), QStringLiteral("quire.db")}));
}

// Lineage ---------------------------------------------------------------------------

TEST_F(RelocationTest, AnEmptyFileWhereALibraryIsRememberedIsNotAdopted)
{
    relocate(folder);
    QFile::remove(databaseIn(defaultFolder));
    relocate(defaultFolder);
    fill(databaseIn(folder), {}); // as a sync service has it that has yet to fetch the file
    EXPECT_EQ(thrownBy<QuireReliabilityError>([&] { relocate(folder); }).value(),
        QuireReliabilityError::cloudLibraryRolledBack());
    EXPECT_EQ(QFileInfo(databaseIn(folder)).size(), 0);
    expectAsBefore(folder, {QStringLiteral("quire.db")});
}

TEST_F(RelocationTest, AnEmptyFileThatNobodyRemembersBecomesALibrary)
{
    QDir().mkpath(folder);
    fill(databaseIn(folder), {});
    EXPECT_FALSE(relocate(folder));
    EXPECT_TRUE(titles().isEmpty());
}

TEST_F(RelocationTest, AFolderThatIsGoneAfterAnUncleanEndIsNotTakenForANewLibrary)
{
    relocate(folder);
    store.reset(); // ends without shutdown()
    QDir(folder).removeRecursively(); // a disk that is not there yet
    store = std::make_unique<LibraryStore>(clock);
    EXPECT_EQ(thrownBy<QuireReliabilityError>([&] { await(store->prepare(false)); }).value(),
        QuireReliabilityError::cloudLibraryDiverged());
    EXPECT_FALSE(QFile::exists(databaseIn(folder)));
}

TEST_F(RelocationTest, AnOlderStateInAPlaceOfANewerOneIsNoRollbackAfterAnUncleanEnd)
{
    relocate(folder);
    addBook(QStringLiteral("Two"));
    reopen(); // remembers the place with two titles
    relocate(defaultFolder); // the state before the first move
    QFile::remove(databaseIn(folder));
    EXPECT_TRUE(relocate(folder));
    store.reset();
    store = std::make_unique<LibraryStore>(clock);
    await(store->prepare(true));
    EXPECT_EQ(titles(), QStringList{QStringLiteral("One")});
}
