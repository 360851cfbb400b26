// Documents and servers that mean no good: each ends within two seconds and
// 200 MB, with what the feed's rules say of it.

#include "sources/GoodreadsService.h"
#include "sources/GoodreadsXMLParser.h"
#include "sources/NetworkClient.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/ResourceUse.h"
#include "testing/TestLibrary.h"

#include <QStringEncoder>
#include <QTimer>

#include <gmock/gmock.h>

#include <malloc.h>

using namespace quire;
using namespace quire::testing;

namespace {

constexpr qsizetype longest = NetworkClient::defaultBodyCap;

struct HostileFeed
{
    const char *name;
    QByteArray (*document)();
    qsizetype books; // that the reader gets of it
};

void PrintTo(const HostileFeed &feed, std::ostream *out)
{
    *out << feed.name;
}

const QByteArray opening = "<rss><channel><item><book_id>1</book_id><title>A</title></item>";

// `opening`, then `piece` again and again, as long as a feed may be.
QByteArray filledWith(const QByteArray &piece, const QByteArray &before = {})
{
    QByteArray document;
    document.reserve(longest);
    document += opening + before;
    while (document.size() + piece.size() <= longest) {
        document += piece;
    }
    return document;
}

QByteArray ordinaryItem()
{
    return "<item><guid><![CDATA[https://www.goodreads.com/review/show/1]]></guid><book_id>9843479</book_id>"
           "<title>The Sea, the Sea (Booker, #1)</title>"
           "<book_large_image_url><![CDATA[https://i.gr-assets.com/images/S/books/1355943188l/9843479.jpg]]></"
           "book_large_image_url>"
           "<book_description><![CDATA["
        + QByteArray(
            "Charles Arrowby, leading light of England's <i>theatrical</i> set, retires &amp; writes.<br /><br />")
              .repeated(20)
        + "]]></book_description><book id=\"9843479\"><num_pages>495</num_pages></book><author_name>Iris "
          "Murdoch</author_name>"
          "<isbn>1101495650</isbn><user_rating>five</user_rating>"
          "<user_date_added><![CDATA[Mon, 07 Sep 2026 07:42:42 -0700]]></user_date_added>"
          "<user_shelves><![CDATA[currently-reading, classics]]></user_shelves><average_rating>4.05</average_rating>"
          "<book_published>1978</book_published></item>\n";
}

QByteArray attributes(int count)
{
    QByteArray tag = "<a";
    for (int i = 0; i < count; ++i) {
        tag += " a" + QByteArray::number(i) + "=''";
    }
    return tag + "/>";
}

QByteArray itemWith(const char *element, const QByteArray &text)
{
    return opening + "<item><book_id>2</book_id><" + element + "><![CDATA[" + text + "]]></" + element + "></item>";
}

QByteArray entityBomb()
{
    QByteArray document = "<!DOCTYPE rss [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 30; ++i) {
        const QByteArray inner = "&a" + QByteArray::number(i - 1) + ";";
        document += "<!ENTITY a" + QByteArray::number(i) + " \"" + inner + inner + "\">";
    }
    return document + "]>" + opening + "<item><book_id>2</book_id><title>&a29;</title></item>";
}

