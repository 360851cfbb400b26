#include "ModelTest.h"

#include "sources/AudibleLibraryLocation.h"
#include "testing/AudibleLibraryFile.h"
#include "testing/OwnVariable.h"
#include "testing/TestFiles.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QSignalSpy>

namespace quire {

namespace {

using testing::await;
using ::testing::Contains;
using ::testing::ElementsAre;
using testing::eventually;
using ::testing::IsEmpty;
using ::testing::Not;

class AppModelAudible : public ModelTest
{
protected:
    AppModelAudible() { QDir().mkpath(folder); }

    // An Audible library of these titles in the folder, and the folder granted.
    void serveLibrary(const QStringList &titles)
    {
        testing::AudibleLibraryFile file(database);
        for (const QString &title : titles) {
            file.addTitle(QStringLiteral("ASIN of ") + title, title);
        }
    }

    void grant() { setStored(QStringLiteral("audibleLibraryPath"), folder); }
    void switchAutomaticSyncOff() { setStored(QStringLiteral("automaticAudibleSync"), QStringLiteral("0")); }

    // A started model that did not sync by itself.
    void startManually()
    {
        switchAutomaticSyncOff();
        startModel();
    }

    QStringList titles() const
    {
        QStringList result;
        for (const Audiobook &audiobook : model->audiobooks()) {
            result.append(audiobook.title);
        }
        return result;
    }

    QTemporaryDir home;
    testing::OwnVariable ownHome{"HOME", home.path()};
    QString folder = library.file(QStringLiteral("Audible"));
    QString database = folder + QStringLiteral("/x-library.sqlite");
};

const QString noDatabase = QStringLiteral("The selected Audible folder does not contain the local library database.");

} // namespace

// Availability. ---------------------------------------------------------------------

TEST_F(AppModelAudible, AStartTellsWhetherTheLibraryCanBeRead)
{
    serveLibrary({});
    grant();
    startManually();
    EXPECT_TRUE(model->audibleAvailability().isInstalled());
    EXPECT_EQ(model->audibleAvailability().libraryURL->toQUrl().toLocalFile(), database);
}

TEST_F(AppModelAudible, AReloadLooksAgain)
{
    startModel();
    EXPECT_FALSE(model->audibleAvailability().isInstalled());
    serveLibrary({});
    grant();
    QSignalSpy changes(model.get(), &AppModel::audibleAvailabilityChanged);
    await(model->reload());
    EXPECT_TRUE(model->audibleAvailability().libraryURL.has_value());
    EXPECT_EQ(changes.size(), 1);
    await(model->reload());
    EXPECT_EQ(changes.size(), 1);
}

// The sync at the start. --------------------------------------------------------------

TEST_F(AppModelAudible, AStartSyncsByItself)
{
    serveLibrary({QStringLiteral("Dune"), QStringLiteral("Emma")});
    grant();
    startModel();
    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("audibleSync running 1"), QStringLiteral("audibleSync succeeded 1")));
    EXPECT_EQ(model->audiobooks().size(), 2);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Audible synced automatically: 2 titles"));
    EXPECT_FALSE(model->isWorking());
}

TEST_F(AppModelAudible, AStartSyncsAfterGoodreads)
{
    serveLibrary({QStringLiteral("Dune")});
    grant();
    configureGoodreads();
    serveFeed({QStringLiteral("Emma")});
    startModel();
    EXPECT_THAT(history(),
        ElementsAre(QStringLiteral("goodreadsSync running 1"), QStringLiteral("goodreadsSync succeeded 1"),
            QStringLiteral("audibleSync running 1"), QStringLiteral("audibleSync succeeded 1")));
}

TEST_F(AppModelAudible, AStartDoesNotSyncWhatIsSwitchedOff)
{
    serveLibrary({QStringLiteral("Dune")});
    grant();
    startManually();
    EXPECT_THAT(history(), IsEmpty());
}

TEST_F(AppModelAudible, AStartDoesNotSyncAHiddenSection)
{
    serveLibrary({QStringLiteral("Dune")});
    grant();
    setStored(QStringLiteral("showAudioSection"), QStringLiteral("0"));
    startModel();
    EXPECT_THAT(history(), IsEmpty());
}

