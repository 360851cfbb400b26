#include "sources/GoodreadsItem.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <gmock/gmock.h>

using namespace quire;

namespace {

const QUrl website(QStringLiteral("https://www.goodreads.com"));

// An item with an id and one more element.
GoodreadsItem itemWith(GoodreadsElement element, const char *text)
{
    GoodreadsItem item;
    item.at(static_cast<std::size_t>(GoodreadsElement::BookID)) = QStringLiteral("42");
    item.at(static_cast<std::size_t>(element)) = QString::fromUtf8(text);
    return item;
}

GoodreadsFeedBook bookWith(
    GoodreadsElement element, const char *text, const std::optional<QString> &fallbackShelf = std::nullopt)
{
    return makeBook(itemWith(element, text), fallbackShelf, website).value();
}

QString coverOf(const char *large, const char *small)
{
    GoodreadsItem item = itemWith(GoodreadsElement::LargeImageURL, large);
    item.at(static_cast<std::size_t>(GoodreadsElement::ImageURL)) = QString::fromUtf8(small);
    const auto book = makeBook(item, std::nullopt, website).value();
    EXPECT_EQ(book.coverURL, book.goodreadsImageURL);
    return book.coverURL ? book.coverURL->text() : QString();
}

QString withoutSuffix(const char *title)
{
    return replacingSeriesSuffix(QString::fromUtf8(title));
}

} // namespace

TEST(GoodreadsItem, WithoutAnIdIsNoBook)
{
    EXPECT_EQ(makeBook({}, std::nullopt, website), std::nullopt);
    EXPECT_EQ(makeBook(itemWith(GoodreadsElement::BookID, ""), std::nullopt, website), std::nullopt);
}

TEST(GoodreadsItem, WithAnIdAloneHasOnlyWhatIsMadeOfIt)
{
    const auto book = bookWith(GoodreadsElement::BookID, "42");
    GoodreadsFeedBook expected;
    expected.goodreadsID = QStringLiteral("42");
    expected.title = QStringLiteral("");
    expected.shelf = QStringLiteral("read");
    expected.goodreadsURL = Url::parse(QStringLiteral("https://www.goodreads.com/book/show/42"));
    EXPECT_EQ(book, expected);
}

TEST(GoodreadsItem, ThePageIsOnTheGivenWebsiteForAnyId)
{
    const auto page = [](const char *id) {
        const auto item = itemWith(GoodreadsElement::BookID, id);
        return makeBook(item, std::nullopt, QUrl(QStringLiteral("http://127.0.0.1:8080")))->goodreadsURL.value().text();
    };
    EXPECT_EQ(page("9843479"), QStringLiteral("http://127.0.0.1:8080/book/show/9843479"));
    EXPECT_EQ(page("a b/../%?#å"), QStringLiteral("http://127.0.0.1:8080/book/show/a%20b%2F..%2F%25%3F%23%C3%A5"));
}

// Titles. -------------------------------------------------------------------------

TEST(GoodreadsItem, TitlesAndAuthorsAreDecoded)
{
    EXPECT_EQ(bookWith(GoodreadsElement::Title, "Pride &amp; Prejudice").title, QStringLiteral("Pride & Prejudice"));
    EXPECT_EQ(bookWith(GoodreadsElement::Author, "Simon &amp; Schuster").author, QStringLiteral("Simon & Schuster"));
}

TEST(GoodreadsItem, TheSeriesNoteGoesAfterTheTitleIsDecoded)
{
    EXPECT_EQ(bookWith(GoodreadsElement::Title, "One &amp; Two&nbsp;(Odd &amp; Even, #3)").title,
        QStringLiteral("One & Two"));
}

TEST(GoodreadsItem, NonLatinTitlesStayAsTheyAre)
{
    EXPECT_EQ(bookWith(GoodreadsElement::Title, "罪と罰 (上)").title, QStringLiteral("罪と罰 (上)"));
    EXPECT_EQ(bookWith(GoodreadsElement::Title, "Война и мир (Том, #1)").title, QStringLiteral("Война и мир"));
    EXPECT_EQ(bookWith(GoodreadsElement::Title, "الأيام").title, QStringLiteral("الأيام"));
}

TEST(ReplacingSeriesSuffix, TakesANoteWithANumberSignAndDigits)
{
    EXPECT_EQ(withoutSuffix("Leviathan Wakes (The Expanse, #1)"), QStringLiteral("Leviathan Wakes"));
    EXPECT_EQ(withoutSuffix("Two at Once (A, #1; B, #12)  "), QStringLiteral("Two at Once"));
    EXPECT_EQ(withoutSuffix("(#1)"), QString());
}

