#include "ModelTest.h"

#include "persistence/AppDirectories.h"

#include <QDir>
#include <QFileInfo>

namespace quire {

namespace {

using testing::await;

class AppModelDesktop : public ModelTest
{
protected:
    QString folder(const QString &name) const { return library.file(name); }
};

TEST_F(AppModelDesktop, TheBackupFolderIsAskedForInItsWords)
{
    makeModel();
    desktop.answer = folder(QStringLiteral("Chosen"));

    EXPECT_EQ(await(model->chooseBackupFolder(folder(QStringLiteral("absent")))), desktop.answer);

    const FolderQuestion asked{QStringLiteral("Choose the Quire backup folder"),
        QStringLiteral("Verified database backups will be saved in this folder."), std::nullopt,
        AppDirectories::supportDirectory() + QStringLiteral("/Database Backups"), true};
    EXPECT_EQ(desktop.questions, QList{asked});
}

TEST_F(AppModelDesktop, TheLibraryFolderIsAskedForInItsWords)
{
    makeModel();

    EXPECT_EQ(await(model->chooseDatabaseFolder(QString())), std::nullopt); // the reader cancels

    ASSERT_EQ(desktop.questions.size(), 1);
    const FolderQuestion asked = desktop.questions.first();
    EXPECT_EQ(asked.title, QStringLiteral("Choose the Quire library folder"));
    EXPECT_TRUE(asked.message.startsWith(QStringLiteral("Quire stores quire.db in this folder.")));
    EXPECT_EQ(asked.prompt, QStringLiteral("Choose"));
    EXPECT_EQ(asked.startFolder, AppDirectories::supportDirectory());
    EXPECT_TRUE(asked.allowsNewFolders);
}

TEST_F(AppModelDesktop, APickerBeginsAtThePresentFolderIfThereIsOne)
{
    makeModel();
    const QString present = folder(QStringLiteral("Bücher & \"Mehr\" 100%"));
    ASSERT_TRUE(QDir().mkpath(present));
    const QString fallback = AppDirectories::supportDirectory();

    EXPECT_EQ(await(model->chooseDatabaseFolder(present)), std::nullopt);
    EXPECT_EQ(desktop.questions.last().startFolder, present);

    EXPECT_EQ(await(model->chooseDatabaseFolder(present + u'/')), std::nullopt);
    EXPECT_EQ(desktop.questions.last().startFolder, present);

    EXPECT_EQ(await(model->chooseDatabaseFolder(QStringLiteral("~"))), std::nullopt);
    EXPECT_EQ(desktop.questions.last().startFolder, QDir::homePath());

    EXPECT_EQ(await(model->chooseDatabaseFolder(QStringLiteral("."))), std::nullopt);
    EXPECT_EQ(desktop.questions.last().startFolder, fallback);

    EXPECT_EQ(await(model->chooseDatabaseFolder(folder(QStringLiteral("test.log")))), std::nullopt); // no folder
    EXPECT_EQ(desktop.questions.last().startFolder, fallback);
}

TEST_F(AppModelDesktop, AskingForAFolderMakesNone)
{
    makeModel();
    const QString absent = folder(QStringLiteral("absent"));

    EXPECT_EQ(await(model->chooseBackupFolder(absent)), std::nullopt);

    EXPECT_FALSE(QFileInfo::exists(absent));
}

TEST_F(AppModelDesktop, TheDataFolderIsThatOfTheLibrary)
{
    startModel();

    await(model->openDataFolder());

    EXPECT_EQ(desktop.opened, QList{QUrl::fromLocalFile(library.folder())});
}

TEST_F(AppModelDesktop, ABackupFolderIsMadeBeforeItIsShown)
{
    makeModel();
    const QString given = folder(QStringLiteral("not yet/Backups"));

    await(model->openBackupFolder(QStringLiteral("  ") + given + u'\n'));

    EXPECT_EQ(desktop.opened, QList{QUrl::fromLocalFile(given)});
    EXPECT_TRUE(QFileInfo(given).isDir());
}

TEST_F(AppModelDesktop, ABlankBackupFolderStandsForTheConfiguredOne)
{
    const QString configured = folder(QStringLiteral("Configured"));
    setStored(QStringLiteral("backupPath"), configured);
    startModel();

    await(model->openBackupFolder(QStringLiteral(" \n")));
    await(model->openBackupFolder(std::nullopt));

    const QUrl shown = QUrl::fromLocalFile(configured);
    EXPECT_EQ(desktop.opened, (QList{shown, shown}));
}

TEST_F(AppModelDesktop, AFolderThatCannotBeMadeIsShownAllTheSame)
{
    makeModel();
    addBook(QStringLiteral("The Salt Road"));
    const QString below = library.file(QStringLiteral("quire.db")) + QStringLiteral("/Backups");

    await(model->openBackupFolder(below));

    EXPECT_EQ(desktop.opened, QList{QUrl::fromLocalFile(below)});
}

TEST_F(AppModelDesktop, AModelMayDieWhileAFolderIsLookedFor)
{
    makeModel();
    const auto choosing = model->chooseBackupFolder(library.folder());
    const auto showing = model->openBackupFolder(library.folder());
    model.reset();
    settle(); // without it: the address checker tells
}

} // namespace

} // namespace quire
