// The words around the numbers of the insights.
//
// Thread: pure functions, any thread.

#pragma once

#include "records/Statistics.h"

#include <QLocale>
#include <QString>
#include <QStringList>

#include <optional>

namespace quire::InsightTexts {

// "4.3★", with the locale's decimal mark; a dash for 0, which is no rating.
QString rating(double rating, const QLocale &locale = QLocale::system());

// "4.3★ average", or "All time" without a rating.
QString averageRating(double rating, const QLocale &locale = QLocale::system());

// "3 of 12".
QString activeMonths(qint64 months);

// "About one finish every 11 days", at least one; "Monthly pace" without a number.
QString rhythm(const std::optional<double> &daysBetweenFinishes);

// One line of the patterns: its value and what stands in small print below, empty for none.
struct Fact
{
    QString value;
    QString detail;

    bool operator==(const Fact &) const = default;
};

Fact topAuthor(const GoodreadsStatistics &statistics);
Fact strongestMonth(const ReadingInsightsSnapshot &insights);
Fact averageLength(const ReadingInsightsSnapshot &insights);
Fact fiveStars(const GoodreadsStatistics &statistics, const QLocale &locale = QLocale::system());

// Each tag with its count: "fantasy 12".
QStringList tags(const QList<TagCount> &tags);

// A bar to a screen reader: "Jan: 3 books", "1 star: 1 book".
QString bar(const QString &label, qint64 books);

} // namespace quire::InsightTexts
