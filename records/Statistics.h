// Results of the statistics and insights, as the pages show and publish them.

#pragma once

#include "records/TagCount.h"

#include <QDate>
#include <QList>
#include <QString>

#include <optional>

namespace quire {

struct GoodreadsStatistics
{
    qint64 reading = 0;
    qint64 read = 0;
    qint64 toRead = 0;
    qint64 didNotFinish = 0;
    qint64 totalPages = 0;
    double averageRating = 0;
    qint64 booksThisYear = 0;
    qint64 pagesThisYear = 0;
    double averageRatingThisYear = 0;
    qint64 fiveStarCount = 0;
    std::optional<QString> topAuthor;
    qint64 topAuthorCount = 0;
    qint64 year = QDate::currentDate().year();

    bool operator==(const GoodreadsStatistics &) const = default;
};

struct MonthlyReadingCount
{
    qint64 month = 1; // 1 to 12
    QString label;
    qint64 count = 0;

    bool operator==(const MonthlyReadingCount &) const = default;
};

struct RatingReadingCount
{
    qint64 stars = 1; // 1 to 5
    qint64 count = 0;

    bool operator==(const RatingReadingCount &) const = default;
};

struct ReadingInsightsSnapshot
{
    QList<MonthlyReadingCount> monthlyReading;
    QList<RatingReadingCount> ratingDistribution;
    qint64 activeMonths = 0;
    std::optional<double> averageDaysBetweenFinishes;
    qint64 averageBookLength = 0;
    std::optional<QString> bestMonth;
    qint64 bestMonthCount = 0;
    QList<TagCount> topTags;
    QList<qint64> recentReadIDs; // rows

    bool operator==(const ReadingInsightsSnapshot &) const = default;
};

struct AudibleStatistics
{
    qint64 total = 0;
    qint64 read = 0;
    qint64 reading = 0;
    qint64 toRead = 0;
    qint64 seriesCount = 0;

    bool operator==(const AudibleStatistics &) const = default;
};

} // namespace quire
