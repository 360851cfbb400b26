#include "sources/GoodreadsXMLParser.h"

#include <QStringEncoder>

#include <gmock/gmock.h>

using namespace quire;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const QUrl website(QStringLiteral("https://www.goodreads.com"));

GoodreadsXMLParser parsed(const QByteArray &document, std::optional<QString> fallbackShelf = std::nullopt)
{
    GoodreadsXMLParser parser(std::move(fallbackShelf), website);
    parser.parse(document);
    return parser;
}

QByteArray feed(const QByteArray &items)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rss version=\"2.0\"><channel>" + items + "</channel></rss>";
}

QByteArray item(const QByteArray &id, const QByteArray &rest = {})
{
    return "<item><book_id>" + id + "</book_id>" + rest + "</item>";
}

std::vector<std::string> ids(const GoodreadsXMLParser &parser)
{
    std::vector<std::string> found;
    for (const GoodreadsFeedBook &book : parser.books()) {
        found.push_back(book.goodreadsID.toStdString());
    }
    return found;
}

// The title of the one book of `document`.
std::string titleIn(const QByteArray &document)
{
    const auto parser = parsed(document);
    return parser.books().size() == 1 ? parser.books().first().title.toStdString() : "(not one book)";
}

std::string titleOf(const QByteArray &titleElement)
{
    return titleIn(feed(item("1", titleElement)));
}

} // namespace

// What is a feed. ---------------------------------------------------------------

TEST(GoodreadsXMLParser, AChannelMakesAFeedEvenWithoutItems)
{
    const auto parser = parsed(feed(""));
    EXPECT_TRUE(parser.isValidFeed());
    EXPECT_THAT(parser.books(), IsEmpty());
}

class NoFeed : public ::testing::TestWithParam<const char *>
{
};

