#include "sources/CoverFinder.h"

#include "sources/CoverCandidates.h"
#include "sources/JSONDecodingError.h"
#include "sources/NetworkClient.h"
#include "sources/ServiceError.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/ThrownFailure.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

using testing::await;
using testing::LoopbackReply;
using testing::thrownBy;

const QString title = QStringLiteral("Pride & Prejudice");
const QString author = QStringLiteral("Jane Austen");

const QByteArray nothingAtApple = R"({"resultCount":0,"results":[]})";
const QByteArray foundAtApple = R"({"results":[{"trackName":"Pride and Prejudice","artistName":"Jane Austen",
    "artworkUrl100":"https://is1.example/image/thumb/a.jpg/100x100bb.jpg"}]})";
const QByteArray foundAtOpenLibrary
    = R"({"docs":[{"title":"Pride and Prejudice","author_name":["Jane Austen","J. A."],"cover_i":42}]})";

class CoverFinderTest : public ::testing::Test
{
protected:
    CoverFinderTest()
    {
        endpoints.appleBooks = apple.origin();
        endpoints.openLibrary = openLibrary.origin();
        endpoints.openLibraryCovers = QUrl(QStringLiteral("https://covers.example"));
        apple.route(u"/search", LoopbackReply::ok(nothingAtApple));
        openLibrary.route(u"/search.json", LoopbackReply::ok(R"({"docs":[]})"));
    }

    std::optional<PortraitCover> find(
        const QList<Book> &library = {}, const std::optional<QString> &wantedAuthor = author)
    {
        return await(CoverFinder::find(network, endpoints, title, wantedAuthor, library, {}));
    }

    testing::LoopbackServer apple;
    testing::LoopbackServer openLibrary;
    NetworkClient network;
    ServiceEndpoints endpoints = ServiceEndpoints::standard();
};

TEST_F(CoverFinderTest, TheLibraryIsAskedFirstAndNobodyElseThen)
{
    Book book;
    book.title = QStringLiteral("Pride and Prejudice");
    book.goodreadsImageURL = Url::parse(QStringLiteral("https://images.example/1.jpg"));
    EXPECT_EQ(find({book}),
        (PortraitCover{.title = book.title,
            .author = QString(),
            .url = *book.goodreadsImageURL,
            .source = QStringLiteral("Books library")}));
    EXPECT_TRUE(apple.requests().isEmpty());
    EXPECT_TRUE(openLibrary.requests().isEmpty());
}

TEST_F(CoverFinderTest, AppleBooksIsAskedForTitleAndAuthorAndItsAnswerIsTheLargePortrait)
{
    apple.route(u"/search", LoopbackReply::ok(foundAtApple));
    const auto found = find();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->source, QStringLiteral("Apple Books"));
    EXPECT_EQ(found->url.text(), QStringLiteral("https://is1.example/image/thumb/a.jpg/600x900bb.jpg"));
    ASSERT_EQ(apple.requests().size(), 1);
    EXPECT_EQ(apple.requests()[0].query,
        "term=Pride%20%26%20Prejudice%20Jane%20Austen&country=US&media=ebook&entity=ebook&limit=15");
    EXPECT_TRUE(openLibrary.requests().isEmpty());
}

TEST_F(CoverFinderTest, WithoutAnAuthorTheTermIsTheTitleAlone)
{
    find({}, std::nullopt);
    EXPECT_EQ(apple.requests()[0].queryValue(QStringLiteral("term")), title);
    EXPECT_EQ(openLibrary.requests()[0].query,
        "title=Pride%20%26%20Prejudice&author=&fields=title%2Cauthor_name%2Ccover_i&limit=15");
}

TEST_F(CoverFinderTest, OpenLibraryIsAskedNextWhenAppleHasNone)
{
    openLibrary.route(u"/search.json", LoopbackReply::ok(foundAtOpenLibrary));
    EXPECT_EQ(find(),
        (PortraitCover{.title = QStringLiteral("Pride and Prejudice"),
            .author = QStringLiteral("Jane Austen, J. A."),
            .url = *Url::parse(QStringLiteral("https://covers.example/b/id/42-L.jpg")),
            .source = QStringLiteral("Open Library")}));
    EXPECT_EQ(openLibrary.requests()[0].queryValue(QStringLiteral("author")), author);
    EXPECT_EQ(apple.requests().size(), 1);
}

TEST_F(CoverFinderTest, NobodyHavingOneIsNoFailure)
{
    EXPECT_EQ(find(), std::nullopt);
    EXPECT_EQ(apple.requests().size(), 1);
    EXPECT_EQ(openLibrary.requests().size(), 1);
}