TEST(ReplacingSeriesSuffix, LeavesAPlainSubtitle)
{
    for (const char *title : {"Dune (Illustrated)", "C (C# in Depth)", "A (#one)", "Track #1", "(#1) First", "(X, #1",
             "X, #1)", "Middle (X, #1) end"}) {
        EXPECT_EQ(withoutSuffix(title), QString::fromUtf8(title));
    }
}

TEST(ReplacingSeriesSuffix, LooksOnlyAtTheLastParenthesis)
{
    EXPECT_EQ(withoutSuffix("Emma (Norton) (Classics, #7)"), QStringLiteral("Emma (Norton)"));
    EXPECT_EQ(withoutSuffix("Emma (Classics, #7) (Norton)"), QStringLiteral("Emma (Classics, #7) (Norton)"));
    EXPECT_EQ(withoutSuffix("Emma ((Norton, #7)"), QStringLiteral("Emma"));
}

TEST(ReplacingSeriesSuffix, GivesWhatTheExpressionGives)
{
    const QRegularExpression suffix(
        QStringLiteral(R"(\s*\([^)]*#\d+[^)]*\)\s*$)"), QRegularExpression::UseUnicodePropertiesOption);
    const QStringList pieces{QStringLiteral("("), QStringLiteral("("), QStringLiteral(")"), QStringLiteral(")"),
        QStringLiteral("#"), QStringLiteral("1"), QStringLiteral("23"), QStringLiteral("#4"), QStringLiteral(" "),
        QStringLiteral("\u00a0"), QStringLiteral("\n"), QStringLiteral("a"), QStringLiteral("\u0664"),
        QStringLiteral("\U0001d7d9"), QStringLiteral("\U0001f680")};
    QRandomGenerator random(5);
    for (int round = 0; round < 200'000; ++round) {
        QString title;
        for (int left = random.bounded(12); left > 0; --left) {
            title += pieces.at(random.bounded(static_cast<int>(pieces.size())));
        }
        QString expected = title;
        ASSERT_EQ(replacingSeriesSuffix(title), expected.remove(suffix).trimmed()) << qUtf8Printable(title);
    }
}

TEST(ReplacingSeriesSuffix, TakesTimeInProportionToTheTitle)
{
    for (const char *piece : {" ", "(", "#", "(#", "()", "#1 "}) {
        const QString title
            = QStringLiteral("a") + QString::fromLatin1(piece).repeated(2'000'000) + QStringLiteral("x)");
        QElapsedTimer clock;
        clock.start();
        replacingSeriesSuffix(title);
        EXPECT_LT(clock.elapsed(), 1000) << piece;
    }
}

// Covers. --------------------------------------------------------------------------

TEST(GoodreadsItem, TheCoverIsTheLargeImageElseTheSmallOne)
{
    EXPECT_EQ(coverOf("https://i.example/large.jpg", "https://i.example/small.jpg"),
        QStringLiteral("https://i.example/large.jpg"));
    EXPECT_EQ(coverOf("", "https://i.example/small.jpg"), QStringLiteral("https://i.example/small.jpg"));
    EXPECT_EQ(coverOf("", ""), QString());
}

TEST(GoodreadsItem, APlaceholderIsNoCoverAndTheSmallImageIsNotTried)
{
    EXPECT_EQ(coverOf("https://s.example/NoPhoto/book.png", "https://i.example/small.jpg"), QString());
    EXPECT_EQ(coverOf("", "https://s.example/nophoto/book.png"), QString());
}

TEST(GoodreadsItem, ACoverThatIsNoUrlIsAbsent)
{
    EXPECT_EQ(coverOf("not a url", "https://i.example/small.jpg"), QString());
}

// Shelves. --------------------------------------------------------------------------

TEST(GoodreadsItem, TheShelfIsTheFirstKnownOneInAFixedOrder)
{
    const auto shelf = [](const char *list) { return bookWith(GoodreadsElement::Shelves, list).shelf; };
    EXPECT_EQ(shelf("to-read, currently-reading"), QStringLiteral("currently-reading"));
    EXPECT_EQ(shelf("did-not-finish, to-read"), QStringLiteral("to-read"));
    EXPECT_EQ(shelf("sci-fi, to-read"), QStringLiteral("to-read"));
    EXPECT_EQ(shelf("did-not-finish"), QStringLiteral("did-not-finish"));
    EXPECT_EQ(shelf("Currently-Reading"), QStringLiteral("currently-reading"));
    EXPECT_EQ(shelf("my-to-read-pile"), QStringLiteral("to-read")); // a part of a name is enough
}

