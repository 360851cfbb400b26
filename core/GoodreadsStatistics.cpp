#include "core/GoodreadsStatistics.h"

#include "core/PageSum.h"
#include "core/Tally.h"

namespace quire {

namespace {

constexpr double fiveStars = 5.0;

class RatingMean
{
public:
    void add(double rating)
    {
        if (rating > 0) { // 0 is not rated
            m_sum += rating;
            ++m_count;
        }
    }

    double value() const { return m_count == 0 ? 0 : m_sum / double(m_count); }

private:
    double m_sum = 0;
    qint64 m_count = 0;
};

} // namespace

GoodreadsStatistics makeGoodreadsStatistics(const ReadingHistory &history)
{
    GoodreadsStatistics statistics;
    PageSum pages;
    PageSum pagesThisYear;
    RatingMean rating;
    RatingMean ratingThisYear;
    Tally authors;
    for (const ReadingHistory::ReadBook &read : history.readBooks()) {
        pages.add(read.numberOfPages);
        rating.add(read.userRating);
        statistics.fiveStarCount += read.userRating == fiveStars ? 1 : 0;
        if (!read.author.isEmpty()) {
            authors.add(read.author);
        }
        if (read.monthOfThisYear > 0) {
            ++statistics.booksThisYear;
            pagesThisYear.add(read.numberOfPages);
            ratingThisYear.add(read.userRating);
        }
    }
    statistics.reading = history.reading();
    statistics.read = qint64(history.readBooks().size());
    statistics.toRead = history.toRead();
    statistics.didNotFinish = history.didNotFinish();
    statistics.totalPages = pages.pages();
    statistics.averageRating = rating.value();
    statistics.pagesThisYear = pagesThisYear.pages();
    statistics.averageRatingThisYear = ratingThisYear.value();
    statistics.year = history.thisYear();
    for (const auto &[author, count] : authors.mostFrequent(1)) {
        statistics.topAuthor = author.toString();
        statistics.topAuthorCount = count;
    }
    return statistics;
}

GoodreadsStatistics makeGoodreadsStatistics(const QList<Book> &books, Instant now)
{
    return makeGoodreadsStatistics(ReadingHistory(books, now));
}

} // namespace quire
