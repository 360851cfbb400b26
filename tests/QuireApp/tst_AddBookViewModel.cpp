#include "ModelTest.h"
#include "QuireApp/ViewModels/AddAudiobookViewModel.h"
#include "QuireApp/ViewModels/AddBookViewModel.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

namespace quire {

namespace {

using testing::eventually;
using ::testing::IsEmpty;
using testing::LoopbackReply;

class AddBookViewModelTest : public ModelTest
{
protected:
    void open()
    {
        startModel();
        panel = std::make_unique<AddBookViewModel>(*model);
        services.route(u"/search", LoopbackReply::ok(R"({"results": []})"));
        serve(R"({"key": "/works/OL1W", "title": "The Glass Orchard", "isbn": ["9780000000019"],
                  "first_publish_year": 1999, "number_of_pages_median": 312})");
    }

    void serve(const QByteArray &documents)
    {
        services.route(u"/search.json", LoopbackReply::ok(R"({"docs": [)" + documents + "]}"));
    }

    void search(const QString &query)
    {
        panel->search()->setQuery(query);
        panel->search()->search();
    }

    bool searchEnds()
    {
        return eventually([this] { return !panel->search()->isSearching(); });
    }

    QVariant shown(int row, int role) const { return panel->results()->data(panel->results()->index(row), role); }