TEST_F(AppModelAudible, AStartDoesNotSyncAFolderWithoutADatabase)
{
    grant();
    startModel();
    EXPECT_TRUE(model->audibleAvailability().isInstalled());
    EXPECT_THAT(history(), IsEmpty());
}

TEST_F(AppModelAudible, AFailedAutomaticSyncShowsAToastAndNoNotice)
{
    grant();
    testing::putFile(database, QByteArray(8192, 'x'));
    startModel();
    const QString toast = model->toastMessage().value_or(QString());
    EXPECT_TRUE(toast.startsWith(QStringLiteral("Automatic Audible sync failed: "))) << qPrintable(toast);
    EXPECT_TRUE(toast.endsWith(QStringLiteral("file is not a database"))) << qPrintable(toast);
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(lastPause(), std::chrono::seconds(7));
}

// A sync by hand. ---------------------------------------------------------------------

TEST_F(AppModelAudible, AManualSyncTellsWhatItDid)
{
    serveLibrary({QStringLiteral("Dune"), QStringLiteral("Emma")});
    grant();
    startManually();
    const auto running = model->synchronizeAudible(false);
    EXPECT_TRUE(model->isWorking());
    EXPECT_EQ(model->activityLabel(), QStringLiteral("Syncing Audible…"));
    EXPECT_EQ(model->activeSidebarOperation(), SidebarOperation::AudibleSync);
    ASSERT_TRUE(eventually([this] { return !model->isWorking(); }));
    EXPECT_EQ(model->activityLabel(), QString());
    EXPECT_EQ(model->activeSidebarOperation(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Audible synced: 2 added, 0 refreshed"));
    EXPECT_EQ(lastPause(), std::chrono::milliseconds(3200));
    EXPECT_EQ(model->audiobooks().size(), 2);

    await(model->synchronizeAudible(false));
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Audible synced: 0 added, 2 refreshed"));
}

TEST_F(AppModelAudible, AFailedManualSyncShowsANoticeAndLooksAgain)
{
    serveLibrary({});
    grant();
    startManually();
    ASSERT_TRUE(model->audibleAvailability().libraryURL);
    QFile::remove(database);
    await(model->synchronizeAudible(false));
    EXPECT_EQ(model->notice(), AppNotice::error(QStringLiteral("Audible Sync Failed"), noDatabase));
    EXPECT_THAT(logLines(), Contains(QStringLiteral("Audible sync failed: ") + noDatabase));
    EXPECT_TRUE(model->audibleAvailability().isInstalled());
    EXPECT_EQ(model->audibleAvailability().libraryURL, std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
    EXPECT_FALSE(model->isWorking());
}

TEST_F(AppModelAudible, ASyncWithoutSettingsForgetsTheAvailability)
{
    serveLibrary({});
    grant();
    startManually();
    library.executeScript("DROP TABLE settings");
    await(model->synchronizeAudible(false));
    EXPECT_EQ(model->notice()->title, QStringLiteral("Audible Sync Failed"));
    EXPECT_EQ(model->audibleAvailability(), AudibleAppAvailability());
    EXPECT_FALSE(model->isWorking());
}

TEST_F(AppModelAudible, ASyncThatIsTurnedAwayIsSilent)
{
    serveLibrary({QStringLiteral("Dune")});
    grant();
    startManually();
    const auto first = model->synchronizeAudible(false);
    await(model->synchronizeAudible(false));
    ASSERT_TRUE(eventually([this] { return model->audiobooks().size() == 1; }));
    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("audibleSync running 1"), QStringLiteral("audibleSync succeeded 1")));
}

TEST_F(AppModelAudible, AModelMayDieInTheMiddleOfASync)
{
    serveLibrary({QStringLiteral("Dune")});
    grant();
    startManually();
    const auto running = model->synchronizeAudible(false);
    model.reset();
    EXPECT_TRUE(eventually([&running] { return running.isReady(); }));
}

TEST_F(AppModelAudible, AShutdownInTheMiddleOfASyncTellsNothing)
{
    serveLibrary({QStringLiteral("Dune")});
    grant();
    startManually();
    const auto running = model->synchronizeAudible(false);
    await(model->shutdown());
    EXPECT_TRUE(eventually([&running] { return running.isReady(); }));
    EXPECT_EQ(model->notice(), std::nullopt);
}

// All of them. ------------------------------------------------------------------------

TEST_F(AppModelAudible, AFullSyncReadsAudibleToo)
{
    serveLibrary({QStringLiteral("Dune")});
    grant();
    startManually();
    await(model->synchronizeAll());
    EXPECT_EQ(titles(), QStringList({QStringLiteral("Dune")}));
    EXPECT_THAT(
        logLines(), Not(Contains(QStringLiteral("Sync skipped Audible because local library access is unavailable."))));
    EXPECT_FALSE(model->isSyncingAll());
}

TEST_F(AppModelAudible, AFullSyncReadsAudibleThoughItsSectionIsHiddenAndGoodreadsFailed)
{
    serveLibrary({QStringLiteral("Dune")});
    grant();
    setStored(QStringLiteral("showAudioSection"), QStringLiteral("0"));
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startManually();
    await(model->synchronizeAll()); // the feed is not there
    EXPECT_EQ(titles(), QStringList({QStringLiteral("Dune")}));
    EXPECT_FALSE(logLines().filter(QStringLiteral("Goodreads sync failed: ")).isEmpty());
}

TEST_F(AppModelAudible, AFullSyncSkipsWhatCannotBeRead)
{
    grant(); // a folder without a database
    startManually();
    await(model->synchronizeAll());
    EXPECT_THAT(history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing failed 1")));
    EXPECT_EQ(logLines().last(), QStringLiteral("Sync skipped Audible because local library access is unavailable."));
}

// Granting access. --------------------------------------------------------------------

TEST_F(AppModelAudible, TheFolderIsAskedForInItsWords)
{
    startModel();
    await(model->grantAudibleLibraryAccess()); // the reader cancels
    const FolderQuestion asked{QStringLiteral("Grant Quire Access to the Audible Library"),
        QStringLiteral(
            "Select the “Application Support” folder shown here. Quire will only read Audible library information."),
        QStringLiteral("Grant Access"), home.path(), false};
    EXPECT_EQ(desktop.questions, QList{asked});
    EXPECT_EQ(stored(QStringLiteral("audibleLibraryPath")), std::nullopt);
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
}

TEST_F(AppModelAudible, TheQuestionBeginsAboveTheContainerWhereThereIsOne)
{
    QDir().mkpath(AudibleLibraryLocation::containerFolder());
    startModel();
    await(model->grantAudibleLibraryAccess());
    EXPECT_EQ(desktop.questions.last().startFolder,
        home.filePath(QStringLiteral("Library/Containers/com.audible.iphone/Data/Library")));
}

TEST_F(AppModelAudible, AGrantedFolderIsRememberedAndLookedInto)
{
    serveLibrary({QStringLiteral("Dune")});
    setStored(QStringLiteral("audibleLibraryBookmark"), QStringLiteral("b2xk"));
    startModel();
    desktop.answer = folder;
    await(model->grantAudibleLibraryAccess());
    EXPECT_EQ(stored(QStringLiteral("audibleLibraryPath")), folder);
    EXPECT_EQ(stored(QStringLiteral("audibleLibraryBookmark")), std::nullopt); // the empty text
    EXPECT_TRUE(model->audibleAvailability().libraryURL.has_value());
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Audible library access granted"));
    EXPECT_EQ(lastPause(), std::chrono::milliseconds(3200));
}

TEST_F(AppModelAudible, AFolderWithoutADatabaseIsTheWrongOneAndNothingIsStored)
{
    startModel();
    desktop.answer = folder;
    await(model->grantAudibleLibraryAccess());
    EXPECT_EQ(model->notice(),
        AppNotice::error(QStringLiteral("Wrong Audible Folder"),
            QStringLiteral(
                "Choose Audible’s “Application Support” folder. It contains the file ending in “-library.sqlite”.")));
    EXPECT_EQ(stored(QStringLiteral("audibleLibraryPath")), std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
}

TEST_F(AppModelAudible, AGrantThatCannotBeSavedSaysSo)
{
    serveLibrary({});
    startModel();
    library.executeScript("DROP TABLE settings");
    desktop.answer = folder;
    await(model->grantAudibleLibraryAccess());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Audible Access Could Not Be Saved"));
    EXPECT_TRUE(model->notice()->message.contains(QStringLiteral("no such table")));
    EXPECT_EQ(model->toastMessage(), std::nullopt);
}

} // namespace quire
