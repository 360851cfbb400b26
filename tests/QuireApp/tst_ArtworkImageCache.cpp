#include "QuireApp/Covers/ArtworkImageCache.h"
#include "QuireApp/Covers/CoverSource.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <thread>

namespace quire {

namespace {

CoverBytes cover(int width = 20, int height = 30)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return CoverBytes(bytes);
}

QString key(int number)
{
    return QStringLiteral("book-%1-100").arg(number);
}

TEST(ArtworkImageCache, ACoverIsDecodedOnce)
{
    ArtworkImageCache cache;
    EXPECT_FALSE(cache.find(key(1)).has_value());
    EXPECT_EQ(cache.decode(cover(), key(1)).size(), QSize(20, 30));
    EXPECT_EQ(cache.decode(cover(), key(1)).size(), QSize(20, 30));
    EXPECT_EQ(cache.decodeCount(), 1);
    EXPECT_TRUE(cache.find(key(1)).has_value());
}

TEST(ArtworkImageCache, ACorruptBlobIsNotTriedAgainUnderItsKey)
{
    ArtworkImageCache cache;
    const CoverBytes broken(QByteArrayLiteral("no picture"));
    EXPECT_TRUE(cache.decode(broken, key(1)).isNull());
    EXPECT_TRUE(cache.decode(broken, key(1)).isNull());
    EXPECT_EQ(cache.decodeCount(), 1);
    cache.decode(broken, key(2));
    EXPECT_EQ(cache.decodeCount(), 2);
}

TEST(ArtworkImageCache, TheEntryAfterTheFiveHundredthEvictsTheOneNotUsedLongest)
{
    ArtworkImageCache cache;
    const QImage picture(1, 1, QImage::Format_RGB32);
    for (int number = 0; number < 500; ++number) {
        cache.insert(key(number), picture);
    }
    EXPECT_EQ(cache.count(), 500);
    EXPECT_TRUE(cache.find(key(0)).has_value()); // used: no longer the oldest
    cache.insert(key(500), picture);
    EXPECT_EQ(cache.count(), 500);
    EXPECT_TRUE(cache.find(key(0)).has_value());
    EXPECT_FALSE(cache.find(key(1)).has_value());
}

TEST(ArtworkImageCache, ThePicturesTogetherStayWithinTheirBytes)
{
    ArtworkImageCache cache;
    const QImage picture(640, 640, QImage::Format_RGB32);
    for (int number = 0; number < 200; ++number) {
        cache.insert(key(number), picture);
    }
    EXPECT_LE(cache.totalCost(), ArtworkImageCache::costLimit);
    EXPECT_EQ(cache.count(), ArtworkImageCache::costLimit / (640 * 640 * 4));
    EXPECT_EQ(cache.totalCost(), cache.count() * 640 * 640 * 4);
}

TEST(ArtworkImageCache, PrewarmingDecodesWhatIsAbsentAndStopsWhenAsked)
{
    ArtworkImageCache cache;
    cache.decode(cover(), key(1));
    const QList<ArtworkCacheEntry> entries{{key(1), cover()}, {key(2), cover()}};
    std::stop_source stop;
    cache.prewarm(entries, stop.get_token());
    EXPECT_EQ(cache.decodeCount(), 2);

    stop.request_stop();
    cache.prewarm({{key(3), cover()}}, stop.get_token());
    EXPECT_FALSE(cache.find(key(3)).has_value());
}

TEST(ArtworkImageCache, SeveralThreadsUseItAtOnce)
{
    ArtworkImageCache cache;
    {
        std::vector<std::jthread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&cache, thread] {
                for (int number = 0; number < 200; ++number) {
                    cache.decode(cover(), key((number * (thread + 1)) % 50));
                }
            });
        }
    }
    EXPECT_EQ(cache.count(), 50);
}

TEST(CoverSource, ItsKeyHoldsTheNumberOfBytes)
{
    const CoverBytes data(QByteArray(7, 'x'));
    EXPECT_EQ(CoverSource::ofBook(3, data).resolvedCacheKey(), QStringLiteral("book-3-7"));
    EXPECT_EQ(CoverSource::ofAudiobook(3, std::nullopt).resolvedCacheKey(), QStringLiteral("audio-3-0"));
    EXPECT_NE(CoverSource::ofBook(3, data), CoverSource::ofBook(3, CoverBytes(QByteArray(8, 'x'))));
}

} // namespace

} // namespace quire