TEST_P(NoFeed, HasNoBooks)
{
    const auto parser = parsed(GetParam());
    EXPECT_FALSE(parser.isValidFeed());
    EXPECT_THAT(parser.books(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Documents, NoFeed,
    ::testing::Values("", " ", "\xef\xbb\xbf", "not found", "{\"items\": []}", "<", "<!", "<!--", "<![CDATA[", "<?",
        "<?xml", "<?xml version='1.0'", "<!DOCTYPE", "<!DOCTYPE '", "<!DOCTYPE x [<!--", "<!DOCTYPE x [<?", "<rss",
        "<rss>", "<rss/>", "<a b='", "<a b", "</a>", "\x89PNG\r\n\x1a\n", "\xff\xfe", "\xff\xfe<",
        "<?xml version='1.0' encoding='klingon'?><channel/>",
        "<!DOCTYPE html><html><head><title>Sign in</title></head><body><p>Please<br>sign in</body></html>",
        "<rss><channels/><Channel/></rss>"));

TEST(GoodreadsXMLParser, AnItemOutsideAChannelIsReadButIsNoFeed)
{
    const auto parser = parsed(item("7"));
    EXPECT_FALSE(parser.isValidFeed());
    EXPECT_THAT(ids(parser), ElementsAre("7"));
}

// Items. --------------------------------------------------------------------------

TEST(GoodreadsXMLParser, ReadsItemsInTheirOrder)
{
    EXPECT_THAT(ids(parsed(feed(item("2") + item("1") + item("3")))), ElementsAre("2", "1", "3"));
}

TEST(GoodreadsXMLParser, AnItemWithoutAnIdIsDroppedInSilence)
{
    EXPECT_THAT(
        ids(parsed(feed("<item><title>A</title></item>" + item("") + item(" \n ") + item("1")))), ElementsAre("1"));
}

TEST(GoodreadsXMLParser, KeepsWhatTheStoreWillJudge)
{
    // Ids are trimmed with their elements; letter case makes them different.
    EXPECT_THAT(ids(parsed(feed(item("a1") + item(" a1 ") + item("A1")))), ElementsAre("a1", "a1", "A1"));
}

TEST(GoodreadsXMLParser, TheTitleOfTheChannelReachesNoBook)
{
    const auto parser = parsed(feed("<title>My shelf</title>" + item("1") + "<title>My shelf</title>"));
    EXPECT_EQ(parser.books().first().title, QString());
}

TEST(GoodreadsXMLParser, TheValuesOfAnItemDoNotReachTheNext)
{
    const auto parser = parsed(feed(item("1", "<title>A</title><isbn>5</isbn>") + item("2")));
    EXPECT_EQ(parser.books().last().title, QString());
    EXPECT_EQ(parser.books().last().isbn, std::nullopt);
}

TEST(GoodreadsXMLParser, AnItemOpenedInsideAnItemStartsAfresh)
{
    const auto parser
        = parsed(feed("<item><book_id>1</book_id><title>A</title>" + item("2") + "<book_id>3</book_id></item>"));
    EXPECT_THAT(ids(parser), ElementsAre("2"));
    EXPECT_EQ(parser.books().first().title, QString());
}

TEST(GoodreadsXMLParser, TheFallbackShelfIsThatOfTheRequest)
{
    EXPECT_EQ(parsed(feed(item("1")), QStringLiteral("to-read")).books().first().shelf, QStringLiteral("to-read"));
    EXPECT_EQ(parsed(feed(item("1"))).books().first().shelf, QStringLiteral("read"));
}

TEST(GoodreadsXMLParser, AnElementNestedInTheItemCountsUnderItsOwnName)
{
    const auto parser = parsed(feed(item("1", "<book id=\"1\"><num_pages>495</num_pages></book>")));
    EXPECT_EQ(parser.books().first().numberOfPages, 495);
}

TEST(GoodreadsXMLParser, OfTwoLikeElementsTheLaterCounts)
{
    EXPECT_EQ(titleOf("<title>A</title><title>B</title>"), "B");
    EXPECT_EQ(titleOf("<title>A</title><title/>"), "");
    EXPECT_EQ(titleOf("<title>A</title><image><title>Logo</title></image>"), "Logo");
}

TEST(GoodreadsXMLParser, ElementsOfANamespaceHaveTheirPrefixInTheName)
{
    EXPECT_EQ(titleOf("<title>A</title><media:title>B</media:title>"), "A");
    EXPECT_FALSE(parsed("<a:channel xmlns:a='u'/>").isValidFeed());
    EXPECT_THAT(ids(parsed(feed("<atom:item><book_id>1</book_id></atom:item>"))), IsEmpty());
}

TEST(GoodreadsXMLParser, NamesAreTakenLetterByLetter)
{
    EXPECT_EQ(titleOf("<title>A</title><Title>B</Title>"), "A");
}

// Text. -----------------------------------------------------------------------------

TEST(GoodreadsXMLParser, TextIsTrimmedOfAllWhiteSpace)
{
    EXPECT_EQ(titleOf("<title>\n\t\u00a0 A  B \r\n</title>"), "A  B");
}

TEST(GoodreadsXMLParser, CDataIsTextThatNeedsNoEscapes)
{
    EXPECT_EQ(titleOf("<title><![CDATA[Salt & <Pepper>]]></title>"), "Salt & <Pepper>");
}

TEST(GoodreadsXMLParser, TextInPiecesIsOneText)
{
    EXPECT_EQ(
        titleOf("<title>A<![CDATA[B]]>C<!-- x -->D<?pi?>E&#233;&lt;<![CDATA[]]]]><![CDATA[>]]></title>"), "ABCDEé<]]>");
}

TEST(GoodreadsXMLParser, TextAfterAChildsEndStartsAfresh)
{
    EXPECT_EQ(titleOf("<title>A<b>B</b>C</title>"), "C");
    EXPECT_EQ(titleOf("<title>A<b>B</b></title>"), "");
}

TEST(GoodreadsXMLParser, NonLatinTextArrivesWhole)
{
    EXPECT_EQ(titleOf("<title>罪と罰 · Война и мир · الأيام · \U0001f680</title>"),
        "罪と罰 · Война и мир · الأيام · \U0001f680");
}

TEST(GoodreadsXMLParser, APieceNeverEndsInsideACharacter)
{
    for (qsizetype shift = 0; shift < 4; ++shift) {
        const QByteArray text = QByteArray(shift, 'a') + QByteArray("\xf0\x9f\x9a\x80").repeated(100'000);
        EXPECT_EQ(titleOf("<title>" + text + "</title>"), text.toStdString()) << shift;
    }
}

// Encodings. --------------------------------------------------------------------------

TEST(GoodreadsXMLParser, AByteOrderMarkIsNoText)
{
    EXPECT_EQ(titleIn("\xef\xbb\xbf" + feed(item("1", "<title>é</title>"))), "é");
    EXPECT_EQ(titleIn("\xef\xbb\xbf<channel>" + item("1", "<title>é</title>") + "</channel>"), "é");
}

class WideFeed : public ::testing::TestWithParam<QStringConverter::Encoding>
{
};

TEST_P(WideFeed, IsReadWithAndWithoutAByteOrderMark)
{
    const QString text = QString::fromUtf8(feed(item("1", "<title>é 罪 \U0001f680</title>")))
                             .replace(QStringLiteral("UTF-8"), QStringLiteral("UTF-16"));
    QStringEncoder bare(GetParam());
    EXPECT_EQ(titleIn(bare.encode(text)), "é 罪 \U0001f680");
    QStringEncoder marked(GetParam(), QStringConverter::Flag::WriteBom);
    EXPECT_EQ(titleIn(marked.encode(text)), "é 罪 \U0001f680");
}

INSTANTIATE_TEST_SUITE_P(Encodings, WideFeed,
    ::testing::Values(
        QStringConverter::Utf16LE, QStringConverter::Utf16BE, QStringConverter::Utf32LE, QStringConverter::Utf32BE));

TEST(GoodreadsXMLParser, AnOddByteAtTheEndOfUtf16DoesNoHarm)
{
    QStringEncoder encode(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
    const QByteArray wide = encode.encode(QString::fromUtf8(feed(item("1", "<title>é</title>"))));
    EXPECT_EQ(titleIn(wide + "x"), "é");
}

TEST(GoodreadsXMLParser, ADeclaredEncodingIsHonoured)
{
    const QByteArray body = "<channel><item><book_id>1</book_id><title>caf\xe9</title></item></channel>";
    EXPECT_EQ(titleIn("<?xml version='1.0' encoding='ISO-8859-1'?>" + body), "café");
    EXPECT_EQ(titleIn("<?xml version='1.0' encoding = \"windows-1252\" ?>" + body), "café");
}

TEST(GoodreadsXMLParser, AUtf16DeclarationOnAsciiBytesIsNotBelieved)
{
    EXPECT_EQ(
        titleIn("<?xml version='1.0' encoding='UTF-16'?><channel>" + item("1", "<title>é</title>") + "</channel>"),
        "é");
}

TEST(GoodreadsXMLParser, BytesThatDoNotDecodeEndTheParseWhereTheyStand)
{
    EXPECT_THAT(ids(parsed(feed(item("1") + item("2", "<title>caf\xe9</title>") + item("3")))), ElementsAre("1"));
    EXPECT_THAT(ids(parsed(feed(item("1") + item("2", "<title>caf\xc3")))), ElementsAre("1"));
}

TEST(GoodreadsXMLParser, ACDataSectionThatDoesNotDecodeIsDroppedAsAWhole)
{
    const auto parser = parsed(feed(item("1", "<title>A<![CDATA[caf\xe9]]>B</title>") + item("2")));
    EXPECT_THAT(ids(parser), ElementsAre("1", "2"));
    EXPECT_EQ(parser.books().first().title, QStringLiteral("AB"));
}

// Syntax errors and entities. -----------------------------------------------------------

class BrokenTail : public ::testing::TestWithParam<const char *>
{
};

TEST_P(BrokenTail, LeavesWhatWasReadBefore)
{
    const auto parser = parsed("<rss><channel>" + item("1") + GetParam() + item("2") + "</channel></rss>");
    EXPECT_TRUE(parser.isValidFeed());
    EXPECT_THAT(ids(parser), ElementsAre("1"));
}

INSTANTIATE_TEST_SUITE_P(Errors, BrokenTail,
    ::testing::Values("</item>", "<item", "<a b=c>", "<a b='1' b='2'/>", "a < b", "AT&T", "&eacute;",
        "<item>&nbsp;</item>", "<1/>", "<!-- never closed", "<!-- -- -->", "<!--->", "<!-- \xff -->", "<?\?>", "<?1?>",
        "<?xml version='1.0'?>", "<?a \xff?>", "<?a", "<![CDATA[ never closed", "<!ELEMENT a ANY>", "<!DOCTYPE late>",
        "\x01", "</channel></rss><again>"));

TEST(GoodreadsXMLParser, AFeedCutAnywhereGivesTheItemsThatWereWhole)
{
    const QByteArray whole
        = feed(item("1", "<title><![CDATA[One & é]]></title>") + item("2", "<title a='>'>Two</title>"));
    const qsizetype firstEnd = whole.indexOf("</item>") + 7;
    const qsizetype secondEnd = whole.lastIndexOf("</item>") + 7;
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        const auto parser = parsed(whole.first(size));
        EXPECT_EQ(parser.books().size(), (size >= firstEnd) + (size >= secondEnd)) << size;
    }
}

TEST(GoodreadsXMLParser, DeclaredEntitiesAreNotHonoured)
{
    const QByteArray type
        = "<!DOCTYPE rss [<!-- ]> --><!ENTITY a \"x]>'\"><!ENTITY % p SYSTEM 'file:///etc/hostname'> %p;\n"
          "<!ENTITY f SYSTEM \"file:///etc/hostname\"><?pi ]> ?>]>\n";
    EXPECT_THAT(
        ids(parsed(type + "<channel>" + item("1") + item("2", "<title>&a;</title>") + "</channel>")), ElementsAre("1"));
    EXPECT_THAT(
        ids(parsed(type + "<channel>" + item("1") + item("2", "<title>&f;</title>") + "</channel>")), ElementsAre("1"));
}

TEST(GoodreadsXMLParser, ADocumentTypeWithoutEntitiesIsHarmless)
{
    const QByteArray feed = "<channel>" + item("1") + "</channel>";
    EXPECT_THAT(ids(parsed("<!DOCTYPE rss>" + feed)), ElementsAre("1"));
    EXPECT_THAT(
        ids(parsed("<!-- a --><!DOCTYPE rss PUBLIC \"-//X//DTD RSS 0.91//EN\" \"http://x.example/rss.dtd\">\n" + feed)),
        ElementsAre("1"));
}

TEST(GoodreadsXMLParser, TheEntitiesOfXmlItselfAreKnown)
{
    EXPECT_EQ(titleOf("<title>&lt;&gt;&apos;&quot;&#65;&#x42;</title>"), "<>'\"AB");
    EXPECT_EQ(titleOf("<title>A &amp;amp; B</title>"), "A & B"); // once by XML, once by the title's own rule
}

// Bounds. ---------------------------------------------------------------------------------

TEST(GoodreadsXMLParser, NestingEndsTheParseBeyondItsBound)
{
    // Two levels are the channel and the item.
    const auto nested = [](int levels) {
        return "<channel>" + item("1") + "<item><book_id>2</book_id>" + QByteArray("<a>").repeated(levels - 2)
            + QByteArray("</a>").repeated(levels - 2) + "</item></channel>";
    };
    EXPECT_THAT(ids(parsed(nested(GoodreadsXMLParser::maximumDepth))), ElementsAre("1", "2"));
    EXPECT_THAT(ids(parsed(nested(GoodreadsXMLParser::maximumDepth + 1))), ElementsAre("1"));
}

TEST(GoodreadsXMLParser, AnItemTooLargeEndsTheParse)
{
    const auto itemOf = [](qsizetype size) {
        return item("2", "<book_description>" + QByteArray(size, 'x') + "</book_description>");
    };
    EXPECT_THAT(ids(parsed(feed(item("1") + itemOf(3'000'000) + item("3")))), ElementsAre("1", "2", "3"));
    EXPECT_THAT(ids(parsed(feed(item("1") + itemOf(5'000'000) + item("3")))), ElementsAre("1"));
}

TEST(GoodreadsXMLParser, ManyLargeItemsAreNotOneTooLarge)
{
    const QByteArray large = "<book_description>" + QByteArray(1'000'000, 'x') + "</book_description>";
    EXPECT_EQ(parsed(feed(item("1", large).repeated(10))).books().size(), 10);
}

TEST(GoodreadsXMLParser, AttributesEndTheParseBeyondTheirBound)
{
    const auto tag = [](int count) {
        QByteArray text = "<a";
        for (int i = 0; i < count; ++i) {
            text += " a" + QByteArray::number(i) + "='=&lt;'";
        }
        return text + "/>";
    };
    EXPECT_THAT(ids(parsed(feed(item("1") + tag(32) + item("2")))), ElementsAre("1", "2"));
    EXPECT_THAT(ids(parsed(feed(item("1") + tag(33) + item("2")))), ElementsAre("1"));
    EXPECT_THAT(ids(parsed(feed(item("1") + "<" + QByteArray(5000, 'a') + ":b/>" + item("2")))), ElementsAre("1"));
}

TEST(GoodreadsXMLParser, BooksEndTheParseAtTheirBound)
{
    const auto parser = parsed(feed(item("1").repeated(100'001)));
    EXPECT_EQ(parser.books().size(), GoodreadsXMLParser::maximumBooks);
}

TEST(GoodreadsXMLParser, AStopEndsTheParse)
{
    std::stop_source stop;
    stop.request_stop();
    GoodreadsXMLParser parser(std::nullopt, website);
    parser.parse(feed(item("1")), stop.get_token());
    EXPECT_THAT(parser.books(), IsEmpty());
}
