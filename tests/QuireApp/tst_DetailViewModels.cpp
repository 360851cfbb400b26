#include "ModelTest.h"
#include "QuireApp/ViewModels/AudiobookDetailViewModel.h"
#include "QuireApp/ViewModels/BookDetailViewModel.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

namespace quire {

namespace {

using testing::await;
using testing::eventually;

class BookDetail : public ModelTest
{
protected:
    void open()
    {
        addBook(QStringLiteral("Emma"));
        startModel();
        detail = std::make_unique<BookDetailViewModel>(*model);
        model->setSelectedBook(model->books().first());
    }

    QVariant edit(const char *name) const { return detail->property(name); }

    std::unique_ptr<BookDetailViewModel> detail;
};

TEST_F(BookDetail, ItBeginsWithWhatTheLibraryHas)
{
    open();
    EXPECT_TRUE(detail->isOpen());
    EXPECT_EQ(detail->title(), QStringLiteral("Emma"));
    EXPECT_EQ(edit("state"), QStringLiteral("read"));
    EXPECT_EQ(edit("rating"), 0.0);
    EXPECT_TRUE(detail->cover().isPresent());
    EXPECT_TRUE(detail->link().isEmpty());
}

TEST_F(BookDetail, WhatIsClosedWithoutSavingIsThrownAway)
{
    open();
    const Book before = *model->selectedBook();
    detail->setProperty("rating", 2.5);
    detail->setProperty("notes", QStringLiteral("typed"));

    detail->close();

    EXPECT_FALSE(detail->isOpen());
    EXPECT_EQ(detail->title(), QStringLiteral("Emma")); // it is still to be seen fading
    EXPECT_EQ(model->books().first(), before);
    model->setSelectedBook(model->books().first());
    EXPECT_EQ(edit("rating"), 0.0);
    EXPECT_EQ(edit("notes"), QString());
}

TEST_F(BookDetail, WhatIsSavedIsInTheLibrary)
{
    open();
    detail->setProperty("rating", 2.5);
    detail->setProperty("state", QStringLiteral("did-not-finish"));
    detail->setProperty("notes", QStringLiteral("typed"));

    detail->save();
    detail->save(); // pressed twice

    ASSERT_TRUE(eventually([this] { return !detail->isOpen(); }));
    const Book &saved = model->books().first();
    EXPECT_EQ(saved.userRating, 2.5);
    EXPECT_EQ(saved.shelf, QStringLiteral("did-not-finish"));
    EXPECT_EQ(saved.notes, QStringLiteral("typed"));
}

TEST_F(BookDetail, WhatCannotBeSavedStaysInTheView)
{
    open();
    library.execute("CREATE TRIGGER full BEFORE UPDATE ON goodreads_books BEGIN SELECT RAISE(ABORT, 'no room'); END");
    detail->setProperty("notes", QStringLiteral("typed"));

    detail->save();

    ASSERT_TRUE(eventually([this] { return model->notice().has_value(); }));
    EXPECT_TRUE(detail->isOpen());
    EXPECT_EQ(edit("notes"), QStringLiteral("typed"));
    library.execute("DROP TRIGGER full");
    settle();
    detail->save(); // and another try is one
    EXPECT_TRUE(eventually([this] { return !detail->isOpen(); }));
}

TEST_F(BookDetail, ALibraryReadAnewBringsFreshFactsAndLeavesWhatWasTyped)
{
    open();
    detail->setProperty("notes", QStringLiteral("typed"));
    library.execute("UPDATE goodreads_books SET author = 'Jane Austen', notes = 'from elsewhere'");

    await(model->reload());

    EXPECT_EQ(detail->author(), QStringLiteral("Jane Austen"));
    EXPECT_EQ(edit("notes"), QStringLiteral("typed"));
}

TEST_F(BookDetail, AStateThatIsNoChoiceIsKept)
{
    addBook(QStringLiteral("Emma"), QStringLiteral("lent-out"));
    startModel();
    detail = std::make_unique<BookDetailViewModel>(*model);
    model->setSelectedBook(model->books().first());
    EXPECT_EQ(detail->states()->titleOf(QStringLiteral("lent-out")), QString());

    detail->save();

    ASSERT_TRUE(eventually([this] { return !detail->isOpen(); }));
    EXPECT_EQ(model->books().first().shelf, QStringLiteral("lent-out"));
}

TEST_F(BookDetail, OnlyPagesOfTheWebCanBeOpened)
{
    addBook(QStringLiteral("Emma"));
    startModel();
    detail = std::make_unique<BookDetailViewModel>(*model);
    Book book = model->books().first();
    for (const auto &[address, isPage] :
        {std::pair("https://example.org/1", true), std::pair("http://example.org/1", true),
            std::pair("file:///etc/passwd", false), std::pair("javascript:alert(1)", false)}) {
        book.goodreadsURL = Url::parse(QString::fromLatin1(address));
        model->setSelectedBook(book);
        EXPECT_EQ(!detail->link().isEmpty(), isPage) << address;
    }
}

TEST_F(BookDetail, AHiddenBookIsRestored)
{
    open();
    detail->toggleHidden();
    ASSERT_TRUE(eventually([this] { return !detail->isOpen(); }));
    EXPECT_TRUE(model->books().first().isHidden);

    model->setSelectedBook(model->books().first());
    EXPECT_TRUE(detail->isHidden());
    detail->toggleHidden();
    ASSERT_TRUE(eventually([this] { return !detail->isOpen(); }));
    EXPECT_FALSE(model->books().first().isHidden);
}

class AudiobookDetail : public ModelTest
{
protected:
    void open()
    {
        addAudiobook(QStringLiteral("Tidewater"));
        startModel();
        detail = std::make_unique<AudiobookDetailViewModel>(*model);
        model->setSelectedAudiobook(model->audiobooks().first());
    }

    std::unique_ptr<AudiobookDetailViewModel> detail;
};

TEST_F(AudiobookDetail, WhatIsSavedIsInTheLibrary)
{
    open();
    EXPECT_EQ(detail->property("rating"), 0.0); // not rated
    detail->setProperty("rating", 4.0);
    detail->setProperty("state", QStringLiteral("reading"));

    detail->save();

    ASSERT_TRUE(eventually([this] { return !detail->isOpen(); }));
    EXPECT_EQ(model->audiobooks().first().userRating, 4.0);
    EXPECT_EQ(model->audiobooks().first().status, QStringLiteral("reading"));
}

TEST_F(AudiobookDetail, ItsReaderAndItsSeriesAreTold)
{
    open();
    EXPECT_EQ(detail->narration(), QString());
    EXPECT_EQ(detail->series(), QString());
    library.execute("UPDATE audible_books SET narrator = 'Runa Vik', series = 'Coast Songs', book_number = 2, "
                    "description = '  '");

    await(model->reload());

    EXPECT_EQ(detail->narration(), QStringLiteral("Narrated by Runa Vik"));
    EXPECT_EQ(detail->series(), QStringLiteral("Coast Songs #2"));
    EXPECT_EQ(detail->summary(), QString());
}

TEST_F(AudiobookDetail, WhatIsClosedWithoutSavingIsThrownAway)
{
    open();
    detail->setProperty("rating", 4.0);
    detail->close();
    EXPECT_FALSE(detail->isOpen());
    model->setSelectedAudiobook(model->audiobooks().first());
    EXPECT_EQ(detail->property("rating"), 0.0);
}

} // namespace

} // namespace quire
