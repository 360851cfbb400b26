#include "QuireApp/ViewModels/InsightsViewModel.h"

#include "core/AppModel.h"
#include "QuireApp/ViewModels/InsightTexts.h"
#include "QuireApp/ViewModels/LibraryTexts.h"

#include <algorithm>

namespace quire {

namespace {

template<typename Condition>
QList<Book> newestFirst(const QList<Book> &books, const Condition &isWanted)
{
    QList<std::pair<Instant, const Book *>> keyed; // one date parse a book
    for (const Book &book : books) {
        if (!book.isHidden && isWanted(book)) {
            keyed.append({recencyDate(book), &book});
        }
    }
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    QList<Book> sorted;
    sorted.reserve(keyed.size());
    for (const auto &[recency, book] : keyed) {
        sorted.append(*book);
    }
    return sorted;
}

void show(LibraryListModel &list, const QList<Book> &books)
{
    QList<LibraryRow> rows;
    rows.reserve(books.size());
    for (const Book &book : books) {
        rows.append(LibraryRow::of(book));
    }
    list.show(rows);
}

} // namespace

QList<Book> currentlyReading(const QList<Book> &books)
{
    return newestFirst(books, [](const Book &book) { return book.shelf == QLatin1String("currently-reading"); });
}

QList<Book> recentlyFinished(const QList<Book> &books, const QList<qint64> &ids)
{
    return newestFirst(books, [&ids](const Book &book) { return ids.contains(book.id); });
}

InsightsViewModel::InsightsViewModel(AppModel &model, QObject *parent)
    : QObject(parent)
    , m_model(model)
{
    connect(&m_model, &AppModel::booksChanged, this, &InsightsViewModel::updateBooks);
    connect(&m_model, &AppModel::readingInsightsChanged, this, &InsightsViewModel::updateBooks);
    connect(&m_model, &AppModel::readingInsightsChanged, this, &InsightsViewModel::updateNumbers);
    connect(&m_model, &AppModel::goodreadsStatisticsChanged, this, &InsightsViewModel::updateNumbers);
    updateBooks();
    updateNumbers();
}

void InsightsViewModel::updateBooks()
{
    show(m_currentBooks, currentlyReading(m_model.books()));
    show(m_recentBooks, recentlyFinished(m_model.books(), m_model.readingInsights().recentReadIDs));
}

void InsightsViewModel::updateNumbers()
{
    QList<Bar> months;
    for (const MonthlyReadingCount &month : m_model.readingInsights().monthlyReading) {
        months.append({month.label, month.count, InsightTexts::bar(month.label, month.count)});
    }
    m_months.show(months);

    QList<Bar> ratings;
    for (const RatingReadingCount &rating : m_model.readingInsights().ratingDistribution) {
        const QString stars = QString::number(rating.stars);
        ratings.append({stars, rating.count,
            InsightTexts::bar(
                stars + (rating.stars == 1 ? QStringLiteral(" star") : QStringLiteral(" stars")), rating.count)});
    }
    m_ratings.show(ratings);
    Q_EMIT changed();
}

bool InsightsViewModel::hasRecentFinishes() const
{
    return !m_model.readingInsights().recentReadIDs.isEmpty();
}

QString InsightsViewModel::year() const
{
    return QString::number(m_model.goodreadsStatistics().year);
}

QString InsightsViewModel::booksFinished() const
{
    return LibraryTexts::count(m_model.goodreadsStatistics().booksThisYear);
}

QString InsightsViewModel::pagesRead() const
{
    return LibraryTexts::count(m_model.goodreadsStatistics().pagesThisYear);
}

QString InsightsViewModel::ratingThisYear() const
{
    return InsightTexts::rating(m_model.goodreadsStatistics().averageRatingThisYear);
}

QString InsightsViewModel::activeMonths() const
{
    return InsightTexts::activeMonths(m_model.readingInsights().activeMonths);
}

QString InsightsViewModel::rhythm() const
{
    return InsightTexts::rhythm(m_model.readingInsights().averageDaysBetweenFinishes);
}

QString InsightsViewModel::averageRating() const
{
    return InsightTexts::averageRating(m_model.goodreadsStatistics().averageRating);
}

QString InsightsViewModel::topAuthor() const
{
    return InsightTexts::topAuthor(m_model.goodreadsStatistics()).value;
}

QString InsightsViewModel::topAuthorDetail() const
{
    return InsightTexts::topAuthor(m_model.goodreadsStatistics()).detail;
}

QString InsightsViewModel::strongestMonth() const
{
    return InsightTexts::strongestMonth(m_model.readingInsights()).value;
}

QString InsightsViewModel::strongestMonthDetail() const
{
    return InsightTexts::strongestMonth(m_model.readingInsights()).detail;
}

QString InsightsViewModel::averageLength() const
{
    return InsightTexts::averageLength(m_model.readingInsights()).value;
}

QString InsightsViewModel::fiveStars() const
{
    return InsightTexts::fiveStars(m_model.goodreadsStatistics()).value;
}

QString InsightsViewModel::fiveStarsDetail() const
{
    return InsightTexts::fiveStars(m_model.goodreadsStatistics()).detail;
}

QStringList InsightsViewModel::tags() const
{
    return InsightTexts::tags(m_model.readingInsights().topTags);
}

} // namespace quire
