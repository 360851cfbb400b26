#include "sources/CoverRefreshing.h"

#include "concurrency/Cancelled.h"
#include "EncodedImages.h"
#include "persistence/database/DatabaseError.h"
#include "sources/NetworkClient.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/TestLibrary.h"

#include <QDir>

#include <gtest/gtest.h>

namespace quire {

namespace {

using testing::await;
using testing::eventually;
using testing::LoopbackReply;

class CoverRefreshing : public ::testing::Test
{
protected:
    CoverRefreshing()
    {
        endpoints.appleBooks = server.origin();
        endpoints.openLibrary = server.origin();
        endpoints.openLibraryCovers = server.origin();
        server.route(u"/search", LoopbackReply::ok(R"({"results":[]})"));
        server.route(u"/search.json", LoopbackReply::ok(R"({"docs":[]})"));
        server.route(u"/cover.png", LoopbackReply::ok(picture));
    }

    void addAudiobook(const QString &title, const std::optional<QString> &author = std::nullopt)
    {
        library.execute("INSERT INTO audible_books (asin, title, author, status, cover_url, cover_data)"
                        " VALUES (?, ?, ?, 'read', 'https://old.example/1.jpg', x'0102')",
            {title, title, author ? SQLiteValue(*author) : SQLiteValue()});
    }

    // A cover of that title in the reader's own library.
    void addBook(const QString &title, const QString &path = QStringLiteral("/cover.png"))
    {
        library.execute("INSERT INTO goodreads_books (goodreads_id, title, author, shelf, cover_url)"
                        " VALUES (?, ?, 'Ann Author', 'read', ?)",
            {title, title, server.url(path).toString()});
    }

    QCoro::Task<CoverRefreshResult> begin()
    {
        return AudibleService::refreshCovers(library.store(), network, endpoints, stop.get_token());
    }

    CoverRefreshResult refresh() { return await(begin()); }

    QByteArray coverOf(const QString &title)
    {
        return library.scalar("SELECT cover_data FROM audible_books WHERE title = ?", {title})
            .data()
            .value_or(QByteArray());
    }

    qsizetype backups() const
    {
        return QDir(library.file(QStringLiteral("Database Backups"))).entryList({QStringLiteral("*.db")}).size();
    }

    testing::TestLibrary library;
    testing::LoopbackServer server;
    NetworkClient network;
    ServiceEndpoints endpoints = ServiceEndpoints::standard();
    std::stop_source stop;

    const QByteArray picture = testing::encoded(testing::plainImage(20, 30), "png");
    const QByteArray old = QByteArray::fromHex("0102");
};

TEST_F(CoverRefreshing, WithoutAudiobooksNothingIsAsked)
{
    EXPECT_EQ(refresh(), (CoverRefreshResult{0, 0, 0}));
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(CoverRefreshing, AFoundCoverReplacesTheOldOneWithItsAddress)
{
    addAudiobook(QStringLiteral("Persuasion"), QStringLiteral("Ann Author"));
    addAudiobook(QStringLiteral("Northanger Abbey"));
    addBook(QStringLiteral("Persuasion: A Novel"));
    EXPECT_EQ(refresh(), (CoverRefreshResult{2, 1, 1}));
    EXPECT_EQ(coverOf(QStringLiteral("Persuasion")), picture);
    EXPECT_EQ(coverOf(QStringLiteral("Northanger Abbey")), old);
    const auto row = library.query("SELECT cover_url, cover_data_source FROM audible_books WHERE title = 'Persuasion'");
    EXPECT_EQ(row[0].string(QStringLiteral("cover_url"), {}), server.url(u"/cover.png").toString());
    EXPECT_EQ(row[0].string(QStringLiteral("cover_data_source"), {}), server.url(u"/cover.png").toString());
    EXPECT_EQ(backups(), 1); // from before it
}

TEST_F(CoverRefreshing, AnAudiobookWithoutAnAuthorIsLookedForWithoutOne)
{
    addAudiobook(QStringLiteral("Dune"));
    addBook(QStringLiteral("Dune"));
    EXPECT_EQ(refresh(), (CoverRefreshResult{1, 0, 1})); // too short a title to go by alone
    EXPECT_EQ(server.requests()[0].queryValue(QStringLiteral("term")), QStringLiteral("Dune"));
    EXPECT_EQ(server.requests()[1].queryValue(QStringLiteral("author")), QString());
}

TEST_F(CoverRefreshing, AFinderOrADownloadThatFailsLeavesTheArtworkAndIsNotRetried)
{
    addAudiobook(QStringLiteral("Northanger Abbey"));
    addAudiobook(QStringLiteral("Persuasion"));
    addBook(QStringLiteral("Persuasion"), QStringLiteral("/gone.png"));
    server.route(u"/search", LoopbackReply::withStatus(503));
    EXPECT_EQ(refresh(), (CoverRefreshResult{2, 0, 2}));
    EXPECT_EQ(coverOf(QStringLiteral("Persuasion")), old);
    EXPECT_EQ(coverOf(QStringLiteral("Northanger Abbey")), old);
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(CoverRefreshing, AStoreThatFailsEndsTheRun)
{
    addAudiobook(QStringLiteral("Persuasion"));
    addBook(QStringLiteral("Persuasion"));
    library.executeScript("CREATE TRIGGER refused BEFORE UPDATE OF cover_data ON audible_books"
                          " BEGIN SELECT RAISE(ABORT, 'no room for covers'); END;");
    EXPECT_THROW(refresh(), DatabaseError);
    library.close();
    EXPECT_THROW(refresh(), DatabaseError);
}

TEST_F(CoverRefreshing, ItEndsWhenItIsCancelled)
{
    addAudiobook(QStringLiteral("Persuasion"));
    server.route(u"/search", LoopbackReply::silence());
    auto running = begin();
    ASSERT_TRUE(eventually([this] { return server.requests().size() == 1; }));
    stop.request_stop();
    EXPECT_THROW(await(std::move(running)), Cancelled);
}

} // namespace

} // namespace quire
