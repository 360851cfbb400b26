#include "core/UserDefaults.h"

#include "testing/TestFiles.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quire {

namespace {

class UserDefaultsTest : public ::testing::Test
{
protected:
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("Quire.conf"));
    const UserDefaults defaults{file};
};

TEST_F(UserDefaultsTest, TheWindowIsAsItWasLeftAlsoForTheNextProgram)
{
    EXPECT_EQ(defaults.windowShape(), std::nullopt);
    const WindowShape shape{.size = {1000, 720}, .isMaximized = true};
    defaults.setWindowShape(shape);
    EXPECT_EQ(UserDefaults(file).windowShape(), shape);
}

TEST_F(UserDefaultsTest, WhatIsNoSizeCountsAsNone)
{
    for (const QByteArray text : {"large", "@Size(0 700)", "@Size(-5 -5)", "@Point(3 4)", "@Size(", ""}) {
        testing::putFile(file, "[General]\nwindowSize=" + text + "\nwindowIsMaximized=true\n");
        EXPECT_EQ(defaults.windowShape(), std::nullopt) << text.constData();
    }
}

TEST_F(UserDefaultsTest, OneThingKeptLeavesTheOthers)
{
    testing::putFile(file, "[endpoints]\ngoodreads=http://127.0.0.1:1\n");
    defaults.setLastUpdateCheck(Instant{});
    defaults.setWindowShape({.size = {1000, 720}});
    EXPECT_EQ(defaults.lastUpdateCheck(), Instant{});
    EXPECT_TRUE(testing::bytesOf(file).contains("http://127.0.0.1:1"));
}

} // namespace

} // namespace quire
