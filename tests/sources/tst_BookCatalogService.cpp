#include "sources/BookCatalogService.h"

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
using ::testing::SizeIs;

namespace {

const QString searchPath = QStringLiteral("/search.json");
const QUrl covers(QStringLiteral("https://covers.example"));

QList<BookCatalogBook> parsed(const QByteArray &docs)
{
    return BookCatalogService::parse(R"({"numFound": 1, "docs": [)" + docs + "]}", covers);
}

// The one book of an item with the members `rest` beside the two it cannot do
// without.
BookCatalogBook book(const QByteArray &rest = {})
{
    const auto books
        = parsed(R"({"key": "/works/OL1W", "title": "Dune")" + (rest.isEmpty() ? rest : ", " + rest) + "}");
    return books.value(0);
}

class BookCatalogServiceTest : public ::testing::Test
{
protected:
    BookCatalogServiceTest()
    {
        endpoints.openLibrary = server.origin();
        endpoints.openLibraryCovers = covers;
    }

    void answer(const QByteArray &body) { server.route(searchPath, LoopbackReply::ok(body, "application/json")); }

    QList<BookCatalogBook> search(const char *query, int limit = 8)
    {
        return await(BookCatalogService::search(network, endpoints, QString::fromUtf8(query), limit, stop.get_token()));
    }

    LoopbackServer server;
    ServiceEndpoints endpoints = ServiceEndpoints::standard();
    NetworkClient network;
    std::stop_source stop;
};

} // namespace

// What is asked. ------------------------------------------------------------------

TEST_F(BookCatalogServiceTest, ASearchAsksForTheTrimmedQuery)
{
    answer("{\"docs\": []}");
    search("\n dune & C++ ", 5);
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.requests().first().target,
        "/search.json?q=dune%20%26%20C%2B%2B"
        "&fields=key%2Ctitle%2Cauthor_name%2Ccover_i%2Cisbn%2Cfirst_publish_year%2Cnumber_of_pages_median&limit=5");
}

