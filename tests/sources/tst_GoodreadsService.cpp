#include "sources/GoodreadsService.h"

#include "concurrency/Cancelled.h"
#include "persistence/database/DatabaseError.h"
#include "records/DateParser.h"
#include "reliability/QuireBackupManifest.h"
#include "reliability/QuireReliabilityError.h"
#include "sources/NetworkClient.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/TestLibrary.h"
#include "testing/ThrownFailure.h"

#include <QTimer>

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;
using ::testing::IsEmpty;

namespace {

const QString feedPath = QStringLiteral("/review/list_rss/42");

QByteArray feed(const QByteArray &items)
{
    return "<rss><channel>" + items + "</channel></rss>";
}

QByteArray item(const QByteArray &id, const QByteArray &rest = {})
{
    return "<item><book_id>" + id + "</book_id><title>Title " + id + "</title>" + rest + "</item>";
}

class GoodreadsServiceTest : public ::testing::Test
{
protected:
    // Backed up just now, so that no sync makes a backup first.
    GoodreadsServiceTest()
    {
        configure(QStringLiteral("42"), QStringLiteral("secret"));
        set(QStringLiteral("lastBackupAt"), DateParser::iso8601(library.clock().now()));
    }

    void set(const QString &key, const QString &value) { await(library.store().setSetting(key, value)); }

    void configure(const QString &userID, const QString &key)
    {
        await(library.store().setSettings(
            {{QStringLiteral("goodreadsUserId"), userID}, {QStringLiteral("goodreadsRssKey"), key}}));
    }

    // What each request gets, by shelf; all others get `everywhereElse`.
    void answer(const QMap<QString, LoopbackReply> &byShelf, const LoopbackReply &everywhereElse)
    {
        server.route(feedPath, [byShelf, everywhereElse](const LoopbackRequest &request) {
            return byShelf.value(request.queryValue(QStringLiteral("shelf")), everywhereElse);
        });
    }

    GoodreadsSyncResult synchronize() { return await(start()); }

    QCoro::Task<GoodreadsSyncResult> start()
    {
        ServiceEndpoints endpoints = ServiceEndpoints::standard();
        endpoints.goodreads = goodreads;
        return GoodreadsService::synchronize(library.store(), network, endpoints, library.clock(), stop.get_token());
    }

    std::optional<QString> lastSync() { return await(library.store().setting(QStringLiteral("goodreadsLastSync"))); }

    // The library's book of that id; ends the test when there is none.
    Book book(const char *id)
    {
        const QList<Book> books = await(library.store().books());
        for (const Book &candidate : books) {
            if (candidate.goodreadsID == QString::fromLatin1(id)) {
                return candidate;
            }
        }
        throw std::runtime_error("no such book");
    }

    qsizetype bookCount() { return await(library.store().books()).size(); }

    TestLibrary library;
    LoopbackServer server;
    QUrl goodreads = server.origin();
    NetworkClient network;
    std::stop_source stop;
};

const QString all = QStringLiteral("#ALL#");
const QString currentlyReading = QStringLiteral("currently-reading");
const QString finished = QStringLiteral("read");
const QString toRead = QStringLiteral("to-read");
const QString didNotFinish = QStringLiteral("did-not-finish");

} // namespace

// Not configured. -----------------------------------------------------------------

class MissingCredentials : public GoodreadsServiceTest,
                           public ::testing::WithParamInterface<std::pair<const char *, const char *>>
{
};

