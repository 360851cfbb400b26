#include "ModelTest.h"
#include "QuireApp/ViewModels/LibraryViewModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace quire {

namespace {

using testing::await;

class LibraryViewModelTest : public ModelTest
{
protected:
    void start(LibraryTab tab)
    {
        setStored(QStringLiteral("selectedTab"), rawValue(tab));
        makeModel();
        view = std::make_unique<LibraryViewModel>(*model);
        tester = std::make_unique<QAbstractItemModelTester>(
            view->books(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        await(model->start());
    }

    ~LibraryViewModelTest() override
    {
        tester.reset();
        view.reset();
    }

    std::unique_ptr<LibraryViewModel> view;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(LibraryViewModelTest, AnEmptyLibrarySaysSoAndHasNoPages)
{
    start(LibraryTab::Books);
    EXPECT_TRUE(view->isEmpty());
    EXPECT_EQ(view->heading(), QStringLiteral("Read"));
    EXPECT_EQ(view->countText(), QStringLiteral("0 titles"));
    EXPECT_EQ(view->emptyLabel(), QStringLiteral("No titles found"));
    EXPECT_FALSE(view->showsPaging());
    EXPECT_EQ(view->pageDescription(), QStringLiteral("Page 1 of 1"));
}

TEST_F(LibraryViewModelTest, ThirtySixTitlesAreOnePageAndOneMoreMakesTwo)
{
    for (int number = 0; number < 36; ++number) {
        addBook(QStringLiteral("Title %1").arg(number));
    }
    start(LibraryTab::Books);
    EXPECT_FALSE(view->showsPaging());
    EXPECT_EQ(view->books()->count(), 36);

    addBook(QStringLiteral("One more"));
    await(model->reload());
    EXPECT_TRUE(view->showsPaging());
    EXPECT_FALSE(view->hasPreviousPage());
    EXPECT_TRUE(view->hasNextPage());

    view->showNextPage();
    EXPECT_EQ(view->pageDescription(), QStringLiteral("Page 2 of 2"));
    EXPECT_EQ(view->books()->count(), 1);
    EXPECT_TRUE(view->hasPreviousPage());
    EXPECT_FALSE(view->hasNextPage());
    view->showNextPage();
    EXPECT_EQ(view->pageDescription(), QStringLiteral("Page 2 of 2"));
}

TEST_F(LibraryViewModelTest, TheInsightsTabHasNoPagesWhateverTheLibraryHolds)
{
    for (int number = 0; number < 40; ++number) {
        addBook(QStringLiteral("Title %1").arg(number));
    }
    start(LibraryTab::Insights);
    EXPECT_TRUE(view->showsInsights());
    EXPECT_FALSE(view->showsPaging());
    EXPECT_FALSE(view->hasNextPage());
    EXPECT_FALSE(view->hasPreviousPage());
    EXPECT_EQ(view->sidebarShelves()->count(), 0);
}

TEST_F(LibraryViewModelTest, ChoicesGoToTheModelByTheirWords)
{
    addBook(QStringLiteral("Wanted"), QStringLiteral("to-read"));
    start(LibraryTab::Books);
    view->selectShelf(QStringLiteral("to-read"));
    EXPECT_EQ(model->selectedShelf(), LibraryShelf::ToRead);
    EXPECT_EQ(view->countText(), QStringLiteral("1 title"));
    EXPECT_EQ(view->heading(), QStringLiteral("Want to Read"));
    view->selectSort(QStringLiteral("rating"));
    EXPECT_EQ(model->selectedSort(), LibrarySort::Rating);
    view->selectShelf(QStringLiteral("no such shelf"));
    EXPECT_EQ(model->selectedShelf(), LibraryShelf::ToRead);
    view->selectTab(QStringLiteral("audio"));
    EXPECT_EQ(view->searchPrompt(), QStringLiteral("Search library & Audible"));
    EXPECT_EQ(view->sidebarShelves()->titleOf(QStringLiteral("active")), QStringLiteral("Currently Listening"));
    EXPECT_EQ(view->sidebarShelves()->rowOf(QStringLiteral("hidden")), -1);
    EXPECT_EQ(view->emptyLabel(), QStringLiteral("No audio titles found"));
}

TEST_F(LibraryViewModelTest, AReloadThatChangesNothingLeavesTheGridAlone)
{
    addBook(QStringLiteral("Emma"));
    start(LibraryTab::Books);
    const QSignalSpy reset(view->books(), &LibraryListModel::modelReset);
    const QSignalSpy inserted(view->books(), &LibraryListModel::rowsInserted);
    const QSignalSpy removed(view->books(), &LibraryListModel::rowsRemoved);
    const QSignalSpy changed(view->books(), &LibraryListModel::dataChanged);
    await(model->reload());
    EXPECT_EQ(reset.size() + inserted.size() + removed.size() + changed.size(), 0);
}

TEST_F(LibraryViewModelTest, ACardOpensItsTitle)
{
    addBook(QStringLiteral("Emma"));
    start(LibraryTab::Books);
    view->openBook(model->books().constFirst().id);
    ASSERT_TRUE(model->selectedBook().has_value());
    EXPECT_EQ(model->selectedBook()->title, QStringLiteral("Emma"));
    view->openBook(4711);
    EXPECT_FALSE(model->selectedBook().has_value());
}

} // namespace

} // namespace quire
