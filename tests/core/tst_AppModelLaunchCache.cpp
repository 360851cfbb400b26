// Starts with the look and the titles of the run before.

#include "ModelTest.h"

#include "core/QuireLaunchCache.h"
#include "persistence/QuireLibraryLocation.h"
#include "reliability/QuireLibraryLease.h"
#include "testing/OwnDataDirectory.h"
#include "testing/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QThreadPool>

#include <gmock/gmock.h>

namespace quire {

namespace {

using testing::await;
using testing::bytesOf;
using ::testing::Contains;
using testing::eventually;
using ::testing::Not;
using testing::putFile;

class AppModelLaunchCache : public ModelTest
{
protected:
    AppModelLaunchCache() { QuireLibraryLocation::save(library.folder(), QuireLibraryLocation::recordURL()); }

    QString appearanceFile() const { return library.file(QStringLiteral("Launch Appearance.plist")); }
    QString libraryFile() const { return library.file(QStringLiteral("Launch Library.plist")); }

    // A whole run of the program, until it has ended.
    void runOnce()
    {
        startWithCache();
        ASSERT_TRUE(model->isReady());
        end();
    }

    void startWithCache()
    {
        makeModel(true);
        await(model->start());
    }

    void end()
    {
        await(model->shutdown());
        model.reset(); // the last write is done
        settle();
    }

    // A library that opens no more, as another program holds it.
    void takeLibrary()
    {
        rival = std::make_unique<QuireLibraryLease>(library.folder(), clock);
        rival->acquire();
    }