TEST_P(MissingCredentials, AreAnAnswerAndNoFailure)
{
    configure(QString::fromLatin1(GetParam().first), QString::fromLatin1(GetParam().second));
    const GoodreadsSyncResult expected{
        .message = QStringLiteral("Goodreads User ID and RSS key are not configured."), .warnings = {}};
    EXPECT_EQ(synchronize(), expected);
    EXPECT_THAT(server.requests(), IsEmpty());
    EXPECT_EQ(lastSync(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Blanks, MissingCredentials,
    ::testing::Values(std::pair("", ""), std::pair("42", " \n"), std::pair("\t ", "secret")));

// What is asked. --------------------------------------------------------------------

TEST_F(GoodreadsServiceTest, AsksForAllShelvesAndThenForEachOfTheFour)
{
    answer({}, LoopbackReply::ok(feed("")));
    synchronize();
    QByteArrayList targets;
    for (const LoopbackRequest &request : server.requests()) {
        targets.append(request.method + " " + request.target);
    }
    const QByteArray path = "GET /review/list_rss/42?key=secret&shelf=";
    EXPECT_EQ(targets,
        QByteArrayList({path + "%23ALL%23&per_page=200", path + "currently-reading&per_page=100",
            path + "read&per_page=200", path + "to-read&per_page=100", path + "did-not-finish&per_page=100"}));
}

TEST_F(GoodreadsServiceTest, CredentialsAreTrimmedAndEscaped)
{
    configure(QStringLiteral(" 4 2?\n"), QStringLiteral("\ta&b=c+d%#é "));
    server.routeEverythingElse([](const LoopbackRequest &) { return LoopbackReply::ok(feed("")); });
    EXPECT_TRUE(synchronize().succeeded);
    EXPECT_EQ(server.requests().first().target,
        "/review/list_rss/4%202%3F?key=a%26b%3Dc%2Bd%25%23%C3%A9&shelf=%23ALL%23&per_page=200");
    EXPECT_EQ(server.requests().first().queryValue(QStringLiteral("key")), QStringLiteral("a&b=c+d%#é"));
}

TEST_F(GoodreadsServiceTest, RequestsNeverOverlap)
{
    qsizetype open = 0;
    server.route(feedPath, [&](const LoopbackRequest &) {
        EXPECT_EQ(server.requests().size(), ++open);
        return LoopbackReply::ok(feed("")).after(20ms);
    });
    synchronize();
    EXPECT_EQ(open, 5);
}

// What is merged. ----------------------------------------------------------------------

TEST_F(GoodreadsServiceTest, PutsTheBooksOfTheFeedIntoTheLibrary)
{
    answer({{all, LoopbackReply::ok(feed(item("1") + item("2")))}}, LoopbackReply::ok(feed("")));
    const GoodreadsSyncResult expected{.count = 2, .succeeded = true, .warnings = {}};
    EXPECT_EQ(synchronize(), expected);
    EXPECT_EQ(bookCount(), 2);
    EXPECT_EQ(book("1").title, QStringLiteral("Title 1"));
}

TEST_F(GoodreadsServiceTest, TheLastRequestThatCarriesABookWins)
{
    answer({{all, LoopbackReply::ok(feed(item("1", "<user_rating>2</user_rating><isbn>9</isbn>")))},
               {finished, LoopbackReply::ok(feed(item("1", "<user_rating>5</user_rating>")))}},
        LoopbackReply::ok(feed("")));
    EXPECT_EQ(synchronize().count, 1);
    EXPECT_EQ(book("1").userRating, 5);
    EXPECT_EQ(book("1").isbn, std::nullopt); // the whole record, not field by field
}

TEST_F(GoodreadsServiceTest, AbandonedBeatsRead)
{
    answer({{finished, LoopbackReply::ok(feed(item("1")))}, {didNotFinish, LoopbackReply::ok(feed(item("1")))}},
        LoopbackReply::ok(feed("")));
    synchronize();
    EXPECT_EQ(book("1").shelf, didNotFinish);
}

TEST_F(GoodreadsServiceTest, AShelfOfTheReadersOwnCountsAsTheShelfAskedFor)
{
    const QByteArray own = "<user_shelves>sci-fi</user_shelves>";
    answer({{all, LoopbackReply::ok(feed(item("1", own) + item("2", own)))},
               {toRead, LoopbackReply::ok(feed(item("2", own)))}},
        LoopbackReply::ok(feed("")));
    synchronize();
    EXPECT_EQ(book("1").shelf, finished);
    EXPECT_EQ(book("2").shelf, toRead);
}

TEST_F(GoodreadsServiceTest, IdsInDifferentLetterCaseAreDifferentBooks)
{
    answer({{all, LoopbackReply::ok(feed(item("a1") + item("A1") + item(" a1 ")))}}, LoopbackReply::ok(feed("")));
    EXPECT_EQ(synchronize().count, 2);
    EXPECT_EQ(bookCount(), 2);
}

TEST_F(GoodreadsServiceTest, NotesTheMomentOfTheRun)
{
    answer({}, LoopbackReply::ok(feed("")));
    synchronize();
    EXPECT_EQ(lastSync(), DateParser::iso8601(library.clock().now()));
    EXPECT_EQ(lastSync(), QStringLiteral("2026-11-21T12:00:00.000Z"));
}

// What goes wrong. ------------------------------------------------------------------------

TEST_F(GoodreadsServiceTest, WebPagesInsteadOfFeedsAreFourWarnings)
{
    answer({}, LoopbackReply::ok("<!DOCTYPE html><html><body>Sign in</body></html>", "text/html"));
    const GoodreadsSyncResult result = synchronize();
    EXPECT_FALSE(result.succeeded);
    EXPECT_EQ(result.warnings,
        QStringList({QStringLiteral("currently-reading: feed body was not RSS"),
            QStringLiteral("read: feed body was not RSS"), QStringLiteral("to-read: feed body was not RSS"),
            QStringLiteral("did-not-finish: feed body was not RSS")}));
    EXPECT_EQ(result.message, result.warnings.first());
    EXPECT_EQ(result.count, 0);
}

TEST_F(GoodreadsServiceTest, OneShelfThatAnswersIsASuccessThatKeepsItsWarnings)
{
    answer({{toRead, LoopbackReply::ok(feed(""))}}, LoopbackReply::withStatus(500));
    const GoodreadsSyncResult result = synchronize();
    EXPECT_TRUE(result.succeeded);
    EXPECT_EQ(result.count, 0);
    EXPECT_EQ(result.message, std::nullopt);
    EXPECT_EQ(result.warnings.size(), 4);
}

TEST_F(GoodreadsServiceTest, BooksOfTheRequestForAllAreASuccessOnTheirOwn)
{
    answer({{all, LoopbackReply::ok(feed(item("1")))}}, LoopbackReply::ok("<html/>"));
    const GoodreadsSyncResult result = synchronize();
    EXPECT_TRUE(result.succeeded);
    EXPECT_EQ(result.count, 1);
    EXPECT_EQ(result.warnings.size(), 4);
}

TEST_F(GoodreadsServiceTest, AnEmptyFeedOfAllShelvesIsNoSuccessOnItsOwn)
{
    answer({{all, LoopbackReply::ok(feed(""))}}, LoopbackReply::withStatus(404));
    EXPECT_FALSE(synchronize().succeeded);
}

TEST_F(GoodreadsServiceTest, AServersOwnTextIsTheWarning)
{
    answer({}, LoopbackReply::withStatus(503, "Goodreads is over capacity."));
    const GoodreadsSyncResult result = synchronize();
    EXPECT_FALSE(result.succeeded);
    EXPECT_EQ(result.warnings.size(), 5);
    EXPECT_EQ(result.message, QStringLiteral("All shelves: Goodreads is over capacity."));
    EXPECT_EQ(result.warnings.last(), QStringLiteral("did-not-finish: Goodreads is over capacity."));
}

TEST_F(GoodreadsServiceTest, ARunThatFoundNothingStillNotesItsMoment)
{
    answer({}, LoopbackReply::withStatus(503));
    EXPECT_FALSE(synchronize().succeeded);
    EXPECT_NE(lastSync(), std::nullopt);
}

TEST_F(GoodreadsServiceTest, AServerThatRefusesIsFiveWarnings)
{
    server.refuse();
    const GoodreadsSyncResult result = synchronize();
    EXPECT_EQ(result.warnings.size(), 5);
    EXPECT_EQ(result.message, QStringLiteral("All shelves: Connection refused"));
}

TEST_F(GoodreadsServiceTest, ARedirectToAFileIsAnInvalidUrl)
{
    answer({}, LoopbackReply::redirect("file:///etc/hostname"));
    EXPECT_EQ(synchronize().message, QStringLiteral("All shelves: The service URL could not be created."));
}

TEST_F(GoodreadsServiceTest, AnEndpointThatCouldNotBeReadIsAnInvalidUrl)
{
    goodreads = QUrl();
    EXPECT_EQ(synchronize().message, QStringLiteral("All shelves: The service URL could not be created."));
}

TEST_F(GoodreadsServiceTest, AFeedCutInTheMiddleOfTheLineIsAWarning)
{
    answer({{all, LoopbackReply::ok(feed(item("1"))).cutAfter(30)}}, LoopbackReply::ok(feed(item("2"))));
    const GoodreadsSyncResult result = synchronize();
    EXPECT_EQ(result.warnings, QStringList(QStringLiteral("All shelves: Connection closed")));
    EXPECT_EQ(result.count, 1);
}

TEST_F(GoodreadsServiceTest, AFeedCutByItsAuthorGivesItsWholeItems)
{
    answer({{all, LoopbackReply::ok("<rss><channel>" + item("1") + "<item><book_id>2</book")}},
        LoopbackReply::ok(feed("")));
    const GoodreadsSyncResult result = synchronize();
    EXPECT_EQ(result.count, 1);
    EXPECT_THAT(result.warnings, IsEmpty());
}

TEST_F(GoodreadsServiceTest, ARefusedImportEndsTheRunAndChangesNothing)
{
    answer(
        {{all, LoopbackReply::ok(feed(item("1") + "<item><book_id>2</book_id></item>"))}}, LoopbackReply::ok(feed("")));
    const auto failure = thrownBy<QuireReliabilityError>([this] { synchronize(); });
    EXPECT_THAT(failure->description().toStdString(), ::testing::EndsWith("a Goodreads record had no title"));
    EXPECT_EQ(bookCount(), 0);
    EXPECT_EQ(lastSync(), std::nullopt);
}

TEST_F(GoodreadsServiceTest, ABackupThatIsDueComesBeforeTheImport)
{
    answer({}, LoopbackReply::ok(feed(item("1"))));
    library.clock().advance(24h);

    EXPECT_EQ(synchronize().count, 1);

    const QString backup = await(library.store().setting(QStringLiteral("lastKnownGoodBackup"))).value_or(QString());
    EXPECT_EQ(QuireBackupManifest::read(backup + QStringLiteral(".manifest.json"))->bookCount, 0);
}

TEST_F(GoodreadsServiceTest, ABackupThatFailsEndsTheRunBeforeAnyRequest)
{
    library.clock().advance(24h);
    set(QStringLiteral("backupPath"), QStringLiteral("relative"));

    const auto failure = thrownBy<DatabaseError>([this] { synchronize(); });

    EXPECT_EQ(failure->kind(), DatabaseError::Kind::Backup);
    EXPECT_THAT(server.requests(), IsEmpty());
    EXPECT_EQ(lastSync(), std::nullopt);
}

TEST_F(GoodreadsServiceTest, AClosedLibraryEndsTheRunBeforeAnyRequest)
{
    library.close();
    const auto failure = thrownBy<DatabaseError>([this] { synchronize(); });
    EXPECT_EQ(failure->kind(), DatabaseError::Kind::MissingDatabase);
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(GoodreadsServiceTest, AStopEndsTheRunAndChangesNothing)
{
    answer({{all, LoopbackReply::ok(feed(item("1")))}}, LoopbackReply::silence());
    auto run = start();
    ASSERT_TRUE(eventually([this] { return server.requests().size() == 2; }));
    stop.request_stop();
    thrownBy<Cancelled>([&run] { await(std::move(run)); });
    EXPECT_EQ(server.requests().size(), 2);
    EXPECT_EQ(bookCount(), 0);
    EXPECT_EQ(lastSync(), std::nullopt);
}
