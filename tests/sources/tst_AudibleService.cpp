#include "sources/AudibleService.h"

#include "concurrency/Cancelled.h"
#include "sources/JSONDecodingError.h"
#include "sources/NetworkClient.h"
#include "sources/ServiceError.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/ThrownFailure.h"

#include <QTimer>

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;
using ::testing::IsEmpty;

namespace {

const QString catalogPath = QStringLiteral("/1.0/catalog/products");
const QUrl website(QStringLiteral("https://www.audible.example"));

// A product of the members `rest`, beside the two it cannot do without.
AudibleProduct product(const QByteArray &rest)
{
    const auto answer = AudibleCatalogResponse::parse(
        R"({"products": [{"asin": "A1", "title": "Dune")" + (rest.isEmpty() ? rest : ", " + rest) + "}]}");
    return answer.products.first();
}

AudibleCatalogBook mapped(const QByteArray &rest = {})
{
    return AudibleService::map(product(rest), website).value();
}

class AudibleServiceTest : public ::testing::Test
{
protected:
    AudibleServiceTest()
    {
        endpoints.audibleAPI = server.origin();
        endpoints.audibleWeb = website;
    }

    void answer(const QByteArray &body) { server.route(catalogPath, LoopbackReply::ok(body, "application/json")); }

    QList<AudibleCatalogBook> search(const char *query, int limit = 8)
    {
        return await(AudibleService::search(network, endpoints, QString::fromUtf8(query), limit, stop.get_token()));
    }

    LoopbackServer server;
    ServiceEndpoints endpoints = ServiceEndpoints::standard();
    NetworkClient network;
    std::stop_source stop;
};

} // namespace

// What is asked. ------------------------------------------------------------------

TEST_F(AudibleServiceTest, ASearchAsksForTheTrimmedQuery)
{
    answer("{\"products\": []}");
    search(" \n dune & C++ \t");
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.requests().first().method, "GET");
    EXPECT_EQ(server.requests().first().target,
        "/1.0/catalog/products?keywords=dune%20%26%20C%2B%2B&num_results=8&products_sort_by=Relevance"
        "&response_groups=contributors%2Cproduct_desc%2Cproduct_attrs%2Cmedia%2Cseries%2Crating");
}

TEST_F(AudibleServiceTest, AQueryOfFewerThanTwoCharactersAsksNobody)
{
    for (const char *query : {"", "   ", " a \n", " é "}) { // the last a letter and its accent
        EXPECT_THAT(search(query), IsEmpty()) << query;
    }
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(AudibleServiceTest, TwoCharactersAreAQuery)
{
    answer("{\"products\": []}");
    EXPECT_THAT(search(" it "), IsEmpty());
    EXPECT_EQ(server.requests().first().queryValue(QStringLiteral("keywords")), QStringLiteral("it"));
}

TEST_F(AudibleServiceTest, AnEndpointThatCouldNotBeReadIsAnInvalidURL)
{
    endpoints.audibleAPI = QUrl();
    EXPECT_EQ(thrownBy<ServiceError>([this] { search("dune"); })->description(),
        QStringLiteral("The service URL could not be created."));
}

// What comes back. ----------------------------------------------------------------

TEST_F(AudibleServiceTest, TitlesKeepTheCataloguesOrderAndAreNotMadeUnique)
{
    answer(
        R"({"products": [{"asin": "B", "title": "Two"}, {"asin": "A", "title": "One"}, {"asin": "B", "title": "Two"}]})");
    QStringList asins;
    for (const AudibleCatalogBook &book : search("dune")) {
        asins.append(book.asin);
    }
    EXPECT_EQ(asins, QStringList({QStringLiteral("B"), QStringLiteral("A"), QStringLiteral("B")}));
}

TEST_F(AudibleServiceTest, AProductWithoutAnAsinOrATitleIsLeftOut)
{
    answer(
        R"({"products": [{"title": "No ASIN"}, {"asin": "A1"}, {"asin": "A2", "title": ""}, {"asin": "", "title": " "},
        {"asin": null, "title": "x"}, {"asin": "A3", "title": "Stays"}]})");
    QStringList titles;
    for (const AudibleCatalogBook &book : search("dune")) {
        titles.append(book.title);
    }
    EXPECT_EQ(titles, QStringList({QStringLiteral(" "), QStringLiteral("Stays")})); // neither is looked into
}

