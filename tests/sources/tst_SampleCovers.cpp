// Answers to the search for a cover as the services really send them, and which
// cover each gives. Built only when a folder of such answers is named.

#include "sources/CoverCandidates.h"
#include "sources/CoverFinder.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace quire;

namespace {

QByteArray sample(const QString &name)
{
    QFile file(QStringLiteral(QUIRE_SAMPLE_DATA "/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qUtf8Printable(file.fileName());
    return file.readAll();
}

QList<PortraitCover> openLibrary(const QString &name)
{
    return CoverCandidates::ofOpenLibrary(
        sample(QStringLiteral("open-library/") + name), QUrl(QStringLiteral("https://covers.example")));
}

// The address of the best of them, empty for none.
QString best(const char *title, const char *author, const QList<PortraitCover> &candidates)
{
    const auto found = CoverFinder::bestMatch(QString::fromUtf8(title), QString::fromUtf8(author), candidates);
    return found ? found->url.text() : QString();
}

} // namespace

TEST(SampleCovers, AStudyGuideIsNotTheBookAskedFor)
{
    const auto candidates
        = CoverCandidates::ofAppleBooks(sample(QStringLiteral("itunes-ebooks/search_bone_1-result_2020.json")));
    ASSERT_EQ(candidates.size(), 1);
    EXPECT_TRUE(candidates[0].url.text().endsWith(u"/source/600x900bb.jpg"));
    EXPECT_EQ(best("Bone", "Jeff Smith", candidates), QString());
}

TEST(SampleCovers, ARealResultGivesItsLargePortrait)
{
    const QByteArray result = sample(QStringLiteral("itunes-ebooks/result_old-man-and-the-sea_single_2018.json"));
    const auto candidates = CoverCandidates::ofAppleBooks(R"({"results":[)" + result + "]}");
    EXPECT_EQ(best("Old Man and the Sea", "Hemingway", candidates), QString());
    EXPECT_EQ(best("The old man & the sea", "", candidates),
        QStringLiteral("http://is4.mzstatic.com/image/thumb/Publication3/v4/6c/83/20/"
                       "6c832043-d126-a108-2b81-e6dad1db8ac0/source/600x900bb.jpg"));
}

TEST(SampleCovers, DocumentsWithoutACoverAreNone)
{
    EXPECT_EQ(openLibrary(QStringLiteral("search_lord-of-the-rings_81-docs_2013.json")).size(), 35);
    EXPECT_TRUE(openLibrary(QStringLiteral("search_no-result_handwritten.json")).isEmpty());
    EXPECT_EQ(best("This Is How You Lose the Time War", "Gladstone",
                  openLibrary(QStringLiteral("search_time-war_2-docs_2020.json"))),
        QStringLiteral("https://covers.example/b/id/8665647-L.jpg"));
}

TEST(SampleCovers, AShortTitleNeedsItsAuthor)
{
    const auto candidates = openLibrary(QStringLiteral("search_dune_3-docs_2026.json"));
    EXPECT_EQ(best("Dune", "Frank Herbert", candidates), QStringLiteral("https://covers.example/b/id/11481354-L.jpg"));
    EXPECT_EQ(best("Dune", "", candidates), QString());
    EXPECT_EQ(best("Children of Dune", "", candidates), QStringLiteral("https://covers.example/b/id/6976407-L.jpg"));
}
