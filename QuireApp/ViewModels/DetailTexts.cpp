#include "QuireApp/ViewModels/DetailTexts.h"

#include "QuireApp/ViewModels/AbbreviatedDate.h"
#include "records/DateParser.h"

#include <QDateTime>

#include <chrono>
#include <cmath>

namespace quire::DetailTexts {

namespace {

// At most three decimals, and none that is a zero at the end.
QString outOfFive(const QString &whose, double rating, const QLocale &locale)
{
    const double rounded = std::round(rating * 1000) / 1000;
    return QStringLiteral("%1: %2/5").arg(whose, locale.toString(rounded, 'f', QLocale::FloatingPointShortest));
}

QString localDay(Instant instant, const QLocale &locale)
{
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(instant.time_since_epoch());
    return abbreviatedDate(QDateTime::fromMSecsSinceEpoch(sinceEpoch.count()).date(), locale);
}

Choice pill(const QString &text, const QString &symbol)
{
    return {text, text, symbol};
}

} // namespace

QString bookMetadata(const Book &book, const QLocale &locale)
{
    QStringList facts;
    if (const auto read = DateParser::date(book.readAt)) {
        facts << localDay(*read, locale);
    }
    if (book.numberOfPages) {
        facts << QString::number(*book.numberOfPages) + QStringLiteral(" pages");
    }
    if (book.publishedYear) {
        facts << QString::number(*book.publishedYear);
    }
    return facts.join(QStringLiteral(" · "));
}

QString runtime(qint64 minutes)
{
    const qint64 hours = minutes / 60;
    const qint64 rest = minutes % 60;
    if (minutes < 60) {
        return QStringLiteral("%1 min").arg(minutes);
    }
    return rest == 0 ? QStringLiteral("%1 hr").arg(hours) : QStringLiteral("%1 hr %2 min").arg(hours).arg(rest);
}

QList<Choice> bookPills(const Book &book, const QLocale &locale)
{
    QList<Choice> pills;
    if (book.averageRating) {
        pills << pill(outOfFive(QStringLiteral("Goodreads"), *book.averageRating, locale), QStringLiteral("star"));
    }
    for (const QString &tag : book.tags) {
        pills << pill(tag, QStringLiteral("tag"));
    }
    return pills;
}

QList<Choice> audiobookPills(const Audiobook &audiobook, const QLocale &locale)
{
    QList<Choice> pills;
    if (audiobook.runtimeMinutes) {
        pills << pill(runtime(*audiobook.runtimeMinutes), QStringLiteral("clock"));
    }
    if (audiobook.averageRating) {
        pills << pill(outOfFive(QStringLiteral("Audible"), *audiobook.averageRating, locale), QStringLiteral("star"));
    }
    const double progress = audiobook.listeningProgress.value_or(0);
    if (progress > 0 && progress < 100) {
        pills << pill(QStringLiteral("%1% listened").arg(std::llround(progress)), QStringLiteral("headphones"));
    }
    return pills;
}

} // namespace quire::DetailTexts
