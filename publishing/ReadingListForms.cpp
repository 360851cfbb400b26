#include "publishing/ReadingListForms.h"

#include "records/DateParser.h"
#include "records/LocalTime.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTimeZone>

#include <algorithm>
#include <cmath>

namespace quire {

namespace {

constexpr double mostStars = 100;

// Qt knows the languages' full date alone, which is the long one with the day of
// the week before or after it.
QString longDateFormat(const QLocale &locale)
{
    static const QRegularExpression weekdayFirst(QStringLiteral("^dddd\\S*\\s*"));
    static const QRegularExpression weekdayLast(QStringLiteral("[\\s,،-]*dddd.*$"));
    return locale.dateFormat(QLocale::LongFormat).remove(weekdayFirst).remove(weekdayLast);
}

// To so many digits of fraction; a value halfway between two goes to the even
// one, as the numbers of every other program do.
double rounded(double value, double scale)
{
    constexpr double wholeFromHere = 1e15;
    return std::abs(value) < wholeFromHere ? std::nearbyint(value * scale) / scale : value;
}

const QTimeZone &newYork()
{
    static const QTimeZone zone("America/New_York");
    return zone;
}

} // namespace

ReadingListForms::ReadingListForms(const QLocale &locale)
    : m_locale(locale)
    , m_longDate(longDateFormat(locale))
{
}

QString ReadingListForms::publishedDate(Instant moment) const
{
    const QDateTime there = QDateTime::fromMSecsSinceEpoch(moment.time_since_epoch().count(), newYork());
    return m_locale.toString(there.date(), m_longDate) + u' ' + m_locale.toString(there.time(), QLocale::ShortFormat);
}

std::optional<QString> ReadingListForms::day(const std::optional<QString> &date)
{
    const auto instant = DateParser::date(date);
    if (!instant) {
        return std::nullopt;
    }
    const auto wall = LocalTime::wallClock(std::chrono::floor<std::chrono::seconds>(*instant));
    const qint64 number = std::chrono::floor<std::chrono::days>(wall).time_since_epoch().count();
    QString &text = m_days[number];
    if (text.isNull()) {
        text = m_locale.toString(QDate(1970, 1, 1).addDays(number), u"MMM d, yyyy");
    }
    return text;
}

QString ReadingListForms::grouped(qint64 count) const
{
    return m_locale.toString(count);
}

QString ReadingListForms::average(double average) const
{
    return average > 0 ? m_locale.toString(rounded(average, 10), 'f', 1) : QStringLiteral("N/A");
}

QString ReadingListForms::rating(double rating)
{
    QString &text = m_ratings[rating];
    if (text.isNull()) {
        text = m_locale.toString(rounded(rating, 100), 'f', QLocale::FloatingPointShortest);
    }
    return text;
}

QString ReadingListForms::stars(double rating)
{
    if (!(rating > 0)) { // nor a number at all
        return QStringLiteral("Unrated");
    }
    QString &text = m_stars[rating];
    if (text.isNull()) {
        const double whole = std::floor(rating);
        text = QString(qsizetype(std::min(whole, mostStars)), u'★');
        if (rating - whole >= 0.5) {
            text += u'½';
        }
        text += QStringLiteral(" (") + this->rating(rating) + QStringLiteral("/5)");
    }
    return text;
}

} // namespace quire
