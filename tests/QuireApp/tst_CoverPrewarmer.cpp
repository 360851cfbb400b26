#include "ModelTest.h"
#include "QuireApp/Covers/CoverPrewarmer.h"
#include "QuireApp/Covers/CoverSource.h"
#include "QuireApp/Covers/CoverWork.h"

namespace quire {

namespace {

class CoverPrewarmerTest : public ModelTest
{
};

TEST_F(CoverPrewarmerTest, TheSignatureTellsReadinessTabAndCounts)
{
    addBook(QStringLiteral("Emma"));
    addAudiobook(QStringLiteral("Dune"));
    addAudiobook(QStringLiteral("Momo"));
    library.execute("UPDATE goodreads_books SET cover_data = NULL");
    library.execute("UPDATE audible_books SET cover_data = NULL WHERE title = 'Dune'");
    makeModel();
    EXPECT_EQ(artworkCacheSignature(*model), QStringLiteral("false-insights-0-0-0-0"));
    testing::await(model->start());
    EXPECT_EQ(artworkCacheSignature(*model), QStringLiteral("true-insights-1-0-2-1"));
    // As soon as those without a cover have been given one:
    EXPECT_TRUE(testing::eventually(
        [this] { return artworkCacheSignature(*model) == QStringLiteral("true-insights-1-1-2-2"); }));
}

TEST_F(CoverPrewarmerTest, CoversAreDecodedOnceTheLibraryIsReadyAndAgainWhenThereAreMore)
{
    addBook(QStringLiteral("Emma"));
    makeModel();
    const CoverPrewarmer prewarmer(*model);
    ArtworkImageCache &cache = ArtworkImageCache::shared();
    const auto isDecoded = [&cache](const ArtworkCacheEntry &entry) { return cache.find(entry.key).has_value(); };
    const qsizetype before = cache.count();
    settle();
    EXPECT_EQ(cache.count(), before); // nothing is known of the library yet

    testing::await(model->start());
    const auto first = prewarmEntries(*model);
    ASSERT_EQ(first.size(), 1);
    EXPECT_TRUE(testing::eventually([&] { return isDecoded(first.constFirst()); }));

    addAudiobook(QStringLiteral("Momo"));
    testing::await(model->reload());
    const auto second = prewarmEntries(*model);
    ASSERT_EQ(second.size(), 2);
    EXPECT_TRUE(testing::eventually([&] { return isDecoded(second.constLast()); }));
    CoverWork::finish();
}

TEST_F(CoverPrewarmerTest, TheFirstThirtyTwoStoredCoversAreTakenBooksFirst)
{
    for (int number = 0; number < 31; ++number) {
        addBook(QStringLiteral("Book %1").arg(number));
        addAudiobook(QStringLiteral("Audio %1").arg(number));
    }
    library.execute("UPDATE goodreads_books SET cover_data = x'0102'");
    library.execute("UPDATE audible_books SET cover_data = x'010203'");
    startModel();
    const QList<ArtworkCacheEntry> entries = prewarmEntries(*model);
    ASSERT_EQ(entries.size(), 32);
    EXPECT_TRUE(entries.constFirst().key.startsWith(u"book-"));
    EXPECT_TRUE(entries.at(30).key.startsWith(u"book-"));
    EXPECT_TRUE(entries.constLast().key.startsWith(u"audio-"));
    EXPECT_TRUE(entries.constLast().key.endsWith(u"-3"));
}

} // namespace

} // namespace quire
