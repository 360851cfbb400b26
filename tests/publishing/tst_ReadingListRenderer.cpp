// What each field of a title becomes in the two documents. Whole documents are
// compared in tst_ReadingListDocuments.

#include "publishing/ReadingListRenderer.h"

#include "SampleTitles.h"

#include <gmock/gmock.h>

#include <limits>

using namespace quire;
using namespace quire::testing;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

const QLocale english(QLocale::English, QLocale::UnitedStates);
const QLocale norwegian(QStringLiteral("nb_NO"));

Instant utc(int year, unsigned month, unsigned day, int hour, int minute)
{
    return std::chrono::sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day))
        + std::chrono::hours(hour) + std::chrono::minutes(minute);
}

class ReadingList : public ::testing::Test
{
protected:
    std::string markdown(const QLocale &locale = english) const
    {
        return ReadingListRenderer::markdown(snapshot, locale).toStdString();
    }
    std::string html(const QLocale &locale = english) const
    {
        return ReadingListRenderer::html(snapshot, locale).toStdString();
    }

    // What the Markdown has under the heading of the one title that was read.
    std::string blocksOf(const Book &book)
    {
        snapshot.booksRead = {book};
        return markdown().substr(markdown().find("### "));
    }
    std::string blocksOf(const Audiobook &audiobook)
    {
        snapshot.ratedAudiobooks = {audiobook};
        return markdown().substr(markdown().find("### "));
    }
    // The card of that title.
    std::string cardOf(const Book &book)
    {
        snapshot.booksRead = {book};
        return card();
    }
    std::string cardOf(const Audiobook &audiobook)
    {
        snapshot.ratedAudiobooks = {audiobook};
        return card();
    }

    std::string updated(Instant moment, const QLocale &locale = english)
    {
        snapshot.generatedAt = moment;
        const std::string text = markdown(locale);
        const std::string label = "Last updated: ";
        const auto start = text.find(label) + label.size();
        std::string line = text.substr(start, text.find('\n', start) - start);
        EXPECT_THAT(html(locale), HasSubstr("<p class=\"updated\">" + label + line + "</p>"));
        return line;
    }

    PublishingSnapshot snapshot{.generatedAt = utc(2026, 11, 21, 12, 4)};

private:
    std::string card() const
    {
        const std::string page = html();
        const std::string end = "</article>";
        const auto start = page.find("<article");
        return page.substr(start, page.find(end) + end.size() - start);
    }
};

// The line of a book that has nothing else.
Book rated(double rating, std::optional<double> average = {})
{
    Book book = plainBook();
    book.userRating = rating;
    book.averageRating = average;
    return book;
}

} // namespace

// Empty. ----------------------------------------------------------------------------

TEST_F(ReadingList, WithoutTitlesHasTheHeadingOfReadBooksAlone)
{
    EXPECT_THAT(markdown(), EndsWith("\n- Average Rating: N/A\n- Reading Now: 0\n\n## Books Read (0)\n"));
    EXPECT_THAT(markdown(), Not(HasSubstr("Currently Reading")));
    EXPECT_THAT(markdown(), Not(HasSubstr("## Audiobooks")));

    EXPECT_THAT(html(), HasSubstr("<h2 id=\"books-read\">Books Read (0)</h2>"));
    EXPECT_THAT(html(), HasSubstr("<div class=\"stat-value\">N/A</div>"));
    EXPECT_THAT(html(), HasSubstr("<a href=\"#books-read\">"));
    for (const char *absent : {"#reading", "id=\"reading\"", "#audiobooks", "id=\"audiobooks\"", "<article"}) {
        EXPECT_THAT(html(), Not(HasSubstr(absent)));
    }
}

TEST_F(ReadingList, EndsInOneLineFeedAndInTheClosingTag)
{
    EXPECT_THAT(html(), EndsWith("</html>"));
    EXPECT_THAT(blocksOf(plainBook()), EndsWith("My Rating: 4.5/5\n"));
    Book book = plainBook();
    book.summary = QStringLiteral("An end. \n\n ");
    EXPECT_THAT(blocksOf(book), EndsWith("> An end.\n"));
    EXPECT_THAT(html(), EndsWith("</html>"));
}

// Escapes. ----------------------------------------------------------------------------