const std::vector<HostileFeed> feeds{
    {"OrdinaryItems", [] { return filledWith(ordinaryItem()); },
        1 + (longest - opening.size()) / ordinaryItem().size()},
    {"TinyItems", [] { return filledWith("<item><book_id>1</book_id></item>"); }, GoodreadsXMLParser::maximumBooks},
    {"Nesting410KiB", [] { return opening + QByteArray("<a><b>").repeated(70'000); }, 1},
    {"Nesting", [] { return filledWith("<a>"); }, 1},
    {"ItemsInItems", [] { return filledWith("<item>"); }, 1},
    {"Siblings", [] { return filledWith("<a/>"); }, 1},
    {"OneText", [] { return filledWith("x"); }, 1},
    {"OneTextInAnItem", [] { return filledWith("x", "<item><book_id>2</book_id><title>"); }, 1},
    {"WhiteSpace", [] { return filledWith(" "); }, 1},
    {"EscapedText", [] { return filledWith("&amp;", "<item><title>"); }, 1},
    {"OneCData", [] { return filledWith("x", "<item><title><![CDATA["); }, 1},
    {"ManyCData", [] { return filledWith("<![CDATA[]]>", "<item><title>"); }, 1},
    {"OneComment", [] { return filledWith("x", "<!--"); }, 1},
    {"ManyComments", [] { return filledWith("<!---->"); }, 1},
    {"ManyInstructions", [] { return filledWith("<?a?>"); }, 1},
    {"OneInstruction", [] { return filledWith("x", "<?a "); }, 1},
    {"OneName", [] { return filledWith("x", "<"); }, 1},
    {"OneAttributeValue", [] { return filledWith("x", "<a b='"); }, 1},
    {"OneTagOfAttributes", [] { return filledWith(" a='b'", "<a"); }, 1},
    {"TagsOfAttributes", [] { return filledWith(attributes(32)); }, 1},
    {"OpenAngles", [] { return filledWith("<"); }, 1},
    {"OpenAnglesInADescription", [] { return itemWith("book_description", QByteArray("<").repeated(4'000'000)); }, 2},
    {"LineBreaksInADescription", [] { return itemWith("book_description", QByteArray("< br").repeated(1'000'000)); },
        2},
    {"AmpersandsInADescription", [] { return itemWith("book_description", QByteArray("&amp;").repeated(800'000)); }, 2},
    {"MarksInADescription", [] { return itemWith("book_description", QByteArray("\xcc\x81").repeated(2'000'000)); }, 2},
    {"BracketsInATitle", [] { return itemWith("title", QByteArray("(#").repeated(1'000'000) + "x)"); }, 2},
    {"BlanksInATitle", [] { return itemWith("title", "a" + QByteArray(4'000'000, ' ') + "(#1) b)"); }, 2},
    {"EntityBomb", entityBomb, 1},
    {"DeclaredEntities",
        [] { return "<!DOCTYPE rss [" + QByteArray("<!ENTITY aaaa 'b'>").repeated(3'600'000) + "]>" + opening; }, 0},
    {"QuotesInTheDocumentType", [] { return "<!DOCTYPE rss " + QByteArray("'").repeated(60'000'001) + opening; }, 0},
    {"BadBytes", [] { return filledWith("\xff"); }, 1},
    {"BadBytesInCData", [] { return filledWith("<![CDATA[\xff]]>"); }, 1},
    {"Utf16",
        [] {
            QStringEncoder encode(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
            QByteArray document = encode.encode(QString::fromUtf8(opening));
            const QByteArray item = QStringEncoder(QStringConverter::Utf16LE).encode(QString::fromUtf8(ordinaryItem()));
            document.reserve(longest);
            while (document.size() + item.size() <= longest) {
                document += item;
            }
            return document;
        },
        1 + (longest - 2 * opening.size() - 2) / (2 * ordinaryItem().size())},
    {"Zeros", [] { return QByteArray(longest, '\0'); }, 0},
};

class HostileFeedTest : public ::testing::TestWithParam<HostileFeed>
{
protected:
    static void expectCheap(const ResourceUse &use, const char *name, qint64 milliseconds)
    {
        const qint64 megabytes = use.peakMegabytes();
        std::printf("[ MEASURED ] %-28s %5lld ms %4lld MB\n", name, static_cast<long long>(milliseconds),
            static_cast<long long>(megabytes));
        EXPECT_LE(milliseconds, 2000 * patience);
        if (!isInstrumented) {
            EXPECT_LE(megabytes, 200);
        }
    }
};

} // namespace

TEST_P(HostileFeedTest, IsReadInBoundedTimeAndMemory)
{
    QByteArray document = GetParam().document();
    ASSERT_LE(document.size(), longest);
    malloc_trim(0);
    const ResourceUse use;
    GoodreadsXMLParser parser(std::nullopt, QUrl(QStringLiteral("https://www.goodreads.com")));
    parser.parse(std::move(document));
    expectCheap(use, GetParam().name, use.processorMilliseconds());
    EXPECT_EQ(parser.books().size(), GetParam().books);
}

INSTANTIATE_TEST_SUITE_P(Documents, HostileFeedTest, ::testing::ValuesIn(feeds),
    [](const auto &test) { return std::string(test.param.name); });

namespace {

class HostileServerTest : public HostileFeedTest
{
protected:
    // One GET, whatever comes of it, measured.
    void get(const char *name, std::chrono::milliseconds timeout = 1s)
    {
        malloc_trim(0);
        const ResourceUse use;
        NetworkClient client;
        EXPECT_ANY_THROW(await(client.get(server.url(u"/"), timeout, {})));
        expectCheap(use, name, use.milliseconds());
    }

    LoopbackServer server;
};

using HostileServer = HostileServerTest;

} // namespace

TEST_F(HostileServer, ThatRefuses)
{
    server.refuse();
    get("Refuses");
}

TEST_F(HostileServer, ThatNeverAnswers)
{
    server.route(u"/", LoopbackReply::silence());
    get("NeverAnswers");
}

TEST_F(HostileServer, ThatDripsAByteASecond)
{
    server.route(u"/", LoopbackReply::ok(opening).dripping(1s));
    get("Drips", 1500ms);
}

TEST_F(HostileServer, ThatNeverEnds)
{
    server.route(u"/", LoopbackReply::ok(QByteArray(64 * 1024, 'x')).repeatedForEver());
    get("NeverEnds");
}

TEST_F(HostileServer, ThatRedirectsForEver)
{
    server.route(u"/", LoopbackReply::redirect("/"));
    get("RedirectsForEver");
}

TEST_F(HostileServer, ThatSendsAnEndlessHead)
{
    server.route(u"/", LoopbackReply::raw("HTTP/1.1 200 OK\r\nX: " + QByteArray(50'000'000, 'x')));
    get("EndlessHead");
}

TEST_F(HostileServer, ThatPacksABomb)
{
    const QByteArray packed = qCompress(QByteArray(200'000'000, 'x')).sliced(4);
    server.route(u"/", LoopbackReply::ok(packed).header("Content-Encoding", "deflate"));
    get("PackedBomb");
}

// The whole road: the interface thread goes on while a feed is read.
TEST_F(HostileServer, ThatSendsTheLongestFeedDoesNotHoldTheInterface)
{
    TestLibrary library;
    await(library.store().setSettings({{QStringLiteral("goodreadsUserId"), QStringLiteral("1")},
        {QStringLiteral("goodreadsRssKey"), QStringLiteral("k")}}));
    server.route(u"/review/list_rss/1",
        {LoopbackReply::ok(filledWith(ordinaryItem())), LoopbackReply::ok("<rss><channel/></rss>")});
    ServiceEndpoints endpoints = ServiceEndpoints::standard();
    endpoints.goodreads = server.origin();

    QElapsedTimer sinceTick;
    qint64 longestPause = 0;
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, [&] { longestPause = std::max(longestPause, sinceTick.restart()); });
    NetworkClient client;
    auto run = GoodreadsService::synchronize(library.store(), client, endpoints, library.clock(), {});
    sinceTick.start();
    ticks.start(1ms);
    EXPECT_TRUE(await(std::move(run)).succeeded);
    std::printf(
        "[ MEASURED ] %-28s %5lld ms at most between two ticks\n", "Interface", static_cast<long long>(longestPause));
    EXPECT_LE(longestPause, 100 * patience);
}
