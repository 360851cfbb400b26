#include "DateOracle.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTimeZone>

#include <algorithm>
#include <array>

namespace quire::testing {

namespace {

constexpr std::array names{"jan", "feb", "mar", "apr", "may", "jun", "jul", "aug", "sep", "oct", "nov", "dec"};

const auto weekday = QStringLiteral("(?i:mon(?:day)?|tue(?:sday)?|wed(?:nesday)?|thu(?:rsday)?|fri(?:day)?|"
                                    "sat(?:urday)?|sun(?:day)?)");
const auto month = QStringLiteral("(?<M>(?i:jan(?:uary)?|feb(?:ruary)?|mar(?:ch)?|apr(?:il)?|may|june?|july?|"
                                  "aug(?:ust)?|sep(?:tember)?|oct(?:ober)?|nov(?:ember)?|dec(?:ember)?))");
const auto year = QStringLiteral("(?<y>[0-9]{4})");
const auto day = QStringLiteral("(?<d>[0-9]{2})");
const auto dashed = year + QStringLiteral("-(?<m>[0-9]{2})-") + day;
const auto time = QStringLiteral("(?<H>[0-9]{2}):(?<i>[0-9]{2}):(?<s>[0-9]{2})");
const auto internet = QStringLiteral("(?<z>Z|[+-][0-9]{2}:[0-9]{2})");
const auto zone = QStringLiteral("(?<z>GMT|UTC|UT|Z|[+-][0-9]{4})");

const auto forms = [] {
    std::vector<QRegularExpression> expressions;
    for (const QString &pattern : {
             dashed + u'T' + time + QStringLiteral("\\.(?<f>[0-9]+)") + internet,
             dashed + u'T' + time + internet,
             weekday + QStringLiteral(", ") + day + u' ' + month + u' ' + year + u' ' + time + u' ' + zone,
             weekday + u' ' + month + u' ' + day + u' ' + time + u' ' + zone + u' ' + year,
             dashed + u' ' + time,
             dashed,
             month + u' ' + day + QStringLiteral(", ") + year,
         }) {
        expressions.emplace_back(QRegularExpression::anchoredPattern(pattern));
    }
    return expressions;
}();

std::optional<int> offsetSeconds(const QString &text)
{
    if (!text.startsWith(u'+') && !text.startsWith(u'-')) {
        return 0;
    }
    const int hours = text.mid(1, 2).toInt();
    const int minutes = text.right(2).toInt();
    if (hours > 23 || minutes > 59) {
        return std::nullopt;
    }
    return (text.startsWith(u'-') ? -1 : 1) * (hours * 3600 + minutes * 60);
}

int monthNumber(const QRegularExpressionMatch &match)
{
    const QString name = match.captured(QStringLiteral("M")).left(3).toLower();
    if (name.isEmpty()) {
        return match.captured(QStringLiteral("m")).toInt();
    }
    const auto found = std::find_if(
        names.begin(), names.end(), [&name](const char *candidate) { return name == QLatin1String(candidate); });
    return static_cast<int>(found - names.begin()) + 1;
}

std::optional<Instant> meaning(const QRegularExpressionMatch &match)
{
    const auto number = [&match](const QString &part) { return match.captured(part).toInt(); };
    const QDate date(number(QStringLiteral("y")), monthNumber(match), number(QStringLiteral("d")));
    const int hour = number(QStringLiteral("H"));
    const int minute = number(QStringLiteral("i"));
    const int second = number(QStringLiteral("s"));
    if (!date.isValid() || !QTime::isValid(hour, minute, second)) {
        return std::nullopt;
    }
    const QString zoneText = match.captured(QStringLiteral("z"));
    if (zoneText.isEmpty()) {
        return oracleLocalInstant(date.year(), date.month(), date.day(), hour, minute, second);
    }
    const auto offset = offsetSeconds(zoneText);
    if (!offset) {
        return std::nullopt;
    }
    const QDateTime utc(date, QTime(hour, minute, second), Qt::UTC);
    const int fraction = (match.captured(QStringLiteral("f")) + QStringLiteral("000")).left(3).toInt();
    return Instant(std::chrono::milliseconds(utc.toMSecsSinceEpoch() + fraction - *offset * 1000LL));
}

} // namespace

std::optional<Instant> oracleDate(const QString &text)
{
    for (const QRegularExpression &form : forms) {
        const auto match = form.match(text.trimmed());
        if (match.hasMatch()) {
            return meaning(match);
        }
    }
    return std::nullopt;
}

Instant oracleLocalInstant(int yearNumber, int monthOfYear, int dayOfMonth, int hour, int minute, int second)
{
    const QDateTime wall(QDate(yearNumber, monthOfYear, dayOfMonth), QTime(hour, minute, second), Qt::UTC);
    const qint64 wallSeconds = wall.toSecsSinceEpoch();
    const auto offsetAt = [](qint64 utc) { return QDateTime::fromSecsSinceEpoch(utc).offsetFromUtc(); };
    const auto instant = [](qint64 utc) { return Instant(std::chrono::seconds(utc)); };

    // Every offset in force within a day and a half either side is tried.
    std::vector<int> offsets;
    constexpr qint64 reach = 36 * 3600;
    for (qint64 utc = wallSeconds - reach; utc <= wallSeconds + reach; utc += 900) {
        const int offset = offsetAt(utc);
        if (std::find(offsets.begin(), offsets.end(), offset) == offsets.end()) {
            offsets.push_back(offset);
        }
    }
    std::optional<qint64> first;
    for (const int offset : offsets) {
        const qint64 utc = wallSeconds - offset;
        if (offsetAt(utc) == offset && (!first || utc < *first)) {
            first = utc;
        }
    }
    return instant(first.value_or(wallSeconds - offsets.front())); // the offset before the gap
}

} // namespace quire::testing