TEST_F(CoverFinderTest, AFailureOfAppleBooksEndsTheSearch)
{
    apple.route(u"/search", LoopbackReply::withStatus(503, "Busy."));
    EXPECT_EQ(thrownBy<ServiceError>([this] { find(); })->description(), QStringLiteral("Busy."));
    apple.route(u"/search", LoopbackReply::ok("<html></html>"));
    EXPECT_THROW(find(), JSONDecodingError);
    endpoints.appleBooks = QUrl();
    EXPECT_EQ(thrownBy<ServiceError>([this] { find(); })->kind(), ServiceError::Kind::InvalidURL);
    EXPECT_TRUE(openLibrary.requests().isEmpty());
}

TEST_F(CoverFinderTest, AFailureOfOpenLibraryIsTheAnswer)
{
    openLibrary.route(u"/search.json", LoopbackReply::withStatus(500));
    EXPECT_EQ(thrownBy<ServiceError>([this] { find(); })->status(), 500);
    EXPECT_EQ(openLibrary.requests().size(), 1); // nothing is retried
}

// What the answers hold ------------------------------------------------------------------

QList<PortraitCover> ofApple(const QByteArray &results)
{
    return CoverCandidates::ofAppleBooks(R"({"results":[)" + results + "]}");
}

QString largeForm(const QByteArray &address)
{
    const auto covers = ofApple(R"({"trackName":"A","artworkUrl100":")" + address + "\"}");
    return covers.isEmpty() ? QString() : covers[0].url.text();
}

TEST(CoverCandidates, TheAddressBecomesThatOfTheLargePortrait)
{
    EXPECT_EQ(largeForm("https://a.example/x/100x100bb.jpg"), QStringLiteral("https://a.example/x/600x900bb.jpg"));
    EXPECT_EQ(largeForm("https://a.example/x/60x60bb.png"), QStringLiteral("https://a.example/x/600x900bb.png"));
    for (const char *other : {"https://a.example/x/100x100bb.jpeg", "https://a.example/x/100x100.jpg",
             "https://a.example/x/100x100bb.jpg?y=1", "https://a.example/x.jpg"}) {
        EXPECT_EQ(largeForm(other), QString::fromLatin1(other));
    }
}

TEST(CoverCandidates, AResultWithoutTitleOrPictureIsNone)
{
    const QList<PortraitCover> covers = ofApple(R"({"trackName":"A"},{"artworkUrl100":"https://a.example/1.jpg"},{},
        {"trackName":null,"artworkUrl100":"https://a.example/1.jpg"},
        {"trackName":"B","artworkUrl100":"https://a.example/2.jpg"})");
    ASSERT_EQ(covers.size(), 1);
    EXPECT_EQ(covers[0].title, QStringLiteral("B"));
    EXPECT_EQ(covers[0].author, QString());
}

TEST(CoverCandidates, AWrongTypeSpoilsTheWholeAnswer)
{
    for (const char *item : {R"({"trackName":1})", R"({"artistName":[]})", R"({"artworkUrl100":7})",
             R"({"artworkUrl100":"not a url"})", "3"}) {
        EXPECT_THROW(ofApple(item), JSONDecodingError) << item;
    }
    for (const char *body : {"", "[]", "{}", R"({"results":{}})", R"({"results":null})"}) {
        EXPECT_THROW(CoverCandidates::ofAppleBooks(body), JSONDecodingError) << body;
    }
    const QUrl covers(QStringLiteral("https://covers.example"));
    for (const char *body : {"", "{}", R"({"docs":[{}]})", R"({"docs":[{"title":null}]})",
             R"({"docs":[{"title":"A","author_name":"B"}]})", R"({"docs":[{"title":"A","author_name":[1]}]})",
             R"({"docs":[{"title":"A","cover_i":"7"}]})", R"({"docs":[{"title":"A","cover_i":7.5}]})"}) {
        EXPECT_THROW(CoverCandidates::ofOpenLibrary(body, covers), JSONDecodingError) << body;
    }
}

TEST(CoverCandidates, ADocumentWithoutACoverOrAnAddressIsSkipped)
{
    const QByteArray body
        = R"({"docs":[{"title":"A"},{"title":"B","cover_i":null},{"title":"C","author_name":null,"cover_i":9}]})";
    const auto covers = CoverCandidates::ofOpenLibrary(body, QUrl(QStringLiteral("https://covers.example")));
    ASSERT_EQ(covers.size(), 1);
    EXPECT_EQ(covers[0].author, QString());
    EXPECT_EQ(covers[0].url.text(), QStringLiteral("https://covers.example/b/id/9-L.jpg"));
    EXPECT_TRUE(CoverCandidates::ofOpenLibrary(body, QUrl()).isEmpty());
}

} // namespace

} // namespace quire
