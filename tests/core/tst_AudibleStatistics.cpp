#include "core/AudibleStatistics.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

Audiobook withStatus(const QString &status, const std::optional<QString> &series = std::nullopt)
{
    Audiobook audiobook;
    audiobook.status = status;
    audiobook.series = series;
    return audiobook;
}

TEST(AudibleStatistics, CountATitleWithoutStatusAsRead)
{
    const AudibleStatistics statistics
        = makeAudibleStatistics({withStatus(QString()), withStatus(QStringLiteral("read"))});

    EXPECT_EQ(statistics.read, 2);
}

TEST(AudibleStatistics, CountWhatWasNotFinishedInTheTotalAlone)
{
    const AudibleStatistics statistics
        = makeAudibleStatistics({withStatus(QStringLiteral("did-not-finish")), withStatus(QStringLiteral("reading")),
            withStatus(QStringLiteral("to-read")), withStatus(QStringLiteral("to-read"))});

    EXPECT_EQ(statistics, (AudibleStatistics{.total = 4, .read = 0, .reading = 1, .toRead = 2, .seriesCount = 0}));
}

TEST(AudibleStatistics, CountSeriesByTheirTrimmedSpelling)
{
    const QString read = QStringLiteral("read");
    const AudibleStatistics statistics
        = makeAudibleStatistics({withStatus(read, QStringLiteral("Dune")), withStatus(read, QStringLiteral(" Dune\n")),
            withStatus(read, QStringLiteral("dune")), withStatus(read, QStringLiteral("  ")), withStatus(read)});

    EXPECT_EQ(statistics.seriesCount, 2);
}

} // namespace

} // namespace quire
