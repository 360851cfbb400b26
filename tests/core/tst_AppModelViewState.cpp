#include "ModelTest.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

namespace quire {

namespace {

using namespace std::chrono_literals;
using testing::await;
using ::testing::Contains;
using testing::eventually;
using ::testing::StartsWith;

class AppModelViewState : public ModelTest
{
protected:
    // A model on the tab Books or Audio with a few titles of each kind.
    void startOn(LibraryTab tab)
    {
        addBook(QStringLiteral("Emma"));
        addBook(QStringLiteral("Les Misérables"));
        addBook(QStringLiteral("Middlemarch"), QStringLiteral("to-read"));
        addAudiobook(QStringLiteral("Dune"));
        addAudiobook(QStringLiteral("Momo"), QStringLiteral("did-not-finish"));
        setStored(QStringLiteral("selectedTab"), rawValue(tab));
        startModel();
        runYields();
        books = std::make_unique<QSignalSpy>(model.get(), &AppModel::filteredBooksChanged);
        audiobooks = std::make_unique<QSignalSpy>(model.get(), &AppModel::filteredAudiobooksChanged);
    }

    // Lets tasks that yield once go on, and end.
    void runYields()
    {
        clock.advance(0ns);
        settle();
    }

    std::unique_ptr<QSignalSpy> books; // counts of rebuilds
    std::unique_ptr<QSignalSpy> audiobooks;
};

TEST_F(AppModelViewState, ASelectionRebuildsOnlyTheListOfTheVisibleTab)
{
    startOn(LibraryTab::Books);

    model->setSelectedShelf(LibraryShelf::ToRead);
    EXPECT_EQ(titlesShown(), QStringList{QStringLiteral("Middlemarch")});
    model->setSelectedShelf(LibraryShelf::All);
    model->setSelectedSort(LibrarySort::Title);
    EXPECT_EQ(titlesShown(),
        (QStringList{QStringLiteral("Emma"), QStringLiteral("Les Misérables"), QStringLiteral("Middlemarch")}));
    model->setSearchText(QStringLiteral("miserables"));
    EXPECT_EQ(titlesShown(), QStringList{QStringLiteral("Les Misérables")});

    EXPECT_EQ(books->size(), 3); // the titles were in that order before the sort
    EXPECT_EQ(audiobooks->size(), 0);
}

TEST_F(AppModelViewState, ASortThatChangesNothingKeepsTheListAndThePage)
{
    for (int count = 0; count < 40; ++count) {
        addBook(QStringLiteral("Volume %1").arg(count));
    }
    startOn(LibraryTab::Books);
    model->setBookPage(2);
    const auto before = model->filteredBooks().ids();

    model->setSelectedSort(LibrarySort::Title);
    model->setSearchText(QStringLiteral(" "));

    EXPECT_EQ(model->filteredBooks().ids(), before);
    EXPECT_EQ(model->bookPage(), 2);
    EXPECT_EQ(books->size(), 0);
}

TEST_F(AppModelViewState, AListThatChangesGoesBackToItsFirstPage)
{
    for (int count = 0; count < 40; ++count) {
        addBook(QStringLiteral("Volume %1").arg(count));
    }
    startOn(LibraryTab::Books);
    model->setBookPage(2);

    model->setSearchText(QStringLiteral("vol"));

    EXPECT_EQ(model->bookPage(), 1);
}

TEST_F(AppModelViewState, EveryReloadGoesBackToTheFirstPage)
{
    for (int count = 0; count < 40; ++count) {
        addBook(QStringLiteral("Volume %1").arg(count));
    }
    startOn(LibraryTab::Books);
    model->setBookPage(2);

    await(model->reload());

    EXPECT_EQ(model->bookPage(), 1);
    EXPECT_EQ(books->size(), 1); // replaced although the same titles show
}

TEST_F(AppModelViewState, TypingOnInsightsRebuildsNothing)
{
    startOn(LibraryTab::Insights);

    model->setSearchText(QStringLiteral("emma"));
    model->setSelectedSort(LibrarySort::Title);

    EXPECT_EQ(books->size(), 0);
    EXPECT_EQ(audiobooks->size(), 0);
    EXPECT_EQ(model->filteredBooks().size(), 2);
}

TEST_F(AppModelViewState, ATabSwitchResetsShelfAndSearchWithOneRebuildOfTheNewTab)
{
    startOn(LibraryTab::Books);
    model->setSelectedShelf(LibraryShelf::ToRead);
    model->setSearchText(QStringLiteral("middle"));
    books->clear();
    const QSignalSpy searches(model.get(), &AppModel::searchTextChanged);

    model->setSelectedTab(LibraryTab::Audio);

    EXPECT_EQ(model->selectedShelf(), LibraryShelf::Read);
    EXPECT_EQ(model->searchText(), QString());
    EXPECT_EQ(searches.size(), 1);
    EXPECT_EQ(books->size(), 0); // the old tab keeps its list
    EXPECT_EQ(titlesShown(), QStringList{QStringLiteral("Middlemarch")});
    EXPECT_EQ(audiobooks->size(), 0); // the same title as at the load
    EXPECT_EQ(model->filteredAudiobooks().size(), 1);

    model->setSelectedTab(LibraryTab::Books);
    EXPECT_EQ(books->size(), 1);
    EXPECT_EQ(model->filteredBooks().size(), 2);
}

TEST_F(AppModelViewState, ChoosingTheSameTabAgainChangesNothing)
{
    startOn(LibraryTab::Books);
    model->setSearchText(QStringLiteral("emma"));

    model->setSelectedTab(LibraryTab::Books);

    EXPECT_EQ(model->searchText(), QStringLiteral("emma"));
    EXPECT_EQ(sleepers(), 0U);
}

TEST_F(AppModelViewState, TheShelfDidNotFinishShowsAudiobooksOfThatStatus)
{
    startOn(LibraryTab::Audio);

    model->setSelectedShelf(LibraryShelf::DidNotFinish);

    ASSERT_EQ(model->filteredAudiobooks().size(), 1);
    EXPECT_EQ(model->filteredAudiobooks().at(0).title, QStringLiteral("Momo"));
}

TEST_F(AppModelViewState, PagesStayWithinTheirRange)
{
    for (int count = 0; count < 40; ++count) {
        addBook(QStringLiteral("Volume %1").arg(count));
    }
    startOn(LibraryTab::Books);
    EXPECT_EQ(model->totalBookPages(), 2);
    EXPECT_EQ(model->bookPageDescription(), QStringLiteral("Page 1 of 2"));

    model->showPreviousBookPage();
    EXPECT_EQ(model->bookPage(), 1);
    model->showNextBookPage();
    model->showNextBookPage();
    EXPECT_EQ(model->bookPage(), 2);
    EXPECT_EQ(model->paginatedBooks().size(), 42 - 36);

    model->setBookPage(9);
    EXPECT_EQ(model->bookPageDescription(), QStringLiteral("Page 9 of 2"));
    EXPECT_EQ(model->paginatedBooks().size(), 42 - 36);
    model->showPreviousBookPage();
    EXPECT_EQ(model->bookPage(), 2);
}

TEST_F(AppModelViewState, AnEmptyLibraryHasOneEmptyPage)
{
    startModel();

    EXPECT_EQ(model->totalBookPages(), 1);
    EXPECT_TRUE(model->paginatedBooks().isEmpty());
    EXPECT_EQ(model->bookPageDescription(), QStringLiteral("Page 1 of 1"));
}

TEST_F(AppModelViewState, TheChosenTabIsRemembered)
{
    startOn(LibraryTab::Books);

    model->setSelectedTab(LibraryTab::Audio);
    EXPECT_EQ(stored(QStringLiteral("selectedTab")), QStringLiteral("books")); // not before the yield
    runYields();

    EXPECT_TRUE(eventually([this] { return stored(QStringLiteral("selectedTab")) == QStringLiteral("audio"); }));
}

TEST_F(AppModelViewState, QuickSwitchesEndInOneWrite)
{
    startOn(LibraryTab::Books);
    library.executeScript("CREATE TABLE writes (value TEXT);"
                          "CREATE TRIGGER counted AFTER INSERT ON settings WHEN NEW.key = 'selectedTab'"
                          " BEGIN INSERT INTO writes VALUES (NEW.value); END;"
                          "CREATE TRIGGER recounted AFTER UPDATE ON settings WHEN NEW.key = 'selectedTab'"
                          " BEGIN INSERT INTO writes VALUES (NEW.value); END;");

    model->setSelectedTab(LibraryTab::Audio);
    model->setSelectedTab(LibraryTab::Insights);
    model->setSelectedTab(LibraryTab::Audio);
    runYields();

    EXPECT_TRUE(eventually([this] { return stored(QStringLiteral("selectedTab")) == QStringLiteral("audio"); }));
    settle();
    EXPECT_EQ(library.scalar("SELECT group_concat(value) FROM writes").string({}), QStringLiteral("audio"));
}

TEST_F(AppModelViewState, ATabChosenBeforeTheLibraryIsLoadedIsNotRemembered)
{
    makeModel();

    model->setSelectedTab(LibraryTab::Books);

    EXPECT_EQ(clock.sleepers(), 0U);
}

TEST_F(AppModelViewState, ATabThatCannotBeRememberedGoesToTheLogAlone)
{
    startOn(LibraryTab::Books);
    library.execute("DROP TABLE settings");

    model->setSelectedTab(LibraryTab::Audio);
    runYields();

    EXPECT_TRUE(eventually([this] { return !logLines().isEmpty(); }));
    EXPECT_THAT(logLines(),
        Contains(::testing::ResultOf([](const QString &line) { return line.toStdString(); },
            StartsWith("Could not remember selected tab: Could not"))));
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
}

TEST_F(AppModelViewState, AHiddenBookCountsAsNoCurrentBook)
{
    addBook(QStringLiteral("Emma"), QStringLiteral("currently-reading"));
    library.execute("UPDATE goodreads_books SET hidden = 1");
    startModel();

    EXPECT_EQ(model->currentBook(), std::nullopt);
}

TEST_F(AppModelViewState, AToastGoesAfterItsTime)
{
    makeModel();
    model->showToast(QStringLiteral("Saved"), 3200ms);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Saved"));

    clock.advance(3199ms);
    settle();
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Saved"));
    clock.advance(1ms);
    EXPECT_TRUE(eventually([this] { return !model->toastMessage(); }));
}

TEST_F(AppModelViewState, ASecondToastStaysItsFullTime)
{
    makeModel();
    model->showToast(QStringLiteral("First"), 3200ms);
    clock.advance(3000ms);
    model->showToast(QStringLiteral("Second"), 3200ms);

    clock.advance(3100ms);
    settle();
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Second"));
    clock.advance(100ms);
    EXPECT_TRUE(eventually([this] { return !model->toastMessage(); }));
}

TEST_F(AppModelViewState, AModelMayDieWithAToastAndATabUnderWay)
{
    startOn(LibraryTab::Books);
    model->showToast(QStringLiteral("Saved"), 3200ms);
    model->setSelectedTab(LibraryTab::Audio);
    model.reset();
    clock.advance(10s);
    settle();
    EXPECT_EQ(clock.sleepers(), 0U);
}

TEST_F(AppModelViewState, ANoticeReplacesTheOneBefore)
{
    makeModel();
    const QSignalSpy changes(model.get(), &AppModel::noticeChanged);

    model->setNotice(AppNotice::information(QStringLiteral("One"), QStringLiteral("1")));
    model->setNotice(AppNotice::error(QStringLiteral("Two"), QStringLiteral("2")));
    model->setNotice(AppNotice::error(QStringLiteral("Two"), QStringLiteral("2"))); // the same notice
    EXPECT_EQ(model->notice()->title, QStringLiteral("Two"));
    model->setNotice(std::nullopt);

    EXPECT_EQ(changes.size(), 3);
}

} // namespace

} // namespace quire
