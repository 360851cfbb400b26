#include "QuireApp/ViewModels/FolderPickerViewModel.h"
#include "testing/Await.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quire {

namespace {

using testing::eventually;

class FolderPicker : public ::testing::Test
{
protected:
    FolderPicker()
    {
        for (const QString &name : {QStringLiteral("Box 10"), QStringLiteral("box 9"), QStringLiteral("Äpfel"),
                 QStringLiteral(".hidden"), QStringLiteral("box 9/Deep")}) {
            QDir(root()).mkpath(name);
        }
        QFile(path(QStringLiteral("a letter.txt"))).open(QIODevice::WriteOnly);
    }

    QString root() const { return m_folder.path(); }
    QString path(const QString &name) const { return root() + u'/' + name; }

    QFuture<FolderPickerViewModel::Answer> ask(const QString &start, bool allowsNewFolders = true)
    {
        return picker.ask(
            {QStringLiteral("Which?"), QStringLiteral("This one."), std::nullopt, start, allowsNewFolders});
    }

    bool shows(const QString &folder)
    {
        return eventually([&] { return picker.folder() == folder; });
    }

    bool isTroubled(const QString &trouble)
    {
        return eventually([&] { return picker.trouble() == trouble; });
    }

    FolderPickerViewModel picker;

private:
    QTemporaryDir m_folder;
};

TEST_F(FolderPicker, ShowsTheFoldersWithinInAReadersOrder)
{
    const auto answer = ask(root());

    EXPECT_TRUE(picker.isOpen());
    EXPECT_EQ(picker.title(), QStringLiteral("Which?"));
    EXPECT_EQ(picker.message(), QStringLiteral("This one."));
    EXPECT_EQ(picker.prompt(), QStringLiteral("Choose"));
    EXPECT_TRUE(picker.allowsNewFolders());
    EXPECT_TRUE(shows(root()));
    EXPECT_EQ(
        picker.folders(), (QStringList{QStringLiteral("Äpfel"), QStringLiteral("box 9"), QStringLiteral("Box 10")}));
    EXPECT_FALSE(answer.isFinished());
}

TEST_F(FolderPicker, WalksDownAndUp)
{
    const auto answer = ask(root());
    ASSERT_TRUE(shows(root()));

    picker.goTo(picker.pathOf(QStringLiteral("box 9")));
    EXPECT_TRUE(shows(path(QStringLiteral("box 9"))));
    EXPECT_EQ(picker.folders(), QStringList{QStringLiteral("Deep")});
    picker.goUp();
    EXPECT_TRUE(shows(root()));
    EXPECT_FALSE(answer.isFinished());
}

TEST_F(FolderPicker, StopsAtTheTop)
{
    ask(QStringLiteral("/"));
    ASSERT_TRUE(shows(QStringLiteral("/")));
    EXPECT_EQ(picker.pathOf(QStringLiteral("home")), QStringLiteral("/home"));
    picker.goUp();
    EXPECT_TRUE(shows(QStringLiteral("/")));
    EXPECT_EQ(picker.trouble(), QString());
}

TEST_F(FolderPicker, OpensAtTheNearestFolderThatIsThere)
{
    ask(path(QStringLiteral("box 9/gone/and gone")));
    EXPECT_TRUE(shows(path(QStringLiteral("box 9"))));
}

TEST_F(FolderPicker, AnswersWithTheFolderChosen)
{
    const auto answer = ask(root());

    picker.choose(QStringLiteral(" ") + path(QStringLiteral("Äpfel/")) + u'\n');

    EXPECT_EQ(testing::await(answer), path(QStringLiteral("Äpfel")));
    EXPECT_FALSE(picker.isOpen());
}

TEST_F(FolderPicker, UnderstandsTheHomeFolder)
{
    const auto answer = ask(root());
    picker.choose(QStringLiteral("~"));
    EXPECT_EQ(testing::await(answer), QDir::homePath());
}

TEST_F(FolderPicker, WhatIsNoFolderIsNeitherShownNorChosen)
{
    const auto answer = ask(root());
    ASSERT_TRUE(shows(root()));

    for (const QString &typed :
        {path(QStringLiteral("gone")), path(QStringLiteral("a letter.txt")), QStringLiteral("box 9"), QString()}) {
        const QString trouble = QStringLiteral("There is no folder “%1”.").arg(typed);
        picker.goTo(root());
        ASSERT_TRUE(isTroubled(QString()));
        picker.goTo(typed);
        EXPECT_TRUE(isTroubled(trouble)) << qPrintable(picker.trouble());
        picker.goTo(root());
        ASSERT_TRUE(isTroubled(QString()));
        picker.choose(typed);
        EXPECT_TRUE(isTroubled(trouble)) << qPrintable(picker.trouble());
    }
    EXPECT_EQ(picker.folder(), root());
    EXPECT_FALSE(answer.isFinished());
}

TEST_F(FolderPicker, MakesAFolderAndGoesThere)
{
    ask(root());
    ASSERT_TRUE(shows(root()));

    picker.makeFolder(QStringLiteral(" 本棚 \"100%\" "));
    EXPECT_TRUE(shows(path(QStringLiteral("本棚 \"100%\""))));
    picker.goUp();
    EXPECT_TRUE(shows(root()));
    picker.makeFolder(QStringLiteral("box 9")); // is there already
    EXPECT_TRUE(shows(path(QStringLiteral("box 9"))));
}

TEST_F(FolderPicker, AFolderThatCannotBeMadeIsToldOf)
{
    ask(root());
    ASSERT_TRUE(shows(root()));

    picker.makeFolder(QStringLiteral("a letter.txt"));
    EXPECT_TRUE(isTroubled(QStringLiteral("The folder “a letter.txt” could not be made here.")));
    for (const QString &name :
        {QStringLiteral("a/b"), QStringLiteral(".."), QStringLiteral("."), QStringLiteral(" ")}) {
        picker.goTo(root());
        ASSERT_TRUE(isTroubled(QString()));
        picker.makeFolder(name);
        EXPECT_TRUE(isTroubled(QStringLiteral("Enter a name for the folder, without “/”.")));
    }
    EXPECT_EQ(picker.folder(), root());
}

TEST_F(FolderPicker, AFolderThatMayNotBeReadIsToldOf)
{
    const QString locked = path(QStringLiteral("box 9"));
    ASSERT_TRUE(QFile::setPermissions(locked, QFileDevice::Permissions()));
    const testing::UnprivilegedUser reader(root());
    ask(root());
    ASSERT_TRUE(shows(root()));

    picker.goTo(locked);

    EXPECT_TRUE(isTroubled(QStringLiteral("The folder “%1” cannot be looked into.").arg(locked)));
    EXPECT_EQ(picker.folder(), root());
}

TEST_F(FolderPicker, CancellingAnswersWithNothing)
{
    const auto answer = ask(root());
    picker.cancel();
    EXPECT_EQ(testing::await(answer), std::nullopt);
    EXPECT_FALSE(picker.isOpen());
    picker.cancel(); // nothing stands any more
}

TEST_F(FolderPicker, ASecondQuestionIsAnsweredWithNothingAtOnce)
{
    const auto first = ask(root());
    const auto second = ask(QStringLiteral("/"));
    EXPECT_TRUE(second.isFinished());
    EXPECT_EQ(testing::await(second), std::nullopt);
    EXPECT_FALSE(first.isFinished());
    EXPECT_TRUE(shows(root()));
}

TEST_F(FolderPicker, AQuestionThatStandsAtTheEndIsAnswered)
{
    auto dying = std::make_unique<FolderPickerViewModel>();
    const auto answer = dying->ask({{}, {}, std::nullopt, root(), false});
    dying.reset();
    EXPECT_EQ(testing::await(answer), std::nullopt);
}

} // namespace

} // namespace quire
