#include "files/FolderPath.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace quire;

TEST(FolderPath, ALeadingTildeIsTheHomeFolderAndNoOtherTildeIs)
{
    const QString home = QDir::homePath();
    EXPECT_EQ(FolderPath::expandingTilde(QStringLiteral("~")), home);
    EXPECT_EQ(FolderPath::expandingTilde(QStringLiteral("~/Reading")), home + QStringLiteral("/Reading"));
    for (const QString &path : {QString(), QStringLiteral("/~"), QStringLiteral("a/~/b"), QStringLiteral("~nobody/a"),
             QStringLiteral(" ~/a")}) {
        EXPECT_EQ(FolderPath::expandingTilde(path), path);
    }
}

TEST(FolderPath, APublishingFolderIsPlainOrEmpty)
{
    EXPECT_EQ(FolderPath::normalizedPublishPath(QStringLiteral(" \t\n")), QString());
    EXPECT_EQ(FolderPath::normalizedPublishPath(QStringLiteral("/a/./b//c/../d/")), QStringLiteral("/a/b/d"));
    EXPECT_EQ(FolderPath::normalizedPublishPath(QStringLiteral("~/site/")), QDir::homePath() + QStringLiteral("/site"));
    EXPECT_EQ(FolderPath::normalizedPublishPath(QStringLiteral("relative/a")), QStringLiteral("relative/a"));
}

TEST(FolderPath, TwoNamesOfOneFolderResolveAlike)
{
    const QTemporaryDir place;
    const QString folder = QDir(place.path()).canonicalPath() + QStringLiteral("/100% 読書");
    const QString link = place.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QDir().mkpath(folder + QStringLiteral("/a")));
    ASSERT_TRUE(QFile::link(folder, link));
    EXPECT_EQ(FolderPath::resolvingLinks(folder), folder);
    EXPECT_EQ(FolderPath::resolvingLinks(link), folder);
    EXPECT_EQ(FolderPath::resolvingLinks(link + QStringLiteral("/")), folder);
    EXPECT_EQ(FolderPath::resolvingLinks(link + QStringLiteral("/a/../.")), folder);
    // What is missing below a link stays as it is.
    EXPECT_EQ(FolderPath::resolvingLinks(link + QStringLiteral("/none/b")), folder + QStringLiteral("/none/b"));
    EXPECT_EQ(FolderPath::resolvingLinks(QStringLiteral("/")), QStringLiteral("/"));
}