TEST_F(AudibleServiceTest, NoProductIsAnEmptyResult)
{
    answer("{\"products\": []}");
    EXPECT_THAT(search("dune"), IsEmpty());
}

class UnreadableAnswer : public AudibleServiceTest, public ::testing::WithParamInterface<const char *>
{
};

TEST_P(UnreadableAnswer, IsTheDecodersFailure)
{
    answer(GetParam());
    EXPECT_NE(thrownBy<JSONDecodingError>([this] { search("dune"); }), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Bodies, UnreadableAnswer,
    ::testing::Values("", "<html>Sorry</html>", "{}", "[]", R"({"products": null})", R"({"products": {}})",
        R"({"products": [null]})", R"({"products": [{"asin": 5}]})", R"({"products": [{"title": ["x"]}]})",
        R"({"products": [{"authors": "Ann"}]})", R"({"products": [{"authors": [{"name": 1}]}]})",
        R"({"products": [{"narrators": ["Ann"]}]})", R"({"products": [{"series": [{"sequence": 2}]}]})",
        R"({"products": [{"series": [{}, {"title": false}]}]})", R"({"products": [{"product_images": {"500": null}}]})",
        R"({"products": [{"product_images": []}]})", R"({"products": [{"release_date": 2019}]})",
        R"({"products": [{"publisher_summary": {}}]})", R"({"products": [{"merchandising_summary": 0}]})"));

TEST_F(AudibleServiceTest, AStatusOutsideSuccessIsTheServersOwnWords)
{
    server.route(catalogPath, LoopbackReply::withStatus(503, "Try later."));
    EXPECT_EQ(thrownBy<ServiceError>([this] { search("dune"); })->description(), QStringLiteral("Try later."));
}

TEST_F(AudibleServiceTest, ASearchThatIsCancelledEndsAsCancelled)
{
    server.route(catalogPath, LoopbackReply::silence());
    QTimer::singleShot(0, [this] { stop.request_stop(); });
    EXPECT_NE(thrownBy<Cancelled>([this] { search("dune"); }), std::nullopt);
}

// One product. --------------------------------------------------------------------

TEST(AudibleServiceMap, AProductOfTwoMembersHasNothingElse)
{
    const AudibleCatalogBook book = mapped();
    AudibleCatalogBook expected;
    expected.asin = QStringLiteral("A1");
    expected.title = QStringLiteral("Dune");
    expected.audibleURL = Url::parse(QStringLiteral("https://www.audible.example/pd/A1"));
    EXPECT_EQ(book, expected);
}

TEST(AudibleServiceMap, AnAsinThatGivesNoAddressGivesNoPage)
{
    AudibleProduct odd = product("");
    odd.asin = QStringLiteral("A 1");
    EXPECT_EQ(AudibleService::map(odd, website)->audibleURL, std::nullopt);
}

TEST(AudibleServiceMap, TranslatorsAreNoAuthors)
{
    EXPECT_EQ(mapped(R"("authors": [{"name": "Ann Lee - Translator"}])").author, std::nullopt);
    EXPECT_EQ(mapped(R"("authors": [{"name": "Ann Lee - TRANSLATOR"}])").author, std::nullopt);
    EXPECT_EQ(mapped(R"("authors": [{"name": "Bo Ek"}, {"name": "Ann Lee - translator, German"
}])")
                  .author,
        QStringLiteral("Bo Ek"));
}

TEST(AudibleServiceMap, AuthorsAreJoinedAndThoseWithoutANameLeftOut)
{
    EXPECT_EQ(
        mapped(R"("authors": [{"name": "B"}, {}, {"name": null}, {"name": "A"}])").author, QStringLiteral("B, A"));
    EXPECT_EQ(mapped(R"("authors": [{}])").author, std::nullopt);
    EXPECT_EQ(mapped(R"("authors": [])").author, std::nullopt);
}

TEST(AudibleServiceMap, NarratorsAreJoinedWhateverTheyAreCalled)
{
    EXPECT_EQ(mapped(R"("narrators": [{"name": "B - translator"}, {}, {"name": "A"}])").narrator,
        QStringLiteral("B - translator, A"));
    EXPECT_EQ(mapped(R"("narrators": [{}])").narrator, std::nullopt);
}