    std::unique_ptr<AddBookViewModel> panel;
};

TEST_F(AddBookViewModelTest, AQueryOfOneLetterAndBlanksAsksNobody)
{
    open();
    search(QStringLiteral(" g "));
    EXPECT_EQ(panel->search()->errorMessage(), QStringLiteral("Enter at least two characters."));
    EXPECT_FALSE(panel->search()->isSearching());
    settle();
    EXPECT_THAT(services.requests(), IsEmpty());
}

TEST_F(AddBookViewModelTest, ResultsAreShownInWords)
{
    open();
    search(QStringLiteral("glass"));
    EXPECT_TRUE(panel->search()->isSearching());
    ASSERT_TRUE(searchEnds());
    EXPECT_EQ(panel->search()->errorMessage(), QString());
    ASSERT_EQ(panel->results()->count(), 1);
    EXPECT_EQ(shown(0, CatalogListModel::TitleRole), QStringLiteral("The Glass Orchard"));
    EXPECT_EQ(shown(0, CatalogListModel::AuthorRole), QStringLiteral("Unknown author"));
    EXPECT_EQ(shown(0, CatalogListModel::DetailsRole),
        (QStringList{QStringLiteral("1999"), QStringLiteral("312 pages"), QStringLiteral("ISBN 9780000000019")}));
}

TEST_F(AddBookViewModelTest, NothingFoundIsTold)
{
    open();
    serve("");
    search(QStringLiteral("glass"));
    ASSERT_TRUE(searchEnds());
    EXPECT_EQ(panel->search()->errorMessage(), QStringLiteral("No matching titles were found."));
}

TEST_F(AddBookViewModelTest, AFailureIsTold)
{
    open();
    services.route(u"/search.json", LoopbackReply::ok("<html>"));
    search(QStringLiteral("glass"));
    ASSERT_TRUE(searchEnds());
    EXPECT_NE(panel->search()->errorMessage(), QString());
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AddBookViewModelTest, ASecondSearchShowsItsOwnResultsAlone)
{
    open();
    services.route(u"/search.json", LoopbackReply::silence());
    search(QStringLiteral("glass"));
    ASSERT_TRUE(eventually([this] { return !services.requests().isEmpty(); }));
    serve(R"({"key": "/works/OL2W", "title": "Nine Winters"})");
    search(QStringLiteral("winters"));
    ASSERT_TRUE(searchEnds());
    ASSERT_EQ(panel->results()->count(), 1);
    EXPECT_EQ(shown(0, CatalogListModel::TitleRole), QStringLiteral("Nine Winters"));
    EXPECT_EQ(panel->search()->errorMessage(), QString());
}

TEST_F(AddBookViewModelTest, AResultThatIsAddedClosesThePanel)
{
    open();
    search(QStringLiteral("glass"));
    ASSERT_TRUE(searchEnds());
    const QSignalSpy added(panel.get(), &AddBookViewModel::added);
    panel->addResult(0, QStringLiteral("to-read"));
    EXPECT_FALSE(panel->canWork());
    EXPECT_TRUE(eventually([&] { return added.size() == 1; }));
    EXPECT_EQ(model->books().first().goodreadsID, QStringLiteral("openlibrary:OL1W"));

    panel->addResult(0, QStringLiteral("to-read")); // now it is there
    settle();
    EXPECT_EQ(added.size(), 1);
    panel->addResult(7, QStringLiteral("to-read")); // no such row
}

TEST_F(AddBookViewModelTest, APanelThatWasOpenedAnewIsNotClosedByWhatItAddedBefore)
{
    open();
    search(QStringLiteral("glass"));
    ASSERT_TRUE(searchEnds());
    services.route(u"/search", LoopbackReply::silence()); // the cover is long in coming
    const QSignalSpy added(panel.get(), &AddBookViewModel::added);
    panel->addResult(0, QStringLiteral("read"));
    panel->reset();
    panel->setProperty("title", QStringLiteral("Nine Winters"));
    services.refuse();
    ASSERT_TRUE(eventually([this] { return model->books().size() == 1 && !model->isWorking(); }));
    settle();
    EXPECT_EQ(added.size(), 0);
    EXPECT_EQ(panel->property("title").toString(), QStringLiteral("Nine Winters"));
}

TEST_F(AddBookViewModelTest, ATypedBookNeedsATitleAndAnAuthor)
{
    open();
    EXPECT_FALSE(panel->canAdd());
    panel->setProperty("title", QStringLiteral("Nine Winters"));
    panel->setProperty("author", QStringLiteral(" \t"));
    EXPECT_FALSE(panel->canAdd());
    panel->setProperty("author", QStringLiteral(" Piet Aalders "));
    EXPECT_TRUE(panel->canAdd());
}

TEST_F(AddBookViewModelTest, PagesThatAreNoNumberAreLeftOutAndTheRestIsSaved)
{
    open();
    panel->setProperty("title", QStringLiteral(" Nine Winters "));
    panel->setProperty("author", QStringLiteral("Piet Aalders"));
    panel->setProperty("isbn", QStringLiteral(" "));
    panel->setProperty("pages", QStringLiteral("12a"));
    panel->setProperty("year", QStringLiteral(" 1999 "));
    panel->setProperty("notes", QStringLiteral(" lent to Ida "));
    panel->setProperty("rating", 3.5);
    const QSignalSpy added(panel.get(), &AddBookViewModel::added);
    panel->addDraft();
    ASSERT_TRUE(eventually([&] { return added.size() == 1; }));
    const Book &book = model->books().first();
    EXPECT_EQ(book.title, QStringLiteral("Nine Winters"));
    EXPECT_EQ(book.isbn, std::nullopt);
    EXPECT_EQ(book.numberOfPages, std::nullopt);
    EXPECT_EQ(book.publishedYear, 1999);
    EXPECT_EQ(book.notes, QStringLiteral("lent to Ida"));
    EXPECT_EQ(book.userRating, 3.5);
    EXPECT_EQ(book.shelf, QStringLiteral("read"));

    panel->reset();
    EXPECT_EQ(panel->property("title").toString(), QString());
    EXPECT_EQ(panel->property("rating").toDouble(), 0);
}

TEST_F(AddBookViewModelTest, ATypedAudiobookNeedsATitleAlone)
{
    startModel();
    services.route(u"/search", LoopbackReply::ok(R"({"results": []})"));
    services.route(u"/search.json", LoopbackReply::ok(R"({"docs": []})"));
    AddAudiobookViewModel audio(*model);
    EXPECT_FALSE(audio.canAdd());
    audio.setProperty("manualTitle", QStringLiteral(" Tidewater "));
    audio.setProperty("manualSeries", QStringLiteral("Coast Songs"));
    audio.setProperty("manualBookNumber", QStringLiteral("2.5"));
    EXPECT_TRUE(audio.canAdd());
    const QSignalSpy added(&audio, &AddAudiobookViewModel::added);
    audio.addDraft();
    ASSERT_TRUE(eventually([&] { return added.size() == 1; }));
    const Audiobook &book = model->audiobooks().first();
    EXPECT_EQ(book.title, QStringLiteral("Tidewater"));
    EXPECT_EQ(book.series, QStringLiteral("Coast Songs"));
    EXPECT_EQ(book.bookNumber, std::nullopt);
    EXPECT_EQ(book.status, QStringLiteral("read"));
}

} // namespace

} // namespace quire
