#include "files/FolderPath.h"

#include <QDir>

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