TEST(AudibleServiceMap, TheFirstSeriesCounts)
{
    const AudibleCatalogBook book
        = mapped(R"("series": [{"title": "First", "sequence": "3"}, {"title": "Second", "sequence": "4"}])");
    EXPECT_EQ(book.series, QStringLiteral("First"));
    EXPECT_EQ(book.bookNumber, 3);
    EXPECT_EQ(mapped(R"("series": [])").series, std::nullopt);
    EXPECT_EQ(mapped(R"("series": [{}, {"title": "Second", "sequence": "4"}])").series, std::nullopt);
}

class OddSequence : public ::testing::TestWithParam<const char *>
{
};

TEST_P(OddSequence, GivesNoNumberAndKeepsTheSeries)
{
    const AudibleCatalogBook book
        = mapped(QByteArray(R"("series": [{"title": "First", "sequence": ")") + GetParam() + "\"}]");
    EXPECT_EQ(book.series, QStringLiteral("First"));
    EXPECT_EQ(book.bookNumber, std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Sequences, OddSequence, ::testing::Values("3.5", "0.5", "2-3", "", " 3", "three", "99999999999999999999"));

TEST(AudibleServiceMap, TheLargestImageIsTheCover)
{
    EXPECT_EQ(textOf(mapped(R"("product_images": {"500": "https://i.example/5", "1024": "https://i.example/10",
        "large": "https://i.example/l"})")
                         .coverURL),
        QStringLiteral("https://i.example/10"));
    EXPECT_EQ(
        textOf(mapped(R"("product_images": {"9": "https://i.example/9", "10": "https://i.example/10"})").coverURL),
        QStringLiteral("https://i.example/10")); // by number, not by letter
}

TEST(AudibleServiceMap, OfTwoSpellingsOfOneSizeItIsAlwaysTheSameOne)
{
    for (int time = 0; time < 20; ++time) {
        EXPECT_EQ(textOf(mapped(R"("product_images": {"500": "https://i.example/a", "+500": "https://i.example/b",
            "0500": "https://i.example/c", "00500": "https://i.example/d"})")
                             .coverURL),
            QStringLiteral("https://i.example/b"));
    }
}

TEST(AudibleServiceMap, ImagesWithoutANumberOrAnAddressAreNoCovers)
{
    EXPECT_EQ(mapped(R"("product_images": {"large": "https://i.example/l"})").coverURL, std::nullopt);
    EXPECT_EQ(mapped(R"("product_images": {"500": "", "600": "no url"})").coverURL, std::nullopt);
    EXPECT_EQ(textOf(mapped(R"("product_images": {"500": "https://i.example/5", "1000": "no url"})").coverURL),
        QStringLiteral("https://i.example/5"));
    EXPECT_EQ(mapped(R"("product_images": {})").coverURL, std::nullopt);
}

TEST(AudibleServiceMap, TheYearIsTheBeginningOfTheReleaseDate)
{
    EXPECT_EQ(mapped(R"("release_date": "2019-05-07")").year, QStringLiteral("2019"));
    EXPECT_EQ(mapped(R"("release_date": "soon")").year, QStringLiteral("soon"));
    EXPECT_EQ(mapped(R"("release_date": "19")").year, QStringLiteral("19"));
    EXPECT_EQ(mapped(R"("release_date": "")").year, QString());
}

TEST(AudibleServiceMap, TheSummaryIsThePublishersWithoutItsMarkup)
{
    EXPECT_EQ(mapped(R"("publisher_summary": "<p>A</p>", "merchandising_summary": "B")").summary, QStringLiteral("A"));
    EXPECT_EQ(mapped(R"("merchandising_summary": "<b>B</b> &amp; C")").summary, QStringLiteral("B & C"));
}

TEST(AudibleServiceMap, AnEmptySummaryOfThePublisherHidesTheOther)
{
    EXPECT_EQ(mapped(R"("publisher_summary": "", "merchandising_summary": "B")").summary, std::nullopt);
    EXPECT_EQ(mapped(R"("publisher_summary": null, "merchandising_summary": "B")").summary, QStringLiteral("B"));
    EXPECT_EQ(mapped(R"("publisher_summary": "<p> </p>")").summary, std::nullopt);
}
