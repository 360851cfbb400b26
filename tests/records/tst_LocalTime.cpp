// Local time across the changes of the clocks. The zone is read once a process,
// so ctest runs this program once for each zone that it knows.

#include "DateOracle.h"

#include "records/DateParser.h"
#include "records/LocalTime.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace quire {

namespace {

// A text, and the instant that it means in the zone.
using Meanings = std::vector<std::pair<QString, QString>>;

const std::map<QString, Meanings> &meaningsByZone()
{
    static const std::map<QString, Meanings> zones{
        {QStringLiteral("UTC"), {{QStringLiteral("2024-03-31 02:30:00"), QStringLiteral("2024-03-31T02:30:00.000Z")}}},
        {QStringLiteral("Europe/Oslo"),
            {// the night without half past two, then the one with two of them
                {QStringLiteral("2024-03-31 01:59:59"), QStringLiteral("2024-03-31T00:59:59.000Z")},
                {QStringLiteral("2024-03-31 02:00:00"), QStringLiteral("2024-03-31T01:00:00.000Z")},
                {QStringLiteral("2024-03-31 02:30:00"), QStringLiteral("2024-03-31T01:30:00.000Z")},
                {QStringLiteral("2024-03-31 03:00:00"), QStringLiteral("2024-03-31T01:00:00.000Z")},
                {QStringLiteral("2024-10-27 01:59:59"), QStringLiteral("2024-10-26T23:59:59.000Z")},
                {QStringLiteral("2024-10-27 02:30:00"), QStringLiteral("2024-10-27T00:30:00.000Z")},
                {QStringLiteral("2024-10-27 03:00:00"), QStringLiteral("2024-10-27T02:00:00.000Z")},
                {QStringLiteral("2024-03-05"), QStringLiteral("2024-03-04T23:00:00.000Z")},
                {QStringLiteral("Jul 05, 2024"), QStringLiteral("2024-07-04T22:00:00.000Z")},
                {QStringLiteral("9999-07-01"), QStringLiteral("9999-06-30T22:00:00.000Z")}}},
        {QStringLiteral("America/Sao_Paulo"),
            {// summer time began at midnight, so that this day began at one
                {QStringLiteral("2018-11-04"), QStringLiteral("2018-11-04T03:00:00.000Z")},
                {QStringLiteral("Nov 04, 2018"), QStringLiteral("2018-11-04T03:00:00.000Z")},
                {QStringLiteral("2018-11-03"), QStringLiteral("2018-11-03T03:00:00.000Z")},
                {QStringLiteral("2018-11-05"), QStringLiteral("2018-11-05T02:00:00.000Z")},
                {QStringLiteral("2019-02-16 23:30:00"), QStringLiteral("2019-02-17T01:30:00.000Z")},
                {QStringLiteral("2019-02-17"), QStringLiteral("2019-02-17T03:00:00.000Z")}}},
        {QStringLiteral("America/Havana"),
            {// at one o'clock it became midnight again
                {QStringLiteral("2023-11-05"), QStringLiteral("2023-11-05T04:00:00.000Z")},
                {QStringLiteral("2023-11-05 00:30:00"), QStringLiteral("2023-11-05T04:30:00.000Z")},
                {QStringLiteral("2023-11-05 01:00:00"), QStringLiteral("2023-11-05T06:00:00.000Z")},
                {QStringLiteral("2023-03-12"), QStringLiteral("2023-03-12T05:00:00.000Z")}}},
        {QStringLiteral("Australia/Lord_Howe"),
            {// half an hour of summer time
                {QStringLiteral("2024-10-06 02:15:00"), QStringLiteral("2024-10-05T15:45:00.000Z")},
                {QStringLiteral("2024-04-07 01:45:00"), QStringLiteral("2024-04-06T14:45:00.000Z")}}},
        {QStringLiteral("Asia/Kathmandu"),
            {{QStringLiteral("2024-03-05"), QStringLiteral("2024-03-04T18:15:00.000Z")}}},
        {QStringLiteral("Pacific/Apia"),
            {// a whole day was skipped, at the date line
                {QStringLiteral("2011-12-29 23:00:00"), QStringLiteral("2011-12-30T09:00:00.000Z")},
                {QStringLiteral("2011-12-30"), QStringLiteral("2011-12-30T10:00:00.000Z")},
                {QStringLiteral("2011-12-31"), QStringLiteral("2011-12-30T10:00:00.000Z")}}},
        {QStringLiteral("Africa/Casablanca"),
            {// summer time but in Ramadan
                {QStringLiteral("2024-03-05"), QStringLiteral("2024-03-04T23:00:00.000Z")},
                {QStringLiteral("2024-03-15"), QStringLiteral("2024-03-15T00:00:00.000Z")},
                {QStringLiteral("2024-04-20"), QStringLiteral("2024-04-19T23:00:00.000Z")}}},
        {QStringLiteral("EST5EDT,M3.2.0,M11.1.0"),
            {{QStringLiteral("2024-03-05"), QStringLiteral("2024-03-05T05:00:00.000Z")},
                {QStringLiteral("2024-07-05"), QStringLiteral("2024-07-05T04:00:00.000Z")}}},
    };
    return zones;
}

QString zone()
{
    return qEnvironmentVariable("TZ");
}

TEST(LocalTime, KnownTimesOfTheZoneMeanTheirKnownInstants)
{
    const auto known = meaningsByZone().find(zone());
    ASSERT_NE(known, meaningsByZone().end()) << "nothing is known of the zone " << zone().toStdString();
    for (const auto &[text, meaning] : known->second) {
        const auto instant = DateParser::date(QStringView(text));
        ASSERT_TRUE(instant) << text.toStdString();
        EXPECT_EQ(DateParser::iso8601(*instant).toStdString(), meaning.toStdString()) << text.toStdString();
    }
}

TEST(LocalTime, AgreesWithAnIndependentSearchAtRandomTimes)
{
    const auto seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    std::uniform_int_distribution<qint64> seconds(-3'000'000'000, 8'000'000'000); // 1874 to 2223
    for (int i = 0; i < 1'000; ++i) {
        const qint64 wall = seconds(random);
        const QDateTime shown = QDateTime::fromSecsSinceEpoch(wall, Qt::UTC);
        const QDate date = shown.date();
        const QTime time = shown.time();
        const auto expected = testing::oracleLocalInstant(
            date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second());
        ASSERT_EQ(LocalTime::instant(std::chrono::local_seconds(std::chrono::seconds(wall))), expected)
            << shown.toString(Qt::ISODate).toStdString();
    }
}

TEST(LocalTime, AgreesWithAnIndependentSearchAroundEveryChangeOfTheClock)
{
    int changes = 0;
    constexpr qint64 day = 86'400;
    const auto offsetAt = [](qint64 utc) { return QDateTime::fromSecsSinceEpoch(utc).offsetFromUtc(); };
    for (qint64 utc = 1'000'000'000; utc < 1'800'000'000; utc += day) { // 2001 to 2027
        if (offsetAt(utc) == offsetAt(utc + day)) {
            continue;
        }
        ++changes;
        for (qint64 wall = utc - day; wall < utc + 2 * day; wall += 2'700) {
            const QDateTime shown = QDateTime::fromSecsSinceEpoch(wall, Qt::UTC);
            const QDate date = shown.date();
            const QTime time = shown.time();
            const auto expected = testing::oracleLocalInstant(
                date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second());
            ASSERT_EQ(LocalTime::instant(std::chrono::local_seconds(std::chrono::seconds(wall))), expected)
                << shown.toString(Qt::ISODate).toStdString();
        }
    }
    const bool keepsItsClock = zone() == QStringLiteral("UTC") || zone() == QStringLiteral("Asia/Kathmandu");
    EXPECT_EQ(changes == 0, keepsItsClock) << changes;
}

// Qt asks the C library at each moment anew.
std::chrono::local_seconds shownByQt(qint64 utc)
{
    return std::chrono::local_seconds(std::chrono::seconds(utc + QDateTime::fromSecsSinceEpoch(utc).offsetFromUtc()));
}

TEST(LocalTime, ShowsWhatTheWallShowsAtRandomInstants)
{
    const auto seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    std::uniform_int_distribution<qint64> seconds(0, 2'100'000'000); // 1970 to 2036
    for (int i = 0; i < 10'000; ++i) {
        const qint64 utc = seconds(random);
        ASSERT_EQ(LocalTime::wallClock(std::chrono::sys_seconds(std::chrono::seconds(utc))), shownByQt(utc)) << utc;
    }
}

TEST(LocalTime, ShowsWhatTheWallShowsAroundEveryChangeOfTheClock)
{
    constexpr qint64 day = 86'400;
    const auto offsetAt = [](qint64 utc) { return QDateTime::fromSecsSinceEpoch(utc).offsetFromUtc(); };
    for (qint64 utc = 1'000'000'000; utc < 1'800'000'000; utc += day) { // 2001 to 2027
        if (offsetAt(utc) == offsetAt(utc + day)) {
            continue;
        }
        qint64 before = utc;
        for (qint64 after = utc + day; after - before > 1;) {
            const qint64 middle = (before + after) / 2;
            (offsetAt(middle) == offsetAt(utc) ? before : after) = middle;
        }
        for (qint64 at = before - 7'200; at <= before + 7'200; at += at < before - 1 || at > before + 1 ? 300 : 1) {
            ASSERT_EQ(LocalTime::wallClock(std::chrono::sys_seconds(std::chrono::seconds(at))), shownByQt(at)) << at;
        }
    }
}

} // namespace

} // namespace quire
