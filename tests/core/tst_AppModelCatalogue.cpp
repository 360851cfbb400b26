#include "ModelTest.h"

#include "sources/ServiceError.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

namespace quire {

namespace {

using namespace std::chrono_literals;
using testing::await;
using testing::eventually;
using ::testing::IsEmpty;
using testing::LoopbackReply;

class AppModelCatalogue : public ModelTest
{
protected:
    void startOn(LibraryTab tab)
    {
        setStored(QStringLiteral("selectedTab"), rawValue(tab));
        startModel();
        serve({QStringLiteral("Tidewater")});
    }

    void serve(const QStringList &titles)
    {
        QStringList products;
        for (const QString &title : titles) {
            products.append(QStringLiteral(R"({"asin": "B%1", "title": "%2"})").arg(products.size()).arg(title));
        }
        services.route(u"/1.0/catalog/products",
            LoopbackReply::ok(QStringLiteral(R"({"products": [%1]})").arg(products.join(u',')).toUtf8()));
    }

    // The pause after the last key is over.
    void rest()
    {
        ASSERT_TRUE(eventually([this] { return sleepers() == 1; }));
        EXPECT_EQ(lastPause(), 350ms);
        clock.advance(349ms);
        settle();
        EXPECT_THAT(asked(), IsEmpty());
        clock.advance(1ms);
    }

    QStringList asked() const
    {
        QStringList queries;
        for (const auto &request : services.requests()) {
            queries.append(request.queryValue(QStringLiteral("keywords")));
        }
        return queries;
    }

    QStringList found() const
    {
        QStringList titles;
        for (const AudibleCatalogBook &book : model->audibleCatalogResults()) {
            titles.append(book.title);
        }
        return titles;
    }

    bool searchEnds()
    {
        return eventually([this] { return !model->isSearchingAudible(); });
    }
};

TEST_F(AppModelCatalogue, TypingOnTheAudioTabAsksTheCatalogueAfterAPause)
{
    startOn(LibraryTab::Audio);
    model->setSearchText(QStringLiteral(" Tïde "));
    EXPECT_TRUE(model->isSearchingAudible());
    EXPECT_TRUE(model->showsAudibleCatalog());
    rest();
    ASSERT_TRUE(searchEnds());
    EXPECT_EQ(asked(), QStringList{QStringLiteral("Tïde")}); // trimmed, not folded
    EXPECT_EQ(services.requests().first().queryValue(QStringLiteral("num_results")), QStringLiteral("8"));
    EXPECT_EQ(found(), QStringList{QStringLiteral("Tidewater")});
    EXPECT_EQ(model->audibleSearchError(), std::nullopt);
}

TEST_F(AppModelCatalogue, QuickTypingAsksOnce)
{
    startOn(LibraryTab::Audio);
    for (const QString &typed : {QStringLiteral("ti"), QStringLiteral("tid"), QStringLiteral("tide")}) {
        model->setSearchText(typed);
        ASSERT_TRUE(eventually([this] { return sleepers() == 1; }));
        clock.advance(349ms);
        settle();
    }
    EXPECT_THAT(asked(), IsEmpty());
    clock.advance(1ms);
    ASSERT_TRUE(searchEnds());
    EXPECT_EQ(asked(), QStringList{QStringLiteral("tide")});
}

TEST_F(AppModelCatalogue, OneCharacterEmptiesTheResultsAndAsksNobody)
{
    startOn(LibraryTab::Audio);
    model->setSearchText(QStringLiteral("tide"));
    rest();
    ASSERT_TRUE(searchEnds());
    services.forgetRequests();

    model->setSearchText(QStringLiteral(" t "));

    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(model->isSearchingAudible());
    EXPECT_FALSE(model->showsAudibleCatalog());
    clock.advance(1s);
    settle();
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(AppModelCatalogue, OneCharacterAsTheReaderSeesItIsOne)
{
    startOn(LibraryTab::Audio);
    model->setSearchText(QStringLiteral("e\u0301")); // an e and its accent
    EXPECT_FALSE(model->isSearchingAudible());
    EXPECT_FALSE(model->showsAudibleCatalog());
}

TEST_F(AppModelCatalogue, TheOtherTabsAskNobody)
{
    for (const LibraryTab tab : {LibraryTab::Insights, LibraryTab::Books}) {
        startOn(tab);
        model->setSearchText(QStringLiteral("tide"));
        EXPECT_FALSE(model->isSearchingAudible());
        EXPECT_FALSE(model->showsAudibleCatalog());
        clock.advance(1s);
        settle();
        EXPECT_THAT(asked(), IsEmpty());
        await(model->shutdown());
    }
}

TEST_F(AppModelCatalogue, SwitchingTheTabEmptiesTheSearchWithoutAnother)
{
    startOn(LibraryTab::Audio);
    model->setSearchText(QStringLiteral("tide"));
    rest();
    ASSERT_TRUE(searchEnds());
    services.forgetRequests();

    model->setSelectedTab(LibraryTab::Books);

    EXPECT_THAT(found(), IsEmpty());
    clock.advance(1s);
    settle();
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(AppModelCatalogue, AFailedSearchLeavesTheLibraryOnScreenAndTellsWhy)
{
    addAudiobook(QStringLiteral("Tidewater"));
    startOn(LibraryTab::Audio);
    services.route(u"/1.0/catalog/products", LoopbackReply::withStatus(503, "Back soon"));
    model->setSearchText(QStringLiteral("tide"));
    rest();
    ASSERT_TRUE(searchEnds());
    EXPECT_EQ(model->audibleSearchError(), ServiceError::http(503, QStringLiteral("Back soon")).description());
    EXPECT_EQ(model->filteredAudiobooks().size(), 1);
    EXPECT_EQ(model->notice(), std::nullopt);

    serve({QStringLiteral("Tidewater")});
    services.forgetRequests();
    model->setSearchText(QStringLiteral("tidew"));
    EXPECT_EQ(model->audibleSearchError(), std::nullopt); // gone with the next key
    rest();
    ASSERT_TRUE(searchEnds());
    EXPECT_EQ(found(), QStringList{QStringLiteral("Tidewater")});
}

TEST_F(AppModelCatalogue, AnAnswerThatComesAfterTheNextKeyIsDropped)
{
    startOn(LibraryTab::Audio);
    services.route(u"/1.0/catalog/products", LoopbackReply::silence());
    model->setSearchText(QStringLiteral("tide"));
    rest();
    ASSERT_TRUE(eventually([this] { return !services.requests().isEmpty(); }));
    services.forgetRequests();

    serve({QStringLiteral("Mother of Pearl")});
    model->setSearchText(QStringLiteral("pearl"));
    rest();
    ASSERT_TRUE(searchEnds());
    EXPECT_EQ(found(), QStringList{QStringLiteral("Mother of Pearl")});
    EXPECT_EQ(model->audibleSearchError(), std::nullopt);
}

TEST_F(AppModelCatalogue, AModelThatEndsDuringASearchTouchesNothing)
{
    startOn(LibraryTab::Audio);
    services.route(u"/1.0/catalog/products", LoopbackReply::silence());
    model->setSearchText(QStringLiteral("tide"));
    rest();
    ASSERT_TRUE(eventually([this] { return !services.requests().isEmpty(); }));
    const QSignalSpy errors(model.get(), &AppModel::audibleSearchErrorChanged);
    await(model->shutdown());
    EXPECT_THAT(errors, IsEmpty());
    model.reset();
    settle();
}

} // namespace

} // namespace quire