TEST_F(ReadingList, MarkupInATitleIsEscapedAndItsLinesJoined)
{
    EXPECT_THAT(blocksOf(plainBook(QStringLiteral("A * B\nC"))), HasSubstr("### A \\* B C\n"));
    EXPECT_THAT(blocksOf(plainBook(QStringLiteral(" \t`a`_b_ [c](d) \\* \r\n\u00a0 e\u2003"))),
        HasSubstr("### \\`a\\`\\_b\\_ \\[c\\](d) \\\\\\* e\n"));
    EXPECT_THAT(blocksOf(plainBook(QStringLiteral("<b> & \"c\" 'd' #e"))), HasSubstr("### <b> & \"c\" 'd' #e\n"));
}

TEST_F(ReadingList, MarkupOnThePageIsFourEntities)
{
    EXPECT_THAT(
        cardOf(plainBook(QStringLiteral("Tom & \"Jerry\""))), HasSubstr("<h3>Tom &amp; &quot;Jerry&quot;</h3>"));
    EXPECT_THAT(cardOf(plainBook(QStringLiteral("The Reader's"))), HasSubstr("<h3>The Reader's</h3>"));
    EXPECT_THAT(cardOf(plainBook(QStringLiteral("a<b>&amp;</b>\n c"))),
        HasSubstr("<h3>a&lt;b&gt;&amp;amp;&lt;/b&gt;\n c</h3>"));
}

TEST_F(ReadingList, MarkupIsFoundWhereverItStandsInALongText)
{
    const QString marks = QStringLiteral("&<>\"");
    const QStringList entities{
        QStringLiteral("&amp;"), QStringLiteral("&lt;"), QStringLiteral("&gt;"), QStringLiteral("&quot;")};
    for (qsizetype length = 1; length < 100; ++length) {
        for (qsizetype at = 0; at < length; ++at) {
            const qsizetype mark = (length + at) % 4;
            const QString before(at, u'é');
            const QString after(length - at - 1, u'x');
            const QString expected = QStringLiteral("<h3>") + before + entities[mark] + after + QStringLiteral("</h3>");
            ASSERT_THAT(cardOf(plainBook(before + marks[mark] + after)), HasSubstr(expected.toStdString()));
        }
    }
}

TEST_F(ReadingList, AuthorsNarratorsAndSeriesAreEscapedToo)
{
    Audiobook audiobook = plainAudiobook();
    audiobook.author = QStringLiteral("A_1 <");
    audiobook.narrator = QStringLiteral("N*2 &");
    audiobook.series = QStringLiteral("S[3] \"");
    audiobook.bookNumber = 1234;
    EXPECT_THAT(
        blocksOf(audiobook), HasSubstr("\nAuthor: A\\_1 < | Narrator: N\\*2 & | Series: S\\[3\\] \", Book 1234\n"));
    EXPECT_THAT(cardOf(audiobook),
        HasSubstr("<div class=\"meta\"><strong>Author:</strong> A_1 &lt; | <strong>Narrator:</strong> N*2 &amp; | "
                  "<strong>Series:</strong> S[3] &quot;, Book 1234</div>"));
}

// Summaries. ------------------------------------------------------------------------------

TEST_F(ReadingList, ASummaryIsQuotedWithItsEmptyLines)
{
    Book book = plainBook();
    book.summary = QStringLiteral("\r\n One.\r\n\r\n  Two *and*\ra half. \n");
    EXPECT_THAT(blocksOf(book), EndsWith("\n\n> One.\n> \n>   Two *and*a half.\n"));
    EXPECT_THAT(html(), HasSubstr("<p class=\"summary\">\r\n One.\r\n\r\n  Two *and*\ra half. \n</p>"));
}

TEST_F(ReadingList, AnEmptySummaryIsNoBlockButAParagraph)
{
    Book book = plainBook();
    book.summary = QString();
    EXPECT_THAT(blocksOf(book), EndsWith("My Rating: 4.5/5\n"));
    EXPECT_THAT(html(), HasSubstr("<p class=\"summary\"></p>"));
    book.summary.reset();
    EXPECT_THAT(cardOf(book), Not(HasSubstr("summary")));
}

// Ratings. -----------------------------------------------------------------------------------

TEST_F(ReadingList, ARatingHasWholeStarsAndAHalf)
{
    const std::pair<double, const char *> forms[]{
        {5, "★★★★★ (5/5)"},
        {4.5, "★★★★½ (4.5/5)"},
        {4.25, "★★★★ (4.25/5)"},
        {0.5, "½ (0.5/5)"},
        {0.25, " (0.25/5)"},
        {1, "★ (1/5)"},
        {7, "★★★★★★★ (7/5)"},
        {0, "Unrated"},
        {-3, "Unrated"},
        {std::numeric_limits<double>::quiet_NaN(), "Unrated"},
    };
    for (const auto &[rating, text] : forms) {
        EXPECT_THAT(cardOf(rated(rating)),
            HasSubstr("<div class=\"rating\"><strong>My Rating:</strong> " + std::string(text) + "</div>"));
    }
}

