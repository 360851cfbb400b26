// Feeds as the service really sends them, and what a reader sees of them. Built
// only when a folder of such answers is named.

#include "sources/GoodreadsXMLParser.h"

#include <QFile>

#include <gmock/gmock.h>

using namespace quire;

namespace {

GoodreadsXMLParser parsed(const QString &name, std::optional<QString> fallbackShelf)
{
    QFile file(QStringLiteral(QUIRE_SAMPLE_DATA "/goodreads-rss/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qUtf8Printable(file.fileName());
    GoodreadsXMLParser parser(std::move(fallbackShelf), QUrl(QStringLiteral("https://www.goodreads.com")));
    parser.parse(file.readAll());
    return parser;
}

const QString currentlyReading = QStringLiteral("currently-reading");

} // namespace

TEST(SampleFeeds, AWholeFeedGivesBothOfItsBooks)
{
    const auto parser = parsed(QStringLiteral("currently-reading_quentin_2026.xml"), currentlyReading);
    EXPECT_TRUE(parser.isValidFeed());
    ASSERT_EQ(parser.books().size(), 2);

    const GoodreadsFeedBook &sea = parser.books().at(0);
    EXPECT_EQ(sea.goodreadsID, QStringLiteral("9843479"));
    EXPECT_EQ(sea.title, QStringLiteral("The Sea, the Sea"));
    EXPECT_EQ(sea.author, QStringLiteral("Iris Murdoch"));
    EXPECT_EQ(sea.isbn, QStringLiteral("1101495650"));
    EXPECT_EQ(sea.shelf, currentlyReading);
    EXPECT_EQ(sea.userRating, 0);
    EXPECT_EQ(sea.averageRating, 4.05);
    EXPECT_EQ(sea.numberOfPages, 495);
    EXPECT_EQ(sea.publishedYear, 1978);
    EXPECT_EQ(sea.goodreadsURL->text(), QStringLiteral("https://www.goodreads.com/book/show/9843479"));
    EXPECT_EQ(sea.coverURL->text(),
        QStringLiteral(
            "https://i.gr-assets.com/images/S/compressed.photo.goodreads.com/books/1355943188l/9843479.jpg"));
    EXPECT_EQ(sea.readAt, std::nullopt);
    EXPECT_EQ(sea.dateAdded, QStringLiteral("Mon, 07 Sep 2026 07:42:42 -0700"));
    EXPECT_TRUE(
        sea.summary->startsWith(QStringLiteral("Charles Arrowby, leading light of England's theatrical set, ")));
    EXPECT_TRUE(sea.summary->endsWith(QStringLiteral("...")));
    EXPECT_EQ(sea.summary->size(), 503);

    const GoodreadsFeedBook &data = parser.books().at(1);
    EXPECT_EQ(data.title,
        QStringLiteral("Designing Data-Intensive Applications: The Big Ideas Behind Reliable, Scalable, and "
                       "Maintainable Systems"));
    EXPECT_EQ(data.shelf, currentlyReading);
    EXPECT_EQ(data.numberOfPages, 1194);
    EXPECT_EQ(data.averageRating, 4.66);
}

TEST(SampleFeeds, AFeedOnOneLineWithFewElementsGivesWhatItHas)
{
    const auto parser = parsed(QStringLiteral("currently-reading_leira_trimmed-one-line_2026.xml"), std::nullopt);
    EXPECT_TRUE(parser.isValidFeed());
    ASSERT_EQ(parser.books().size(), 3);

    const GoodreadsFeedBook &first = parser.books().first();
    EXPECT_EQ(
        first.title, QStringLiteral("Hacking Growth: How Today's Fastest-Growing Companies Drive Breakout Success"));
    EXPECT_EQ(first.author, QStringLiteral("Sean     Ellis")); // as it stands in the feed
    EXPECT_EQ(first.shelf, QStringLiteral("read"));
    EXPECT_EQ(first.isbn, std::nullopt);
    EXPECT_EQ(first.averageRating, std::nullopt);
    EXPECT_EQ(first.summary, std::nullopt);
    EXPECT_EQ(parser.books().at(1).title, QStringLiteral("This Must Be the Place"));
    EXPECT_EQ(parser.books().at(2).coverURL->text(),
        QStringLiteral(
            "https://i.gr-assets.com/images/S/compressed.photo.goodreads.com/books/1408089016l/22919017.jpg"));
}

TEST(SampleFeeds, ABareItemIsNoFeedThoughItsBookCanBeRead)
{
    const auto parser = parsed(QStringLiteral("bare-item_raymond_2017.xml"), std::nullopt);
    EXPECT_FALSE(parser.isValidFeed());
    ASSERT_EQ(parser.books().size(), 1);

    const GoodreadsFeedBook &book = parser.books().first();
    EXPECT_EQ(book.title, QStringLiteral("Empire's End"));
    EXPECT_EQ(book.author, QStringLiteral("Chuck Wendig"));
    EXPECT_EQ(book.shelf, QStringLiteral("read"));
    EXPECT_EQ(book.userRating, 5);
    EXPECT_EQ(book.averageRating, 3.78);
    EXPECT_EQ(book.numberOfPages, 423);
    EXPECT_EQ(book.readAt, QStringLiteral("Mon, 06 Mar 2017 12:02:40 -0800"));
    EXPECT_TRUE(book.summary->contains(QStringLiteral("planet: Jakku.\n\nThe Battle of Endor")));
    EXPECT_TRUE(book.summary->contains(QStringLiteral("the Rebellion’s victory")));
}
