#include "sources/ArtworkService.h"

#include "concurrency/Cancelled.h"
#include "EncodedImages.h"
#include "persistence/database/DatabaseError.h"
#include "reliability/TransportError.h"
#include "sources/NetworkClient.h"
#include "sources/ServiceError.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/ResourceUse.h"
#include "testing/TestLibrary.h"
#include "testing/ThrownFailure.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <optional>

namespace quire {

namespace {

using testing::await;
using testing::encoded;
using testing::eventually;
using testing::LoopbackReply;
using testing::plainImage;
using testing::thrownBy;

using namespace std::chrono_literals;

// A picture that is told from others by its size.
QByteArray picture(int width = 20)
{
    return encoded(plainImage(width, 30), "png");
}

// Downloads --------------------------------------------------------------------------

class ArtworkData : public ::testing::Test
{
protected:
    CoverBytes download(const QString &of) { return await(ArtworkService::artworkData(network, server.url(of), {})); }

    QString failureOf(const QString &of)
    {
        const auto failure = thrownBy<ServiceError>([&] { download(of); });
        return failure ? failure->description() : QString();
    }

    testing::LoopbackServer server;
    NetworkClient network;

    const QString path = QStringLiteral("/cover");
    const QString notUsable = QStringLiteral("The artwork source did not return a usable image.");
};

TEST_F(ArtworkData, ThePictureComesExactlyAsItWasSent)
{
    server.route(path, LoopbackReply::ok(picture(), "text/html"));
    EXPECT_EQ(download(path).bytes(), picture());
    ASSERT_EQ(server.requests().size(), 1);
    const testing::LoopbackRequest &request = server.requests()[0];
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.headers.value("accept"), "image/avif,image/webp,image/png,image/jpeg,*/*;q=0.5");
    EXPECT_EQ(request.headers.value("cache-control"), "max-age=0");
    EXPECT_EQ(request.headers.value("user-agent"), "Quire/0.3 (macOS; native build)");
}

TEST_F(ArtworkData, AStatusOutsideSuccessIsToldWithoutTheServersOwnWords)
{
    for (const int status : {300, 304, 404, 503}) {
        server.route(path, LoopbackReply::withStatus(status, picture()));
        EXPECT_EQ(failureOf(path), QStringLiteral("The artwork source returned HTTP %1.").arg(status));
        EXPECT_EQ(thrownBy<ServiceError>([&] { download(path); })->status(), status);
    }
    server.route(path, LoopbackReply::withStatus(299, picture()));
    EXPECT_EQ(download(path).bytes(), picture());
}

TEST_F(ArtworkData, APageAnEmptyBodyAndACutPictureAreNotUsable)
{
    for (const QByteArray &body : {QByteArray("<!DOCTYPE html><html></html>"), QByteArray(), picture().left(40),
             QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>")}) {
        server.route(path, LoopbackReply::ok(body, "image/png"));
        EXPECT_EQ(failureOf(path), notUsable);
    }
}

TEST_F(ArtworkData, TwentyMillionBytesPassAndOneMoreDoesNot)
{
    const QByteArray longest = testing::paddedPng(picture(), 20'000'000);
    server.route(path, LoopbackReply::ok(longest));
    EXPECT_EQ(download(path).bytes(), longest);
    const QByteArray tooLong = testing::paddedPng(picture(), 20'000'001);
    server.route(path, LoopbackReply::ok(tooLong));
    EXPECT_EQ(failureOf(path), notUsable);
    server.route(path, LoopbackReply::ok(tooLong).chunked()); // announced by nothing
    EXPECT_EQ(failureOf(path), notUsable);
}

TEST_F(ArtworkData, AnEndlessAnswerEndsAtTheLimit)
{
    server.route(path, LoopbackReply::ok(picture()).repeatedForEver());
    const testing::ResourceUse use;
    EXPECT_EQ(failureOf(path), notUsable);
    if (!testing::isInstrumented) {
        EXPECT_LT(use.peakMegabytes(), 256);
    }
}

TEST_F(ArtworkData, OtherSchemesAreRefusedAlsoAfterARedirect)
{
    for (const char *target : {"file:///etc/passwd", "data:image/png;base64,AAAA", "ftp://127.0.0.1/cover.png"}) {
        server.route(path, LoopbackReply::redirect(target));
        EXPECT_EQ(thrownBy<ServiceError>([&] { download(path); })->kind(), ServiceError::Kind::InvalidURL) << target;
        const auto direct = [&] { await(ArtworkService::artworkData(network, QUrl(QString::fromLatin1(target)), {})); };
        EXPECT_EQ(thrownBy<ServiceError>(direct)->kind(), ServiceError::Kind::InvalidURL) << target;
    }
}

TEST_F(ArtworkData, AFailureOfTheLinePassesUp)
{
    server.route(path, LoopbackReply::ok(picture()).cutAfter(20));
    EXPECT_THROW(download(path), TransportError);
    server.refuse();
    EXPECT_THROW(download(path), TransportError);
}

TEST_F(ArtworkData, ItEndsWhenItIsCancelled)
{
    server.route(path, LoopbackReply::silence());
    std::stop_source stop;
    auto downloading = ArtworkService::artworkData(network, server.url(path), stop.get_token());
    ASSERT_TRUE(eventually([this] { return server.requests().size() == 1; }));
    stop.request_stop();
    EXPECT_THROW(await(std::move(downloading)), Cancelled);
}

TEST_F(ArtworkData, ADrawnCoverIsAPngWithTheTitleOnIt)
{
    const auto drawn = await(ArtworkService::generatedPlaceholder(QStringLiteral("Emma")));
    ASSERT_TRUE(drawn);
    EXPECT_TRUE(drawn->bytes().startsWith("\x89PNG"));
    EXPECT_NE(drawn, await(ArtworkService::generatedPlaceholder(QString())));
}

// The pass -------------------------------------------------------------------------------

class ArtworkPass : public ::testing::Test
{
protected:
    void addBook(const QString &title, const std::optional<QString> &path = std::nullopt)
    {
        library.execute("INSERT INTO goodreads_books (goodreads_id, title, author, shelf, cover_url)"
                        " VALUES (?, ?, '', 'read', ?)",
            {title, title, path ? SQLiteValue(server.url(*path).toString()) : SQLiteValue()});
    }

    void addAudiobook(const QString &title, const QString &path)
    {
        library.execute("INSERT INTO audible_books (asin, title, status, cover_url) VALUES (?, ?, 'read', ?)",
            {title, title, server.url(path).toString()});
    }

    QCoro::Task<ArtworkCacheResult> begin()
    {
        return ArtworkService::cacheMissingArtwork(library.store(), network, clock, stop.get_token());
    }

    // Ends every pause of the pass at once.
    ArtworkCacheResult runPass()
    {
        std::optional<ArtworkCacheResult> result;
        const auto task = finish(begin(), result);
        EXPECT_TRUE(eventually([&] {
            if (clock.sleepers() > 0) {
                clock.advance(1s);
            }
            return result.has_value();
        }));
        return result.value_or(ArtworkCacheResult{-1, -1, -1});
    }

    static QCoro::Task<> finish(QCoro::Task<ArtworkCacheResult> task, std::optional<ArtworkCacheResult> &result)
    {
        result = co_await task;
    }

    QByteArray cover(const char *table, const QString &title) const
    {
        return library
            .scalar(qPrintable(QStringLiteral("SELECT cover_data FROM %1 WHERE title = ?").arg(QLatin1String(table))),
                {title})
            .data()
            .value_or(QByteArray());
    }

    QString source(const QString &title) const
    {
        return library.scalar("SELECT cover_data_source FROM goodreads_books WHERE title = ?", {title})
            .optionalString()
            .value_or(QString());
    }

    testing::TestLibrary library;
    testing::ManualClock &clock = library.clock();
    testing::LoopbackServer server;
    NetworkClient network;
    std::stop_source stop;

    const QString placeholder = QStringLiteral("generated:placeholder");
};

TEST_F(ArtworkPass, WithNothingToDoItDoesNothing)
{
    EXPECT_EQ(runPass(), (ArtworkCacheResult{0, 0, 0}));
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(ArtworkPass, OneTitleIsOneRequest)
{
    server.route(u"/1", LoopbackReply::ok(picture()));
    addBook(QStringLiteral("Emma"), QStringLiteral("/1"));
    EXPECT_EQ(runPass(), (ArtworkCacheResult{1, 1, 0}));
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_EQ(cover("goodreads_books", QStringLiteral("Emma")), picture());
    EXPECT_EQ(source(QStringLiteral("Emma")), server.url(u"/1").toString());
    EXPECT_EQ(runPass(), (ArtworkCacheResult{0, 0, 0}));
}

TEST_F(ArtworkPass, ATitleWithoutAnAddressGetsADrawnCoverOnceAndNoNetwork)
{
    addBook(QStringLiteral("Emma"));
    EXPECT_EQ(runPass(), (ArtworkCacheResult{1, 0, 1}));
    EXPECT_TRUE(cover("goodreads_books", QStringLiteral("Emma")).startsWith("\x89PNG"));
    EXPECT_EQ(source(QStringLiteral("Emma")), placeholder);
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_EQ(runPass(), (ArtworkCacheResult{0, 0, 0}));
}

TEST_F(ArtworkPass, APageInPlaceOfAPictureIsTriedThreeTimesAndAgainInTheNextPass)
{
    server.route(u"/1", LoopbackReply::ok("<html></html>", "image/png"));
    addBook(QStringLiteral("Emma"), QStringLiteral("/1"));
    EXPECT_EQ(runPass(), (ArtworkCacheResult{1, 0, 1}));
    EXPECT_EQ(server.requests().size(), 3);
    EXPECT_THAT(clock.requestedSleeps(), ::testing::ElementsAre(450ms, 900ms));
    EXPECT_EQ(source(QStringLiteral("Emma")), placeholder);

    server.route(u"/1", LoopbackReply::ok(picture()));
    EXPECT_EQ(runPass(), (ArtworkCacheResult{1, 1, 0}));
    EXPECT_EQ(cover("goodreads_books", QStringLiteral("Emma")), picture());
}

TEST_F(ArtworkPass, TheThirdAttemptCounts)
{
    server.route(u"/1", {LoopbackReply::withStatus(503), LoopbackReply::hangUp(), LoopbackReply::ok(picture())});
    addBook(QStringLiteral("Emma"), QStringLiteral("/1"));
    EXPECT_EQ(runPass(), (ArtworkCacheResult{1, 1, 0}));
}

TEST_F(ArtworkPass, TwoRunAtATimeAndEachCoverLandsOnItsOwnTitle)
{
    constexpr int titles = 9;
    for (int number = 0; number < titles; ++number) {
        // The earlier of two comes the later.
        const auto delay = number % 2 == 0 ? 60ms : 0ms;
        server.route(QStringLiteral("/%1").arg(number), LoopbackReply::ok(picture(20 + number)).after(delay));
        const QString path = QStringLiteral("/%1").arg(number);
        if (number < 5) {
            addBook(QStringLiteral("Title %1").arg(number), path);
        } else {
            addAudiobook(QStringLiteral("Title %1").arg(number), path);
        }
    }
    std::optional<ArtworkCacheResult> result;
    const auto task = finish(begin(), result);
    qsizetype most = 0;
    EXPECT_TRUE(eventually([&] {
        most = std::max(most, server.connections());
        return result.has_value();
    }));
    EXPECT_EQ(result, (ArtworkCacheResult{titles, titles, 0}));
    EXPECT_EQ(most, 2);
    for (int number = 0; number < titles; ++number) {
        EXPECT_EQ(cover(number < 5 ? "goodreads_books" : "audible_books", QStringLiteral("Title %1").arg(number)),
            picture(20 + number));
    }
}

TEST_F(ArtworkPass, AStoreThatFailsEndsItAndWhatIsUnderWay)
{
    server.route(u"/1", LoopbackReply::ok(picture()));
    server.route(u"/2", LoopbackReply::silence());
    server.route(u"/3", LoopbackReply::ok(picture()));
    addBook(QStringLiteral("One"), QStringLiteral("/1"));
    addBook(QStringLiteral("Two"), QStringLiteral("/2"));
    addBook(QStringLiteral("Three"), QStringLiteral("/3"));
    library.executeScript(
        "CREATE TRIGGER refused BEFORE UPDATE OF cover_data ON goodreads_books WHEN NEW.title = 'Three'"
        " BEGIN SELECT RAISE(ABORT, 'no room for covers'); END;");
    EXPECT_THROW(await(begin()), DatabaseError);
    EXPECT_EQ(cover("goodreads_books", QStringLiteral("One")), picture()); // stored before
    EXPECT_EQ(cover("goodreads_books", QStringLiteral("Two")), QByteArray());
    EXPECT_TRUE(eventually([this] { return server.connections() <= 1; })); // an idle one may stay open
}

TEST_F(ArtworkPass, OneThatIsCancelledStoresNothingForWhatItInterrupts)
{
    server.route(u"/1", LoopbackReply::silence());
    addBook(QStringLiteral("One"), QStringLiteral("/1"));
    addBook(QStringLiteral("Two"), QStringLiteral("/1"));
    addBook(QStringLiteral("Three"));
    auto running = begin();
    ASSERT_TRUE(eventually([this] { return server.requests().size() == 2; }));
    stop.request_stop();
    EXPECT_THROW(await(std::move(running)), Cancelled);
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM goodreads_books WHERE cover_data IS NOT NULL").intValue(), 0);
}

TEST_F(ArtworkPass, AStoreThatIsClosedFailsAtOnce)
{
    library.close();
    EXPECT_THROW(await(begin()), DatabaseError);
}

} // namespace

} // namespace quire
