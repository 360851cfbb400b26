#include "core/ReadingInsights.h"

#include "core/PageSum.h"
#include "core/Tally.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <span>

namespace quire {

namespace {

constexpr int months = 12;
constexpr int mostStars = 5;
constexpr qsizetype shownTags = 5;
constexpr std::size_t shownTitles = 5;

// Shelves of the source, which it sends as tags too.
bool isShelfWord(QStringView tag)
{
    static const QStringList words{QStringLiteral("read"), QStringLiteral("currently-reading"),
        QStringLiteral("to-read"), QStringLiteral("did-not-finish"), QStringLiteral("currently reading"),
        QStringLiteral("want to read"), QStringLiteral("did not finish")};
    return words.contains(tag.toString().toLower());
}

// The finishes of this year, without looking at any of them twice.
class ThisYear
{
public:
    void add(const ReadingHistory::ReadBook &read)
    {
        if (read.monthOfThisYear == 0) {
            return;
        }
        ++m_monthly[std::size_t(read.monthOfThisYear - 1)];
        m_first = m_count == 0 ? read.recency : std::min(m_first, read.recency);
        m_last = m_count == 0 ? read.recency : std::max(m_last, read.recency);
        ++m_count;
        m_pages.add(read.numberOfPages);
    }

    bool isEmpty() const { return m_count == 0; }
    const std::array<qint64, months> &monthly() const { return m_monthly; }
    qint64 averageBookLength() const { return m_pages.mean(); }

    // Sorted, the gaps between neighbours add up to the span from the first to
    // the last, so their mean needs no sorting.
    std::optional<double> averageDaysBetweenFinishes() const
    {
        using Days = std::chrono::duration<double, std::chrono::days::period>;
        if (m_count < 2) {
            return std::nullopt;
        }
        return Days(m_last - m_first).count() / double(m_count - 1);
    }

private:
    std::array<qint64, months> m_monthly{};
    qint64 m_count = 0;
    Instant m_first;
    Instant m_last;
    PageSum m_pages;
};

// The most recent titles, in one walk; those of one recency as the list has them.
class MostRecent
{
public:
    void add(const ReadingHistory::ReadBook &read)
    {
        if (m_titles.size() == shownTitles && read.recency <= m_titles.back().recency) {
            return;
        }
        const auto at = std::find_if(m_titles.begin(), m_titles.end(),
            [&read](const ReadingHistory::ReadBook &other) { return other.recency < read.recency; });
        m_titles.insert(at, read);
        if (m_titles.size() > shownTitles) {
            m_titles.pop_back();
        }
    }

    QList<qint64> ids() const
    {
        QList<qint64> ids;
        for (const ReadingHistory::ReadBook &read : m_titles) {
            ids.append(read.id);
        }
        return ids;
    }

private:
    std::vector<ReadingHistory::ReadBook> m_titles;
};

// 1 to 5; 0 when the book is not rated.
int starsOf(double rating)
{
    return rating > 0 ? int(std::clamp(std::round(rating), 1.0, double(mostStars))) : 0;
}

void addTags(Tally &tally, std::span<const QString> tags)
{
    for (const QString &tag : tags) {
        if (const QStringView trimmed = QStringView(tag).trimmed(); !trimmed.isEmpty()) {
            tally.add(trimmed);
        }
    }
}

void addMonths(ReadingInsightsSnapshot &insights, const std::array<qint64, months> &monthly)
{
    const QStringList labels = monthLabels(QLocale::system());
    for (int month = 1; month <= months; ++month) {
        const qint64 count = monthly[std::size_t(month - 1)];
        insights.monthlyReading.append({month, labels[month - 1], count});
        insights.activeMonths += count > 0 ? 1 : 0;
        if (count > insights.bestMonthCount) { // the earliest of several
            insights.bestMonth = labels[month - 1];
            insights.bestMonthCount = count;
        }
    }
}

} // namespace

QStringList monthLabels(const QLocale &locale)
{
    QStringList labels;
    for (int month = 1; month <= months; ++month) {
        const QString name = locale.monthName(month, QLocale::ShortFormat);
        labels.append(name.isEmpty() ? QString::number(month) : name);
    }
    return labels;
}

ReadingInsightsSnapshot makeReadingInsights(const ReadingHistory &history)
{
    ThisYear thisYear;
    PageSum pages;
    std::array<qint64, mostStars + 1> stars{}; // those without a rating at 0
    MostRecent mostRecent;
    Tally tags;
    for (const ReadingHistory::ReadBook &read : history.readBooks()) {
        thisYear.add(read);
        pages.add(read.numberOfPages);
        ++stars[std::size_t(starsOf(read.userRating))];
        mostRecent.add(read);
        addTags(tags, read.tags);
    }
    tags.drop(isShelfWord);

    ReadingInsightsSnapshot insights;
    addMonths(insights, thisYear.monthly());
    insights.averageDaysBetweenFinishes = thisYear.averageDaysBetweenFinishes();
    insights.averageBookLength = thisYear.isEmpty() ? pages.mean() : thisYear.averageBookLength();
    for (int count = 1; count <= mostStars; ++count) {
        insights.ratingDistribution.append({count, stars[std::size_t(count)]});
    }
    for (const auto &[tag, count] : tags.mostFrequent(shownTags)) {
        insights.topTags.append({tag.toString(), count});
    }
    insights.recentReadIDs = mostRecent.ids();
    return insights;
}

ReadingInsightsSnapshot makeReadingInsights(const QList<Book> &books, Instant now)
{
    return makeReadingInsights(ReadingHistory(books, now));
}

} // namespace quire
