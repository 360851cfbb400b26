#include "publishing/ReadingListForms.h"

#include "records/DateParser.h"
#include "records/LocalTime.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTimeZone>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace quire {

namespace {

constexpr QStringView dayFormat = u"MMM d, yyyy";
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

void appendPlainNumber(QString &text, qint64 number)
{
    char digits[20]; // with a sign
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number);
    text += QLatin1String(digits, end.ptr);
}

ReadingListForms::ReadingListForms(const QLocale &locale)
    : m_locale(locale)
    , m_longDate(longDateFormat(locale))
{
    for (int month = 1; month <= 12; ++month) {
        m_months[std::size_t(month) - 1] = locale.monthName(month, QLocale::ShortFormat);
    }
    if (const QString zero = locale.zeroDigit(); zero.size() == 1) {
        m_zero = zero.front();
    }
}

QString ReadingListForms::publishedDate(Instant moment) const
{
    const QDateTime there = QDateTime::fromMSecsSinceEpoch(moment.time_since_epoch().count(), newYork());
    return m_locale.toString(there.date(), m_longDate) + u' ' + m_locale.toString(there.time(), QLocale::ShortFormat);
}

std::optional<QStringView> ReadingListForms::day(const std::optional<QString> &date)
{
    const auto instant = DateParser::date(date);
    if (!instant) {
        return std::nullopt;
    }
    const auto wall = LocalTime::wallClock(std::chrono::floor<std::chrono::seconds>(*instant));
    const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(wall));
    const int year = int(day.year());
    if (m_zero.isNull() || year < 1 || year > 9'999) {
        m_day = m_locale.toString(QDate(year, int(unsigned(day.month())), int(unsigned(day.day()))), dayFormat);
        return m_day;
    }
    // As by the format, which takes longer than all the rest of a title.
    m_day.resize(0);
    m_day += m_months[unsigned(day.month()) - 1];
    m_day += u' ';
    appendDigits(unsigned(day.day()), 1);
    m_day += u", ";
    appendDigits(unsigned(year), 4);
    return m_day;
}

void ReadingListForms::appendDigits(unsigned number, int width)
{
    std::array<QChar, 10> digits;
    std::size_t first = digits.size();
    for (; width > 0 || number > 0; --width, number /= 10) {
        digits[--first] = QChar(char16_t(m_zero.unicode() + number % 10));
    }
    m_day.append(&digits[first], qsizetype(digits.size() - first));
}

QString ReadingListForms::grouped(qint64 count) const
{
    return m_locale.toString(count);
}

QString ReadingListForms::average(double average) const
{
    return average > 0 ? m_locale.toString(rounded(average, 10), 'f', 1) : QStringLiteral("N/A");
}

const QString &ReadingListForms::rating(double rating)
{
    QString &text = m_ratings[rating];
    if (text.isNull()) {
        text = m_locale.toString(rounded(rating, 100), 'f', QLocale::FloatingPointShortest);
    }
    return text;
}

const QString &ReadingListForms::stars(double rating)
{
    if (!(rating > 0)) { // nor a number at all
        return m_unrated;
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
