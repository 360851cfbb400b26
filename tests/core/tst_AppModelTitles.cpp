#include "ModelTest.h"

#include <gmock/gmock.h>

namespace quire {

namespace {

using testing::await;

class AppModelTitles : public ModelTest
{
protected:
    void openBook()
    {
        ModelTest::addBook(QStringLiteral("Emma"));
        startModel();
        model->setSelectedBook(model->books().first());
    }

    void openAudiobook()
    {
        ModelTest::addAudiobook(QStringLiteral("Tidewater"));
        startModel();
        model->setSelectedAudiobook(model->audiobooks().first());
    }

    void refuseUpdates(const char *table)
    {
        library.execute(
            QStringLiteral("CREATE TRIGGER full BEFORE UPDATE ON %1 BEGIN SELECT RAISE(ABORT, 'no room'); END")
                .arg(QLatin1String(table))
                .toUtf8());
    }
};

TEST_F(AppModelTitles, ASavedBookIsLoadedAndItsDetailsClose)
{
    openBook();

    EXPECT_TRUE(
        await(model->saveBook(model->books().first().id, 4.5, QStringLiteral("to-read"), QStringLiteral("for Ida"))));

    EXPECT_EQ(model->selectedBook(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Title updated"));
    const Book &saved = model->books().first();
    EXPECT_EQ(saved.userRating, 4.5);
    EXPECT_EQ(saved.shelf, QStringLiteral("to-read"));
    EXPECT_EQ(saved.notes, QStringLiteral("for Ida"));
    EXPECT_FALSE(model->isWorking());
}

TEST_F(AppModelTitles, ABookThatCannotBeSavedKeepsItsDetails)
{
    openBook();
    const Book emma = *model->selectedBook();
    refuseUpdates("goodreads_books");

    EXPECT_FALSE(await(model->saveBook(emma.id, 4.5, emma.shelf, emma.notes)));

    EXPECT_EQ(model->selectedBook(), emma);
    EXPECT_EQ(model->notice()->title, QStringLiteral("Title Could Not Be Updated"));
    EXPECT_FALSE(model->notice()->message.isEmpty());
    EXPECT_EQ(model->toastMessage(), std::nullopt);
}

TEST_F(AppModelTitles, ASavedAudiobookIsLoadedAndItsDetailsClose)
{
    openAudiobook();

    EXPECT_TRUE(await(model->saveAudiobook(
        model->audiobooks().first().id, 3, QStringLiteral("reading"), QStringLiteral("on the train"))));

    EXPECT_EQ(model->selectedAudiobook(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Audio title updated"));
    const Audiobook &saved = model->audiobooks().first();
    EXPECT_EQ(saved.userRating, 3.0);
    EXPECT_EQ(saved.status, QStringLiteral("reading"));
    EXPECT_EQ(saved.notes, QStringLiteral("on the train"));
}

TEST_F(AppModelTitles, ARatingOfNothingTakesThatOfAnAudiobookBack)
{
    openAudiobook();
    const Audiobook audiobook = model->audiobooks().first();
    ASSERT_TRUE(await(model->saveAudiobook(audiobook.id, 3, audiobook.status, {})));
    ASSERT_EQ(model->audiobooks().first().userRating, 3.0);

    EXPECT_TRUE(await(model->saveAudiobook(audiobook.id, 0, audiobook.status, {})));

    EXPECT_EQ(model->audiobooks().first().userRating, 0.0);
}

TEST_F(AppModelTitles, AnAudiobookThatCannotBeSavedKeepsItsDetails)
{
    openAudiobook();
    const Audiobook tidewater = *model->selectedAudiobook();
    refuseUpdates("audible_books");

    EXPECT_FALSE(await(model->saveAudiobook(tidewater.id, 1, tidewater.status, tidewater.notes)));

    EXPECT_EQ(model->selectedAudiobook(), tidewater);
    EXPECT_EQ(model->notice()->title, QStringLiteral("Audio Title Could Not Be Updated"));
}

TEST_F(AppModelTitles, AModelThatEndsWhileATitleIsSavedTouchesNothing)
{
    openBook();
    auto saving = model->saveBook(model->books().first().id, 1, QStringLiteral("read"), {});
    model.reset();
    await(std::move(saving));
}

} // namespace

} // namespace quire