TEST_F(BookCatalogServiceTest, AQueryOfFewerThanTwoCharactersAsksNobody)
{
    for (const char *query : {"", " \t\n", "  a "}) {
        EXPECT_THAT(search(query), IsEmpty()) << query;
    }
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(BookCatalogServiceTest, AnEndpointThatCouldNotBeReadIsAnInvalidURL)
{
    endpoints.openLibrary = QUrl();
    EXPECT_EQ(thrownBy<ServiceError>([this] { search("dune"); })->kind(), ServiceError::Kind::InvalidURL);
}

// What comes back. ----------------------------------------------------------------

TEST_F(BookCatalogServiceTest, AnAnswerIsReadInItsOrder)
{
    answer(R"({"docs": [{"key": "/works/OL2W", "title": "B"}, {"key": "/works/OL1W", "title": "A"}]})");
    const auto books = search("dune");
    ASSERT_THAT(books, SizeIs(2));
    EXPECT_EQ(books[0].workID, QStringLiteral("OL2W"));
    EXPECT_EQ(books[1].workID, QStringLiteral("OL1W"));
}

TEST_F(BookCatalogServiceTest, AStatusOutsideSuccessIsAFailure)
{
    server.route(searchPath, LoopbackReply::withStatus(500));
    EXPECT_EQ(thrownBy<ServiceError>([this] { search("dune"); })->description(),
        QStringLiteral("The service returned HTTP 500."));
}

TEST_F(BookCatalogServiceTest, ABodyThatIsNotTheJsonFailsAsTheDecoderDoes)
{
    answer("<html>Sorry</html>");
    EXPECT_EQ(thrownBy<JSONDecodingError>([this] { search("dune"); })->kind(), JSONDecodingError::Kind::Syntax);
}

TEST_F(BookCatalogServiceTest, ASearchThatIsCancelledEndsAsCancelled)
{
    server.route(searchPath, LoopbackReply::silence());
    QTimer::singleShot(0, [this] { stop.request_stop(); });
    EXPECT_NE(thrownBy<Cancelled>([this] { search("dune"); }), std::nullopt);
}

class UnreadableBooks : public ::testing::TestWithParam<const char *>
{
};

TEST_P(UnreadableBooks, AreTheDecodersFailure)
{
    EXPECT_NE(thrownBy<JSONDecodingError>([] { BookCatalogService::parse(GetParam(), covers); }), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Bodies, UnreadableBooks,
    ::testing::Values("", "{}", "[]", R"({"docs": null})", R"({"docs": {}})", R"({"docs": [[]]})",
        R"({"docs": [{"key": 1}]})", R"({"docs": [{"title": 1984}]})", R"({"docs": [{"author_name": "Ann"}]})",
        R"({"docs": [{"author_name": [null]}]})", R"({"docs": [{"cover_i": "12"}]})", R"({"docs": [{"cover_i": 1.5}]})",
        R"({"docs": [{"isbn": [123]}]})", R"({"docs": [{"isbn": {}}]})",
        R"({"docs": [{"first_publish_year": "1965"}]})", R"({"docs": [{"number_of_pages_median": true}]})"));

TEST(BookCatalogServiceParse, NoItemIsAnEmptyResult)
{
    EXPECT_THAT(parsed(""), IsEmpty());
}

// One item. -----------------------------------------------------------------------

TEST(BookCatalogServiceParse, AnItemOfTwoMembersHasNothingElse)
{
    BookCatalogBook expected;
    expected.workID = QStringLiteral("OL1W");
    expected.title = QStringLiteral("Dune");
    EXPECT_EQ(book(), expected);
}

TEST(BookCatalogServiceParse, EveryMemberFindsItsField)
{
    const BookCatalogBook full = book(R"("author_name": ["A", "B"], "cover_i": 12, "isbn": ["0123456789"],
        "first_publish_year": 1965, "number_of_pages_median": 605)");
    EXPECT_EQ(full.author, QStringLiteral("A, B"));
    EXPECT_EQ(textOf(full.coverURL), QStringLiteral("https://covers.example/b/id/12-L.jpg?default=false"));
    EXPECT_EQ(full.isbn, QStringLiteral("0123456789"));
    EXPECT_EQ(full.publishedYear, 1965);
    EXPECT_EQ(full.numberOfPages, 605);
}

struct KeyCase
{
    const char *key;
    const char *workID; // null when the item is dropped
};

class WorkKey : public ::testing::TestWithParam<KeyCase>
{
};

TEST_P(WorkKey, GivesTheWork)
{
    const auto books = parsed(QByteArray(R"({"title": "Dune", "key": )") + GetParam().key + "}");
    if (!GetParam().workID) {
        EXPECT_THAT(books, IsEmpty());
        return;
    }
    ASSERT_THAT(books, SizeIs(1));
    EXPECT_EQ(books.first().workID, QString::fromLatin1(GetParam().workID));
}

INSTANTIATE_TEST_SUITE_P(Keys, WorkKey,
    ::testing::Values(KeyCase{R"("/works/OL1W")", "OL1W"}, KeyCase{R"(" /works/OL1W\n")", "OL1W"},
        KeyCase{R"("OL1W")", "OL1W"}, KeyCase{R"("/works/works//works/OL1W//")", "works/OL1W"},
        KeyCase{R"("//a/b//")", "a/b"}, KeyCase{R"("/works/")", nullptr}, KeyCase{R"("/works//")", nullptr},
        KeyCase{R"("  ")", nullptr}, KeyCase{R"("")", nullptr}, KeyCase{"null", nullptr}));

TEST(BookCatalogServiceParse, AnItemWithoutAKeyOrATitleIsDropped)
{
    EXPECT_THAT(parsed(R"({"title": "Dune"}, {"key": "/works/OL1W"}, {"key": "/works/OL2W", "title": "   "},
        {"key": "/works/OL3W", "title": "\n"})"),
        IsEmpty());
}

TEST(BookCatalogServiceParse, ATitleIsTrimmed)
{
    EXPECT_EQ(parsed(R"({"key": "OL1W", "title": " Dune\n"})").value(0).title, QStringLiteral("Dune"));
}

TEST(BookCatalogServiceParse, OfTwoItemsOfOneWorkTheFirstCounts)
{
    const auto books
        = parsed(R"({"key": "/works/OL1W", "title": "First", "cover_i": 1}, {"key": "OL1W", "title": "Second"},
        {"key": "/works/ol1w", "title": "Other letters"})");
    ASSERT_THAT(books, SizeIs(2));
    EXPECT_EQ(books[0].title, QStringLiteral("First"));
    EXPECT_EQ(books[1].title, QStringLiteral("Other letters"));
}

TEST(BookCatalogServiceParse, AnItemThatWasDroppedLeavesItsWorkToTheNext)
{
    const auto books = parsed(R"({"key": "/works/OL1W", "title": " "}, {"key": "/works/OL1W", "title": "Second"})");
    ASSERT_THAT(books, SizeIs(1));
    EXPECT_EQ(books[0].title, QStringLiteral("Second"));
}

struct ISBNCase
{
    const char *entries;
    const char *chosen; // null when there is none
};

class ISBNChoice : public ::testing::TestWithParam<ISBNCase>
{
};

TEST_P(ISBNChoice, IsByLengthAlone)
{
    const auto isbn = book(QByteArray("\"isbn\": ") + GetParam().entries).isbn;
    EXPECT_EQ(isbn, GetParam().chosen ? std::optional(QString::fromUtf8(GetParam().chosen)) : std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Lists, ISBNChoice,
    ::testing::Values(ISBNCase{R"(["0123456789", "9780123456789"])", "9780123456789"},
        ISBNCase{R"(["123", "0123456789"])", "0123456789"}, ISBNCase{R"(["123"])", "123"},
        ISBNCase{R"(["123", "45"])", "123"}, ISBNCase{R"(["no isbn here!", "9780123456789"])", "no isbn here!"},
        ISBNCase{R"(["9780123456788", "9780123456789"])", "9780123456788"},
        ISBNCase{R"(["978-0123456789", "012345678X"])", "012345678X"}, ISBNCase{R"([""])", ""}, ISBNCase{"[]", nullptr},
        ISBNCase{"null", nullptr}));

TEST(BookCatalogServiceParse, ACoverNumberOfZeroIsACover)
{
    EXPECT_EQ(
        textOf(book(R"("cover_i": 0)").coverURL), QStringLiteral("https://covers.example/b/id/0-L.jpg?default=false"));
    EXPECT_EQ(textOf(book(R"("cover_i": -1)").coverURL),
        QStringLiteral("https://covers.example/b/id/-1-L.jpg?default=false"));
}