TEST_F(ReadingList, ARatingBeyondAnyScaleStaysShort)
{
    for (const double rating : {1e3, 1e18, 1e300, std::numeric_limits<double>::infinity()}) {
        EXPECT_LT(cardOf(rated(rating, rating)).size(), 2'000U) << rating;
        EXPECT_LT(blocksOf(rated(rating, -rating)).size(), 2'000U) << rating;
    }
}

TEST_F(ReadingList, TheCommunitysRatingFollowsWhenThereIsOne)
{
    EXPECT_THAT(cardOf(rated(4, 3.87)), HasSubstr("★★★★ (4/5) | <strong>Goodreads Avg:</strong> 3.87/5</div>"));
    EXPECT_THAT(cardOf(rated(4)), HasSubstr("★★★★ (4/5)</div>"));
    EXPECT_THAT(blocksOf(rated(4, 3.87)), HasSubstr("\nMy Rating: 4/5 | Goodreads Average: 3.87/5\n"));
    EXPECT_THAT(blocksOf(rated(4)), HasSubstr("\nMy Rating: 4/5\n"));
}

TEST_F(ReadingList, AnUnratedBookIsRatedZeroInTheMarkdown)
{
    EXPECT_THAT(blocksOf(rated(0)), HasSubstr("\nMy Rating: 0/5\n"));
}

TEST_F(ReadingList, ABookThatIsBeingReadHasNoRating)
{
    snapshot.currentlyReading = {rated(4, 3.87)};
    EXPECT_THAT(markdown(), Not(HasSubstr("My Rating")));
    EXPECT_THAT(html(), Not(HasSubstr("<strong>My Rating")));
}

TEST_F(ReadingList, TheAverageHasOneDigitOfFraction)
{
    const std::pair<double, const char *> forms[]{
        {4, "4.0"}, {4.25, "4.2"}, {4.35, "4.4"}, {3.97, "4.0"}, {0.04, "0.0"}, {0, "N/A"}, {-1, "N/A"}};
    for (const auto &[average, text] : forms) {
        snapshot.statistics.averageRating = average;
        EXPECT_THAT(markdown(), HasSubstr("\n- Average Rating: " + std::string(text) + "\n"));
        EXPECT_THAT(html(), HasSubstr("<div class=\"stat-value\">" + std::string(text) + "</div>"));
    }
}

// Facts. ---------------------------------------------------------------------------------------

TEST_F(ReadingList, AbsentFactsLeaveNoTrace)
{
    Book book = plainBook();
    book.publishedYear = 1998;
    book.numberOfPages = 1234;
    EXPECT_THAT(blocksOf(book), HasSubstr("### A Title\n\nAuthor: An Author | Published: 1998 | Pages: 1234\n\nMy"));
    EXPECT_THAT(cardOf(book),
        HasSubstr("<div class=\"meta\"><strong>Author:</strong> An Author | <strong>Published:</strong> 1998 | "
                  "<strong>Pages:</strong> 1234</div>\n  <div"));
    book.author.clear();
    EXPECT_THAT(blocksOf(book), HasSubstr("\n\nPublished: 1998 | Pages: 1234\n\n"));
    EXPECT_THAT(cardOf(book), HasSubstr("<strong>Author:</strong>  | <strong>Published:</strong> 1998"));
    book.publishedYear.reset();
    book.numberOfPages.reset();
    EXPECT_THAT(blocksOf(book), HasSubstr("### A Title\n\nMy Rating"));
    EXPECT_THAT(cardOf(book), HasSubstr("<strong>Author:</strong> </div>"));
}

TEST_F(ReadingList, AnAudiobookWithoutAnAuthorBeginsItsFactsOnThePageWithTheSeparator)
{
    Audiobook audiobook = plainAudiobook();
    audiobook.narrator = QStringLiteral("A Narrator");
    EXPECT_THAT(blocksOf(audiobook), HasSubstr("### A Title\n\nNarrator: A Narrator\n\nMy Rating: 3/5\n"));
    EXPECT_THAT(cardOf(audiobook), HasSubstr("<div class=\"meta\"> | <strong>Narrator:</strong> A Narrator</div>\n  "));
    audiobook.narrator.reset();
    audiobook.bookNumber = 2; // of no series
    EXPECT_THAT(blocksOf(audiobook), HasSubstr("### A Title\n\nMy Rating: 3/5\n"));
    EXPECT_THAT(cardOf(audiobook), HasSubstr("<div class=\"meta\"></div>\n  "));
}

TEST_F(ReadingList, LinksLeadToTheWebAlone)
{
    Book book = plainBook();
    book.goodreadsURL = Url::parse(QStringLiteral("https://www.goodreads.com/book/show/1?a=1&b='2'"));
    EXPECT_THAT(
        blocksOf(book), HasSubstr("\n\n[View on Goodreads](https://www.goodreads.com/book/show/1?a=1&b='2')\n"));
    EXPECT_THAT(html(),
        HasSubstr("<div class=\"link\"><a href=\"https://www.goodreads.com/book/show/1?a=1&amp;b='2'\">View on "
                  "Goodreads</a></div>\n</article>"));
    for (const char *text : {"javascript:alert(1)", "JavaScript://x/%0aalert(1)", "data:text/html,x", "file:///etc"}) {
        book.goodreadsURL = Url::parse(QString::fromLatin1(text));
        ASSERT_TRUE(book.goodreadsURL);
        EXPECT_THAT(blocksOf(book), Not(HasSubstr("View on")));
        EXPECT_THAT(html(), Not(HasSubstr("View on")));
    }
    Audiobook audiobook = plainAudiobook();
    audiobook.audibleURL = Url::parse(QStringLiteral("HTTP://audible.example/pd/B0"));
    EXPECT_THAT(blocksOf(audiobook), HasSubstr("\n\n[Listen on Audible](HTTP://audible.example/pd/B0)\n"));
    EXPECT_THAT(
        html(), HasSubstr("<div class=\"link\"><a href=\"HTTP://audible.example/pd/B0\">Listen on Audible</a></div>"));
}

// Dates. -------------------------------------------------------------------------------------------

TEST_F(ReadingList, ADayIsTheOneOfTheMachinesZone)
{
    Book book = plainBook();
    book.readAt = QStringLiteral("2026-03-04T23:30:00Z"); // the fifth, in Oslo
    EXPECT_THAT(blocksOf(book), HasSubstr("\n\nDate Read: Mar 5, 2026\n"));
    EXPECT_THAT(cardOf(book), HasSubstr("<div class=\"date\"><strong>Date Read:</strong> Mar 5, 2026</div>"));
    Audiobook audiobook = plainAudiobook();
    audiobook.finishedAt = QStringLiteral("Mar 15, 2024");
    EXPECT_THAT(cardOf(audiobook), HasSubstr("<div class=\"date\"><strong>Date Read:</strong> Mar 5, 2026"));
    EXPECT_THAT(html(), HasSubstr("<div class=\"date\"><strong>Date Finished:</strong> Mar 15, 2024</div>"));
    EXPECT_THAT(markdown(), HasSubstr("\n\nDate Finished: Mar 15, 2024\n"));
}

TEST_F(ReadingList, ADateThatCannotBeReadLeavesNoLine)
{
    Book book = plainBook();
    book.dateAdded = QStringLiteral("2026-03-04");
    for (const char *text : {"", " ", "yesterday", "2026-02-30", "5 mars 2026", "99999-01-01"}) {
        book.readAt = QString::fromUtf8(text);
        EXPECT_THAT(blocksOf(book), Not(HasSubstr("Date Read")));
        EXPECT_THAT(cardOf(book), Not(HasSubstr("class=\"date\"")));
    }
}

TEST_F(ReadingList, ABookThatIsBeingReadShowsADateOfItsOwnOnThePageAlone)
{
    Book book = plainBook();
    book.readAt = QStringLiteral("2026-03-05");
    snapshot.currentlyReading = {book};
    EXPECT_THAT(html(), HasSubstr("</div>\n  <div class=\"date\"><strong>Date Read:</strong> Mar 5, 2026</div>"));
    EXPECT_THAT(markdown(), Not(HasSubstr("Date Read")));
}

TEST_F(ReadingList, TheMomentOfPublicationIsNewYorks)
{
    EXPECT_EQ(updated(utc(2026, 11, 21, 12, 4)), "November 21, 2026 7:04 AM ET");
    EXPECT_EQ(updated(utc(2026, 7, 1, 3, 30)), "June 30, 2026 11:30 PM ET");
    EXPECT_EQ(updated(utc(2026, 3, 8, 6, 59)), "March 8, 2026 1:59 AM ET"); // the clocks go forward
    EXPECT_EQ(updated(utc(2026, 3, 8, 7, 0)), "March 8, 2026 3:00 AM ET");
    EXPECT_EQ(updated(utc(2026, 11, 1, 5, 30)), "November 1, 2026 1:30 AM ET"); // and back
    EXPECT_EQ(updated(utc(2026, 11, 1, 6, 30)), "November 1, 2026 1:30 AM ET");
    EXPECT_EQ(updated(utc(2026, 1, 1, 4, 59)), "December 31, 2025 11:59 PM ET");
    EXPECT_EQ(updated(utc(1999, 4, 4, 7, 0)), "April 4, 1999 3:00 AM ET"); // by the law of that year
    EXPECT_EQ(updated(utc(1999, 3, 20, 7, 0)), "March 20, 1999 2:00 AM ET");
}

// Languages. -------------------------------------------------------------------------------------------

TEST_F(ReadingList, TheMomentIsWrittenAsTheLanguageWritesIt)
{
    const std::pair<const char *, const char *> forms[]{
        {"en_US", "November 21, 2026 7:04 AM ET"},
        {"en_GB", "21 November 2026 07:04 ET"},
        {"nb_NO", "21. november 2026 07:04 ET"},
        {"de_DE", "21. November 2026 07:04 ET"},
        {"fr_FR", "21 novembre 2026 07:04 ET"},
        {"es_ES", "21 de noviembre de 2026 7:04 ET"},
        {"ru_RU", "21 ноября 2026 г. 07:04 ET"},
        {"hu_HU", "2026. november 21. 7:04 ET"},
        {"lv_LV", "2026. gada 21. novembris 07:04 ET"},
        {"tr_TR", "21 Kasım 2026 07:04 ET"},
        {"ja_JP", "2026年11月21日 7:04 ET"},
        {"ko_KR", "2026년 11월 21일 오전 7:04 ET"},
        {"th_TH", "21 พฤศจิกายน 2026 07:04 ET"},
        {"ar_EG", "٢١ نوفمبر ٢٠٢٦ ٧:٠٤ ص ET"},
    };
    for (const auto &[name, text] : forms) {
        EXPECT_EQ(updated(utc(2026, 11, 21, 12, 4), QLocale(QLatin1String(name))), text) << name;
    }
}

TEST_F(ReadingList, ADayIsWrittenByItsFormatInEveryLanguage)
{
    const QList<QLocale> locales
        = QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    ASSERT_GT(locales.size(), 400);
    for (const QLocale &locale : locales) {
        snapshot.booksRead.clear();
        std::vector<std::string> lines;
        for (int month = 1; month <= 12; ++month) {
            const QDate day(month < 3 ? 987 : 2026, month, 1 + month * 2);
            Book book = plainBook();
            book.readAt = day.toString(Qt::ISODate);
            snapshot.booksRead.append(book);
            lines.push_back("\nDate Read: " + locale.toString(day, u"MMM d, yyyy").toStdString() + "\n");
        }
        const std::string text = markdown(locale);
        for (const std::string &line : lines) {
            ASSERT_THAT(text, HasSubstr(line)) << locale.name().toStdString();
        }
    }
}

TEST_F(ReadingList, NumbersAreTheLanguagesButCountsAndYearsArePlain)
{
    snapshot.statistics.read = 12'345;
    snapshot.statistics.reading = 2'345;
    snapshot.statistics.totalPages = 4'567'890;
    snapshot.statistics.averageRating = 4.5;
    Book book = rated(4.5, 3.9);
    book.numberOfPages = 1234;
    book.publishedYear = 1998;
    book.readAt = QStringLiteral("2026-05-17");
    snapshot.booksRead = {book};
    for (const std::string &text : {markdown(norwegian), html(norwegian)}) {
        for (const char *part :
            {"12345", "2345", "4\u00a0567\u00a0890", "4,5", "3,9/5", "1234", "1998", "mai 17, 2026"}) {
            EXPECT_THAT(text, HasSubstr(part));
        }
        EXPECT_THAT(text, Not(HasSubstr("1 998")));
    }
    EXPECT_THAT(html(norwegian), HasSubstr("★★★★½ (4,5/5)"));
    EXPECT_THAT(html(), HasSubstr(">4,567,890<"));
    EXPECT_THAT(markdown(QLocale(QStringLiteral("de_DE"))), HasSubstr("- Pages Read: 4.567.890\n"));
}

TEST_F(ReadingList, ASystemWithoutALanguageIsReadAsEnglish)
{
    snapshot.statistics.totalPages = 12'345;
    ASSERT_EQ(QLocale::system().language(), QLocale::C); // as the tests run
    EXPECT_EQ(ReadingListRenderer::markdown(snapshot).toStdString(), markdown(english));
    EXPECT_THAT(markdown(), HasSubstr("- Pages Read: 12,345\n"));
}
