#include "QuireApp/ViewModels/InsightTexts.h"

#include <algorithm>
#include <cmath>

namespace quire::InsightTexts {

QString rating(double rating, const QLocale &locale)
{
    return rating > 0 ? locale.toString(rating, 'f', 1) + u'★' : QStringLiteral("—");
}

QString averageRating(double average, const QLocale &locale)
{
    return average > 0 ? rating(average, locale) + QStringLiteral(" average") : QStringLiteral("All time");
}

QString activeMonths(qint64 months)
{
    return QString::number(months) + QStringLiteral(" of 12");
}

QString rhythm(const std::optional<double> &daysBetweenFinishes)
{
    if (!daysBetweenFinishes) {
        return QStringLiteral("Monthly pace");
    }
    const qint64 days = std::max<qint64>(1, std::llround(*daysBetweenFinishes));
    return QStringLiteral("About one finish every %1 %2")
        .arg(QString::number(days), days == 1 ? QStringLiteral("day") : QStringLiteral("days"));
}

Fact topAuthor(const GoodreadsStatistics &statistics)
{
    if (!statistics.topAuthor) {
        return {QStringLiteral("Not enough data"), {}};
    }
    return {*statistics.topAuthor,
        QString::number(statistics.topAuthorCount) + QStringLiteral(" books by ") + *statistics.topAuthor};
}

Fact strongestMonth(const ReadingInsightsSnapshot &insights)
{
    if (!insights.bestMonth) {
        return {QStringLiteral("No finishes yet"), {}};
    }
    return {*insights.bestMonth,
        QString::number(insights.bestMonthCount) + QStringLiteral(" finished in ") + *insights.bestMonth};
}

Fact averageLength(const ReadingInsightsSnapshot &insights)
{
    return {insights.averageBookLength < 1 ? QStringLiteral("No page data")
                                           : QString::number(insights.averageBookLength) + QStringLiteral(" pages"),
        {}};
}

Fact fiveStars(const GoodreadsStatistics &statistics, const QLocale &locale)
{
    return {locale.toString(statistics.fiveStarCount),
        locale.toString(statistics.toRead) + QStringLiteral(" waiting to be read")};
}

QStringList tags(const QList<TagCount> &tags)
{
    QStringList words;
    words.reserve(tags.size());
    for (const TagCount &tag : tags) {
        words.append(tag.tag + u' ' + QString::number(tag.count));
    }
    return words;
}

QString bar(const QString &label, qint64 books)
{
    return QStringLiteral("%1: %2 %3")
        .arg(label, QString::number(books), books == 1 ? QStringLiteral("book") : QStringLiteral("books"));
}

} // namespace quire::InsightTexts
