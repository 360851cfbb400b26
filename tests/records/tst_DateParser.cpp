// The forms of dates, in the zone that the program is started in.

#include "DateOracle.h"

#include "records/DateParser.h"

#include <QDateTime>
#include <QLocale>

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

namespace quire {

namespace {

using namespace std::chrono_literals;
using std::chrono::sys_days;
using std::chrono::year;

std::optional<Instant> parsed(const QString &text)
{
    return DateParser::date(QStringView(text));
}

Instant utc(int y, unsigned month, unsigned day, std::chrono::milliseconds time = 0ms)
{
    return sys_days(year(y) / std::chrono::month(month) / std::chrono::day(day)) + time;
}

Instant local(int y, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return Instant(
        std::chrono::milliseconds(QDateTime(QDate(y, month, day), QTime(hour, minute, second)).toMSecsSinceEpoch()));
}

const std::vector<QString> oneOfEachForm{QStringLiteral("2024-03-05T10:15:30.250+01:00"),
    QStringLiteral("2024-03-05T10:15:30Z"), QStringLiteral("Tue, 05 Mar 2024 10:15:30 -0730"),
    QStringLiteral("Tue Mar 05 10:15:30 +0000 2024"), QStringLiteral("2024-03-05 10:15:30"),
    QStringLiteral("2024-03-05"), QStringLiteral("Mar 05, 2024")};

constexpr auto tenFifteenThirty = 10h + 15min + 30s;

TEST(DateParser, AbsentEmptyAndBlankTextsAreAbsentDates)
{
    EXPECT_FALSE(DateParser::date(std::optional<QString>()));
    EXPECT_FALSE(DateParser::date(std::optional(QString())));
    EXPECT_FALSE(parsed(QStringLiteral("")));
    EXPECT_FALSE(parsed(QStringLiteral("    ")));
    EXPECT_FALSE(parsed(QStringLiteral(" \t\r\n\u00a0")));
}

TEST(DateParser, ReadsInternetDateTimesWithAndWithoutFraction)
{
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05T10:15:30.250Z")), utc(2024, 3, 5, tenFifteenThirty + 250ms));
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05T10:15:30Z")), utc(2024, 3, 5, tenFifteenThirty));
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05T10:15:30.250+01:00")), utc(2024, 3, 5, tenFifteenThirty - 1h + 250ms));
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05T10:15:30-07:30")), utc(2024, 3, 5, tenFifteenThirty + 7h + 30min));
    EXPECT_EQ(parsed(QStringLiteral("2024-01-01T00:30:00+23:59")), utc(2023, 12, 31, 31min));
}

TEST(DateParser, CutsFractionsAfterTheirMilliseconds)
{
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05T00:00:00.2Z")), utc(2024, 3, 5, 200ms));
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05T00:00:00.25Z")), utc(2024, 3, 5, 250ms));
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05T00:00:00.123456789Z")), utc(2024, 3, 5, 123ms));
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05T00:00:00.9999Z")), utc(2024, 3, 5, 999ms));
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05T00:00:00.") + QString(1'000, u'9') + u'Z'), utc(2024, 3, 5, 999ms));
    EXPECT_FALSE(parsed(QStringLiteral("2024-03-05T00:00:00.Z")));
    EXPECT_FALSE(parsed(QStringLiteral("2024-03-05T00:00:00,5Z")));
}

TEST(DateParser, ReadsTheDateOfFeedsByTheFirstPattern)
{
    EXPECT_EQ(parsed(QStringLiteral("Tue, 05 Mar 2024 10:15:30 +0000")), utc(2024, 3, 5, tenFifteenThirty));
    EXPECT_EQ(
        parsed(QStringLiteral("Tue, 05 Mar 2024 10:15:30 -0730")), utc(2024, 3, 5, tenFifteenThirty + 7h + 30min));
    EXPECT_EQ(parsed(QStringLiteral("Tue, 05 Mar 2024 10:15:30 GMT")), utc(2024, 3, 5, tenFifteenThirty));
}

TEST(DateParser, ReadsTheYearLastFormByTheSecondPattern)
{
    EXPECT_EQ(parsed(QStringLiteral("Tue Mar 05 10:15:30 +0000 2024")), utc(2024, 3, 5, tenFifteenThirty));
    EXPECT_EQ(parsed(QStringLiteral("Tue Mar 05 10:15:30 -0730 2024")), utc(2024, 3, 5, tenFifteenThirty + 7h + 30min));
}

TEST(DateParser, TextsWithoutAZoneAreLocalWallClockTime)
{
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05 10:15:30")), local(2024, 3, 5, 10, 15, 30));
    EXPECT_EQ(parsed(QStringLiteral("2024-03-05")), local(2024, 3, 5));
    EXPECT_EQ(parsed(QStringLiteral("Mar 05, 2024")), local(2024, 3, 5));
    EXPECT_EQ(parsed(QStringLiteral("2024-07-05")), local(2024, 7, 5)) << "in summer";
}

TEST(DateParser, ZonelessTextsKeepTheirWrittenYearAndMonth)
{
    for (const QString &text : {QStringLiteral("2024-01-01"), QStringLiteral("2023-12-31 23:59:59"),
             QStringLiteral("Jul 01, 2024"), QStringLiteral("1999-06-30")}) {
        const auto instant = parsed(text);
        ASSERT_TRUE(instant);
        const auto there = QDateTime::fromMSecsSinceEpoch(instant->time_since_epoch().count());
        const QDate written = text.startsWith(u'J') ? QDate(2024, 7, 1) : QDate::fromString(text.left(10), Qt::ISODate);
        EXPECT_EQ(there.date(), written) << text.toStdString();
    }
}

TEST(DateParser, BlanksAroundATextAreAsIfTheyWereNotThere)
{
    for (const QString &text : oneOfEachForm) {
        const auto plain = parsed(text);
        ASSERT_TRUE(plain) << text.toStdString();
        EXPECT_EQ(parsed(QStringLiteral("  ") + text + QStringLiteral(" \n")), plain);
        EXPECT_EQ(parsed(QStringLiteral("\t\r\n\u00a0") + text + QStringLiteral("\u2003\n")), plain);
    }
}

TEST(DateParser, NamesAreEnglishWhateverTheLocaleOfTheProgram)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    EXPECT_FALSE(parsed(QStringLiteral("mar., 05 mars 2024 10:15:30 +0000")));
    EXPECT_FALSE(parsed(QStringLiteral("Tue, 05 févr. 2024 10:15:30 +0000")));
    EXPECT_FALSE(parsed(QStringLiteral("févr. 05, 2024")));
    EXPECT_FALSE(parsed(QStringLiteral("mars 05, 2024")));
    EXPECT_FALSE(parsed(QStringLiteral("juin 05, 2024")));
    EXPECT_TRUE(parsed(QStringLiteral("Mar 05, 2024")));
    QLocale::setDefault(before);
}

TEST(DateParser, NamesMayBeInFullAndInAnyCase)
{
    EXPECT_EQ(parsed(QStringLiteral("March 05, 2024")), local(2024, 3, 5));
    EXPECT_EQ(parsed(QStringLiteral("MAR 05, 2024")), local(2024, 3, 5));
    EXPECT_EQ(parsed(QStringLiteral("tuesday, 05 march 2024 10:15:30 +0000")), utc(2024, 3, 5, tenFifteenThirty));
    EXPECT_FALSE(parsed(QStringLiteral("Marc 05, 2024")));
    EXPECT_FALSE(parsed(QStringLiteral("Sept 05, 2024")));
    EXPECT_FALSE(parsed(QStringLiteral("Tues, 05 Mar 2024 10:15:30 +0000")));
    EXPECT_FALSE(parsed(QStringLiteral("Tuesdays, 05 Mar 2024 10:15:30 +0000")));
}

TEST(DateParser, AllMonthsAndWeekdaysAreKnown)
{
    const QLocale english = QLocale::c();
    for (QDate date(2023, 1, 1); date < QDate(2025, 1, 1); date = date.addDays(1)) {
        const auto expected = utc(date.year(), unsigned(date.month()), unsigned(date.day()), 1h);
        EXPECT_EQ(parsed(english.toString(date, u"ddd, dd MMM yyyy") + QStringLiteral(" 01:00:00 +0000")), expected);
        EXPECT_EQ(parsed(english.toString(date, u"dddd, dd MMMM yyyy") + QStringLiteral(" 01:00:00 +0000")), expected);
    }
}

TEST(DateParser, AWeekdayThatIsNotThatOfTheDateIsNotHeldAgainstIt)
{
    EXPECT_EQ(parsed(QStringLiteral("Sun, 05 Mar 2024 10:15:30 +0000")), utc(2024, 3, 5, tenFifteenThirty));
    EXPECT_FALSE(parsed(QStringLiteral("Xyz, 05 Mar 2024 10:15:30 +0000")));
}

TEST(DateParser, DaysAndTimesThatDoNotExistAreRefused)
{
    for (const QString &text : {QStringLiteral("2023-02-29"), QStringLiteral("1900-02-29"),
             QStringLiteral("2024-02-30"), QStringLiteral("2024-04-31"), QStringLiteral("2024-00-05"),
             QStringLiteral("2024-13-05"), QStringLiteral("2024-03-00"), QStringLiteral("2024-03-32"),
             QStringLiteral("0000-03-05"), QStringLiteral("2024-03-05 24:00:00"), QStringLiteral("2024-03-05 10:60:00"),
             QStringLiteral("2024-03-05 10:15:60"), QStringLiteral("2024-03-05T24:00:00Z"),
             QStringLiteral("2024-03-05T10:15:30+24:00"), QStringLiteral("2024-03-05T10:15:30+01:60"),
             QStringLiteral("Tue, 31 Feb 2024 10:15:30 +0000"), QStringLiteral("Tue, 05 Mar 2024 10:15:30 +2400"),
             QStringLiteral("Tue, 05 Mar 2024 10:15:30 +0060"), QStringLiteral("Feb 29, 2023")}) {
        EXPECT_FALSE(parsed(text)) << text.toStdString();
    }
    EXPECT_TRUE(parsed(QStringLiteral("2024-02-29")));
    EXPECT_TRUE(parsed(QStringLiteral("2000-02-29")));
    EXPECT_TRUE(parsed(QStringLiteral("0001-01-01")));
    EXPECT_TRUE(parsed(QStringLiteral("9999-12-31T23:59:59.999Z")));
}

TEST(DateParser, NumbersHaveExactlyTheirDigits)
{
    for (const QString &text : {QStringLiteral("2024-3-5"), QStringLiteral("24-03-05"), QStringLiteral("02024-03-05"),
             QStringLiteral("2024-003-05"), QStringLiteral("2024-03-005"), QStringLiteral("2024-03-05 1:02:03"),
             QStringLiteral("Tue, 5 Mar 2024 10:15:30 +0000"), QStringLiteral("Tue, 05 Mar 24 10:15:30 +0000"),
             QStringLiteral("Tue Mar  5 10:15:30 +0000 2024"), QStringLiteral("Tue, 05 Mar 2024 10:15:30 +100"),
             QStringLiteral("Tue, 05 Mar 2024 10:15:30 +01000"), QStringLiteral("Mar 5, 2024"),
             QStringLiteral("Mar 05, 24"), QStringLiteral("2024-03-05T10:15:30+1:00"), QStringLiteral("٢٠٢٤-٠٣-٠٥"),
             QStringLiteral("+024-03-05"), QStringLiteral("-2024-03-05")}) {
        EXPECT_FALSE(parsed(text)) << text.toStdString();
    }
}

TEST(DateParser, OtherFormsAndRestsAreRefused)
{
    for (const QString &text : {QStringLiteral("2024-03-05T10:15:30"), QStringLiteral("2024-03-05 10:15:30Z"),
             QStringLiteral("2024-03-05T10:15:30 Z"), QStringLiteral("2024-03-05t10:15:30Z"),
             QStringLiteral("2024-03-05T10:15:30z"), QStringLiteral("2024-03-05T10:15:30+0100"),
             QStringLiteral("2024-03-05T10:15Z"), QStringLiteral("2024-03-05 10:15"), QStringLiteral("20240305"),
             QStringLiteral("2024/03/05"), QStringLiteral("05.03.2024"), QStringLiteral("2024-03"),
             QStringLiteral("2024"), QStringLiteral("2024-03-05T"),
             QStringLiteral("2024-03-05 "
                            "10:15:30.5"),
             QStringLiteral("2024-03-05  10:15:30"), QStringLiteral("2024-03-05x"), QStringLiteral("1709633730"),
             QStringLiteral("Tue, 05 Mar 2024 10:15:30"), QStringLiteral("Tue, 05 Mar 2024 10:15:30 PST"),
             QStringLiteral("Tue, 05 Mar 2024 10:15:30 +00:00"), QStringLiteral("Tue,05 Mar 2024 10:15:30 +0000"),
             QStringLiteral("05 Mar 2024 10:15:30 +0000"), QStringLiteral("Mar 05 2024"), QStringLiteral("Mar 05,2024"),
             QStringLiteral("05 Mar, 2024"), QStringLiteral("2024-03-05\u0000x"), QStringLiteral("not a date"),
             QStringLiteral("M"), QStringLiteral("T"), QStringLiteral("Tue"), QStringLiteral("Tue,"),
             QStringLiteral("Tue ")}) {
        EXPECT_FALSE(parsed(text)) << text.toStdString();
    }
}

TEST(DateParser, EveryPrefixOfATextButADateIsRefused)
{
    for (const QString &text : oneOfEachForm) {
        for (qsizetype length = 0; length < text.size(); ++length) {
            const QString prefix = text.left(length);
            EXPECT_EQ(parsed(prefix), testing::oracleDate(prefix)) << prefix.toStdString();
        }
    }
}

// What a change of one character makes of a text is decided by a second,
// independent reading.
TEST(DateParser, OneChangedCharacterIsJudgedAsAnIndependentReadingJudgesIt)
{
    const QString characters = QStringLiteral("0123456789 -+:,.TZGMUCaAmMrReEuUtT/\u00e9\u0660\n");
    int refused = 0;
    int tried = 0;
    for (const QString &text : oneOfEachForm) {
        for (qsizetype at = 0; at < text.size(); ++at) {
            for (const QChar c : characters) {
                QString replaced = text;
                replaced[at] = c;
                QString inserted = text;
                inserted.insert(at, c);
                QString removed = text;
                removed.remove(at, 1);
                for (const QString &mutation : {replaced, inserted, removed}) {
                    const auto instant = parsed(mutation);
                    ASSERT_EQ(instant, testing::oracleDate(mutation)) << mutation.toStdString();
                    ++tried;
                    refused += instant ? 0 : 1;
                }
            }
        }
    }
    EXPECT_GT(refused, tried * 3 / 4) << refused << " of " << tried;
}

TEST(DateParser, AgreesWithAnIndependentReadingOnRandomTexts)
{
    const auto seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto number = [&random](int from, int to) { return std::uniform_int_distribution(from, to)(random); };
    const QLocale english = QLocale::c();
    int accepted = 0;
    constexpr int rounds = 4'000;
    for (int i = 0; i < rounds; ++i) {
        const QString y = QString::number(number(1, 9999)).rightJustified(4, u'0');
        const QString m = QString::number(number(1, 13)).rightJustified(2, u'0');
        const QString d = QString::number(number(1, 31)).rightJustified(2, u'0');
        const QString name = english.monthName(number(1, 12), QLocale::ShortFormat);
        const QString weekday = english.dayName(number(1, 7), QLocale::ShortFormat);
        const QString time = QStringLiteral("%1:%2:%3")
                                 .arg(number(0, 24), 2, 10, QLatin1Char('0'))
                                 .arg(number(0, 60), 2, 10, QLatin1Char('0'))
                                 .arg(number(0, 60), 2, 10, QLatin1Char('0'));
        const QString hours = QString::number(number(0, 24)).rightJustified(2, u'0');
        const QString minutes = QString::number(number(0, 60)).rightJustified(2, u'0');
        const QString sign = number(0, 1) ? QStringLiteral("+") : QStringLiteral("-");
        QString text;
        switch (number(0, 6)) {
        case 0:
            text = y + u'-' + m + u'-' + d + u'T' + time + u'.' + QString::number(number(0, 99'999)) + sign + hours
                + u':' + minutes;
            break;
        case 1:
            text = y + u'-' + m + u'-' + d + u'T' + time + u'Z';
            break;
        case 2:
            text = weekday + QStringLiteral(", ") + d + u' ' + name + u' ' + y + u' ' + time + u' ' + sign + hours
                + minutes;
            break;
        case 3:
            text = weekday + u' ' + name + u' ' + d + u' ' + time + u' ' + sign + hours + minutes + u' ' + y;
            break;
        case 4:
            text = y + u'-' + m + u'-' + d + u' ' + time;
            break;
        case 5:
            text = y + u'-' + m + u'-' + d;
            break;
        default:
            text = name + u' ' + d + QStringLiteral(", ") + y;
        }
        const auto instant = parsed(text);
        ASSERT_EQ(instant, testing::oracleDate(text)) << text.toStdString();
        accepted += instant ? 1 : 0;
    }
    EXPECT_GT(accepted, rounds / 2);
}

TEST(DateParser, ManyThreadsMayReadDatesAtOnce)
{
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&wrong, t] {
            for (int i = 0; i < 2'000; ++i) { // years that no other test has met
                const int y = 3000 + (i + t * 500) % 2'000;
                const auto instant = parsed(QString::number(y) + QStringLiteral("-07-01"));
                const auto winter = parsed(QString::number(y) + QStringLiteral("-01-01T00:00:00Z"));
                wrong += instant && winter && *instant - *winter > 180 * 24h && *instant - *winter < 184 * 24h ? 0 : 1;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST(Iso8601, IsUtcWithThreeDigitsOfFraction)
{
    EXPECT_EQ(
        DateParser::iso8601(utc(2026, 11, 16, 3h + 41min + 9s + 123ms)), QStringLiteral("2026-11-16T03:41:09.123Z"));
    EXPECT_EQ(DateParser::iso8601(utc(2026, 1, 2)), QStringLiteral("2026-01-02T00:00:00.000Z"));
    EXPECT_EQ(DateParser::iso8601(utc(1969, 12, 31, 24h - 1ms)), QStringLiteral("1969-12-31T23:59:59.999Z"));
    EXPECT_EQ(DateParser::iso8601(distantPast), QStringLiteral("0001-01-01T00:00:00.000Z"));
}

TEST(Iso8601, ReadsBackAsTheSameInstant)
{
    const auto seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    std::uniform_int_distribution<qint64> milliseconds(-62'135'596'800'000, 253'402'300'799'999);
    for (int i = 0; i < 10'000; ++i) {
        const Instant instant{std::chrono::milliseconds(milliseconds(random))};
        ASSERT_EQ(parsed(DateParser::iso8601(instant)), instant);
    }
}

} // namespace

} // namespace quire