    void saveCache(const QString &databasePath, qint64 titles)
    {
        QuireLibrarySnapshot snapshot{.databasePath = databasePath};
        for (qint64 id = 1; id <= titles; ++id) {
            Book book;
            book.id = id;
            book.title = QStringLiteral("Cached");
            book.shelf = QStringLiteral("read");
            book.notes = QString(2'000, u'n');
            snapshot.books.append(book);
        }
        cache.save({}, snapshot);
    }

    // Until all that was begun on other threads has come back.
    static void settleAll()
    {
        QThreadPool::globalInstance()->waitForDone();
        settle();
    }

    static inline const QString displayed = QStringLiteral("Displayed asynchronously loaded library cache: ");

    testing::OwnDataDirectory dataDirectory; // tells of the library's folder
    QuireLaunchCache cache{library.folder()};
    std::unique_ptr<QuireLibraryLease> rival;
};

TEST_F(AppModelLaunchCache, TheTitlesOfTheLastRunAreShownWhenTheLibraryCannotBeOpened)
{
    addBook(QStringLiteral("Emma"));
    addBook(QStringLiteral("Momo"), QStringLiteral("currently-reading"));
    addAudiobook(QStringLiteral("Dune"));
    setStored(QStringLiteral("selectedTab"), QStringLiteral("books"));
    runOnce();
    takeLibrary();

    startWithCache();

    ASSERT_TRUE(eventually([this] { return !model->books().isEmpty(); }));
    EXPECT_FALSE(model->isReady());
    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Quire Could Not Open"));
    EXPECT_EQ(model->selectedTab(), LibraryTab::Books);
    EXPECT_EQ(titlesShown(), QStringList{QStringLiteral("Emma")});
    EXPECT_EQ(model->audiobooks().size(), 1);
    EXPECT_TRUE(model->books().first().coverData);
    EXPECT_EQ(model->goodreadsStatistics().read, 1);
    ASSERT_TRUE(model->currentBook());
    EXPECT_EQ(model->currentBook()->title, QStringLiteral("Momo"));
    EXPECT_THAT(logLines(), Contains(displayed + QStringLiteral("2 books, 1 audiobooks.")));
    rival->release();
}

TEST_F(AppModelLaunchCache, TheLibraryItselfReplacesWhatWasCached)
{
    addBook(QStringLiteral("Emma"));
    runOnce();
    addBook(QStringLiteral("Momo"));

    startWithCache();
    settleAll();

    EXPECT_EQ(model->books().size(), 2);
    end();
    EXPECT_EQ(cache.library(library.databasePath())->books.size(), 2);
}

TEST_F(AppModelLaunchCache, WhatIsReadTooLateIsDropped)
{
    saveCache(library.databasePath(), 20'000); // longer to read than an empty library to open
    makeModel(true);
    QStringList wrong;
    QObject::connect(model.get(), &AppModel::booksChanged, model.get(), [&] {
        if (model->isReady() && !model->books().isEmpty()) {
            wrong.append(model->books().first().title);
        }
    });

    await(model->start());
    ASSERT_TRUE(model->isReady());
    settleAll();

    EXPECT_EQ(wrong, QStringList());
    EXPECT_TRUE(model->books().isEmpty());
}

TEST_F(AppModelLaunchCache, TheTitlesOfAnotherLibraryAreNeverShown)
{
    saveCache(QStringLiteral("/elsewhere/quire.db"), 1);
    takeLibrary();
    makeModel(true);
    const QSignalSpy books(model.get(), &AppModel::booksChanged);

    await(model->start());
    settleAll();

    EXPECT_EQ(books.size(), 0);
    EXPECT_THAT(logLines(),
        Not(Contains(::testing::ResultOf([](const QString &line) { return line.startsWith(displayed); }, true))));
    rival->release();
}

TEST_F(AppModelLaunchCache, TheLibraryIsKnownByItsPathHoweverThatIsWritten)
{
    const QString roundabout
        = library.folder() + QStringLiteral("/../") + QDir(library.folder()).dirName() + QStringLiteral("//./");
    QuireLibraryLocation::save(roundabout, QuireLibraryLocation::recordURL());
    saveCache(library.databasePath(), 1);
    takeLibrary();
    makeModel(true);

    await(model->start());

    EXPECT_TRUE(eventually([this] { return model->books().size() == 1; }));
    rival->release();
}

TEST_F(AppModelLaunchCache, ALibraryThatCannotBeReadIsPassedOverInSilence)
{
    putFile(libraryFile(), "garbage");
    takeLibrary();
    makeModel(true);

    await(model->start());
    settleAll();

    EXPECT_TRUE(model->books().isEmpty());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Quire Could Not Open"));
    const auto lines = logLines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines.first().startsWith(QStringLiteral("Startup failed: ")));
    rival->release();
}

TEST_F(AppModelLaunchCache, AStartThatIsEndedShowsNothingMore)
{
    saveCache(library.databasePath(), 10);
    makeModel(true);
    const QSignalSpy books(model.get(), &AppModel::booksChanged);

    auto starting = model->start();
    auto ending = model->shutdown();
    await(std::move(ending));
    await(std::move(starting));
    settleAll();

    EXPECT_EQ(books.size(), 0);
}

TEST_F(AppModelLaunchCache, AModelMayDieWhileTheCacheIsRead)
{
    saveCache(library.databasePath(), 1'000);
    makeModel(true);
    auto starting = model->start();

    model.reset();
    settleAll();

    makeModel(true);
    await(model->start());
    EXPECT_TRUE(model->isReady()); // nothing of the first holds the library
}

TEST_F(AppModelLaunchCache, TheLookIsThereBeforeAnythingElse)
{
    const QuireLaunchPreferences look{
        .sidebarAppearance = SidebarAppearance::Pine,
        .interfaceFont = InterfaceFontChoice::Georgia,
        .accentColor = AccentColorChoice::Cabin,
        .usesCustomAccentColor = true,
        .customAccentColor = CustomAccentColor(0.25, 0.5, 1),
        .showBooksSection = true,
        .showAudioSection = false,
        .selectedTab = LibraryTab::Books,
    };
    cache.save(look, std::nullopt);

    makeModel(true);

    EXPECT_EQ(model->settings().sidebarAppearance, SidebarAppearance::Pine);
    EXPECT_EQ(model->settings().interfaceFont, InterfaceFontChoice::Georgia);
    EXPECT_EQ(model->settings().accentColor, AccentColorChoice::Cabin);
    EXPECT_TRUE(model->settings().usesCustomAccentColor);
    EXPECT_EQ(model->settings().customAccentColor, CustomAccentColor(0.25, 0.5, 1));
    EXPECT_TRUE(model->settings().showBooksSection);
    EXPECT_FALSE(model->settings().showAudioSection);
    EXPECT_EQ(model->selectedTab(), LibraryTab::Books);
}

TEST_F(AppModelLaunchCache, ARestoredTabOutranksTheOneOfTheLibrary)
{
    cache.save({.selectedTab = LibraryTab::Audio}, std::nullopt);
    setStored(QStringLiteral("selectedTab"), QStringLiteral("books"));

    startWithCache();

    EXPECT_EQ(model->selectedTab(), LibraryTab::Audio);
    end();
    EXPECT_EQ(stored(QStringLiteral("selectedTab")), QStringLiteral("books")); // nobody changed it
}

TEST_F(AppModelLaunchCache, ALookThatCannotBeReadLeavesTheDefaultsAndTheTabToTheLibrary)
{
    putFile(appearanceFile(), "garbage");
    setStored(QStringLiteral("selectedTab"), QStringLiteral("books"));

    makeModel(true);
    EXPECT_EQ(model->settings(), SettingsSnapshot());
    EXPECT_EQ(model->selectedTab(), LibraryTab::Insights);
    await(model->start());

    EXPECT_EQ(model->selectedTab(), LibraryTab::Books);
}

TEST_F(AppModelLaunchCache, AChangeOfLookRewritesTheSmallFileAlone)
{
    addBook(QStringLiteral("Emma"));
    startWithCache();
    ASSERT_TRUE(eventually([this] { return !model->artworkStatus().startsWith(u"Checking"); }));
    ASSERT_TRUE(eventually([this] { return cache.library(library.databasePath()).has_value(); }));
    putFile(libraryFile(), "untouched");

    await(model->saveSidebarAppearance(SidebarAppearance::Fjord));
    model->previewAccentAppearance(AccentColorChoice::Pine, true, CustomAccentColor(1, 0, 0));
    model->setSelectedTab(LibraryTab::Audio);
    end();

    EXPECT_EQ(bytesOf(libraryFile()), "untouched");
    const auto look = cache.preferences();
    ASSERT_TRUE(look);
    EXPECT_EQ(look->sidebarAppearance, SidebarAppearance::Fjord);
    EXPECT_EQ(look->accentColor, AccentColorChoice::Pine);
    EXPECT_EQ(look->customAccentColor, CustomAccentColor(1, 0, 0));
    EXPECT_EQ(look->selectedTab, LibraryTab::Audio);
}

TEST_F(AppModelLaunchCache, ALookThatCouldNotBeStoredIsNotThatOfTheNextStart)
{
    startWithCache();
    library.execute("CREATE TRIGGER full BEFORE INSERT ON settings BEGIN SELECT RAISE(ABORT, 'no room'); END");

    await(model->saveSidebarAppearance(SidebarAppearance::Fjord));
    await(model->saveAccentAppearance(AccentColorChoice::Pine, true, CustomAccentColor(1, 0, 0)));
    end();

    const auto look = cache.preferences();
    ASSERT_TRUE(look);
    EXPECT_EQ(look->sidebarAppearance, SidebarAppearance::Snow);
    EXPECT_EQ(look->accentColor, AccentColorChoice::Fjord);
    EXPECT_FALSE(look->usesCustomAccentColor);
}

TEST_F(AppModelLaunchCache, WithoutAFolderForItNothingIsReadOrWritten)
{
    saveCache(library.databasePath(), 1);
    cache.save({.selectedTab = LibraryTab::Audio}, std::nullopt);
    const QByteArray look = bytesOf(appearanceFile());
    const QByteArray titles = bytesOf(libraryFile());

    startModel();
    EXPECT_EQ(model->selectedTab(), LibraryTab::Insights);
    EXPECT_TRUE(model->books().isEmpty());
    model->setSelectedTab(LibraryTab::Books);
    end();

    EXPECT_EQ(bytesOf(appearanceFile()), look);
    EXPECT_EQ(bytesOf(libraryFile()), titles);
    EXPECT_FALSE(QFile::exists(sessionFile()));
}

TEST_F(AppModelLaunchCache, AFolderThatTakesNoFileCostsALineOfTheLogAndNothingElse)
{
    QDir().mkpath(appearanceFile());

    startWithCache();

    EXPECT_TRUE(model->isReady());
    EXPECT_EQ(model->notice(), std::nullopt);
    end();
    EXPECT_THAT(logLines(),
        Contains(::testing::ResultOf(
            [](const QString &line) { return line.startsWith(QStringLiteral("Could not save launch cache: ")); },
            true)));
}

} // namespace

} // namespace quire