TEST(GoodreadsItem, AShelfOfTheReadersOwnGivesTheFallback)
{
    EXPECT_EQ(bookWith(GoodreadsElement::Shelves, "sci-fi").shelf, QStringLiteral("read"));
    EXPECT_EQ(
        bookWith(GoodreadsElement::Shelves, "sci-fi", QStringLiteral("to-read")).shelf, QStringLiteral("to-read"));
    EXPECT_EQ(bookWith(GoodreadsElement::Shelves, "", QStringLiteral("to-read")).shelf, QStringLiteral("to-read"));
}

// Numbers. --------------------------------------------------------------------------

class NotANumber : public ::testing::TestWithParam<const char *>
{
};

TEST_P(NotANumber, IsNoRating)
{
    EXPECT_EQ(bookWith(GoodreadsElement::Rating, GetParam()).userRating, 0);
    EXPECT_EQ(bookWith(GoodreadsElement::AverageRating, GetParam()).averageRating, std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Texts, NotANumber,
    ::testing::Values("", "five", "4,5", "1,000", "4 stars", "nan", "inf", "-infinity", "1e999", "0x1p3", "٤"));

TEST(GoodreadsItem, RatingsAreReadWithADecimalPoint)
{
    EXPECT_EQ(bookWith(GoodreadsElement::Rating, "4").userRating, 4);
    EXPECT_EQ(bookWith(GoodreadsElement::Rating, "3.5").userRating, 3.5);
    EXPECT_EQ(bookWith(GoodreadsElement::AverageRating, "4.05").averageRating, 4.05);
    EXPECT_EQ(bookWith(GoodreadsElement::AverageRating, "0").averageRating, 0);
}

TEST(GoodreadsItem, PagesAndYearAreWholeNumbersOrAbsent)
{
    EXPECT_EQ(bookWith(GoodreadsElement::Pages, "495").numberOfPages, 495);
    EXPECT_EQ(bookWith(GoodreadsElement::Published, "-800").publishedYear, -800);
    for (const char *text : {"", "495.0", "4 95", "many", "99999999999999999999"}) {
        EXPECT_EQ(bookWith(GoodreadsElement::Pages, text).numberOfPages, std::nullopt) << text;
        EXPECT_EQ(bookWith(GoodreadsElement::Published, text).publishedYear, std::nullopt) << text;
    }
}

// The rest. -------------------------------------------------------------------------

TEST(GoodreadsItem, AnIsbnOfZeroIsNone)
{
    EXPECT_EQ(bookWith(GoodreadsElement::ISBN, " 0 ").isbn, std::nullopt);
    EXPECT_EQ(bookWith(GoodreadsElement::ISBN, "").isbn, std::nullopt);
    EXPECT_EQ(bookWith(GoodreadsElement::ISBN, "00").isbn, QStringLiteral("00"));
    EXPECT_EQ(bookWith(GoodreadsElement::ISBN, "1101495650").isbn, QStringLiteral("1101495650"));
}

TEST(GoodreadsItem, ASummaryIsCutAfterFiveHundredCharacters)
{
    const QByteArray whole(500, 'x');
    EXPECT_EQ(bookWith(GoodreadsElement::Description, whole).summary, QString::fromLatin1(whole));
    EXPECT_EQ(bookWith(GoodreadsElement::Description, whole + "x").summary, QString::fromLatin1(whole + "..."));
}

TEST(GoodreadsItem, ASummaryOfTagsAloneIsAbsent)
{
    EXPECT_EQ(bookWith(GoodreadsElement::Description, "<p><br/></p>&nbsp;").summary, std::nullopt);
}

TEST(GoodreadsItem, DatesStayTheTextOfTheFeed)
{
    EXPECT_EQ(bookWith(GoodreadsElement::ReadAt, "Mon, 06 Mar 2017 12:02:40 -0800").readAt,
        QStringLiteral("Mon, 06 Mar 2017 12:02:40 -0800"));
    EXPECT_EQ(bookWith(GoodreadsElement::DateAdded, "soon").dateAdded, QStringLiteral("soon"));
    EXPECT_EQ(bookWith(GoodreadsElement::ReadAt, "").readAt, std::nullopt);
}
