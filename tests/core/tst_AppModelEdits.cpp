#include "ModelTest.h"
#include "testing/Pictures.h"

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace quire {

namespace {

using testing::await;
using testing::eventually;
using ::testing::IsEmpty;
using testing::LoopbackReply;
using testing::pngPicture;

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson();
}

class AppModelEdits : public ModelTest
{
protected:
    AppModelEdits() { serveNoCovers(); }

    // Both places that are asked for covers have none.
    void serveNoCovers()
    {
        services.route(u"/search", LoopbackReply::ok(json({{QStringLiteral("results"), QJsonArray()}})));
        services.route(u"/search.json", LoopbackReply::ok(json({{QStringLiteral("docs"), QJsonArray()}})));
    }

    // The first place that is asked has one for this title, which can be fetched.
    void serveCover(const QString &title, const QString &author)
    {
        const QString address = services.url(u"/found.png").toString();
        services.route(u"/search",
            LoopbackReply::ok(json({{QStringLiteral("results"),
                QJsonArray{QJsonObject{{QStringLiteral("trackName"), title}, {QStringLiteral("artistName"), author},
                    {QStringLiteral("artworkUrl100"), address}}}}})));
        services.route(u"/found.png", LoopbackReply::ok(found, "image/png"));
    }

    static ManualBookDraft draft(const QString &title, const QString &shelf = QStringLiteral("read"))
    {
        ManualBookDraft draft;
        draft.title = title;
        draft.author = QStringLiteral("Ada Lindqvist");
        draft.shelf = shelf;
        return draft;
    }

    static BookCatalogBook catalogBook(const QString &title)
    {
        BookCatalogBook book;
        book.workID = QStringLiteral("OL1W");
        book.title = title;
        book.author = QStringLiteral("Ada Lindqvist");
        book.isbn = QStringLiteral("9780000000001");
        book.numberOfPages = 312;
        book.publishedYear = 1999;
        return book;
    }

    static AudibleCatalogBook audioTitle(const QString &title)
    {
        AudibleCatalogBook book;
        book.asin = QStringLiteral("B0001");
        book.title = title;
        book.author = QStringLiteral("Ada Lindqvist");
        return book;
    }

    QString coverSource(const char *table = "goodreads_books") const
    {
        return library.scalar("SELECT cover_data_source FROM " + QByteArray(table) + " ORDER BY id DESC LIMIT 1")
            .string(QStringLiteral("none"));
    }

    QByteArray cover(const char *table = "goodreads_books") const
    {
        return library.scalar("SELECT cover_data FROM " + QByteArray(table) + " ORDER BY id DESC LIMIT 1")
            .data()
            .value_or(QByteArray());
    }

    qint64 stored(const char *table) const
    {
        return library.scalar("SELECT COUNT(*) FROM " + QByteArray(table)).intValue().value_or(-1);
    }

    using ModelTest::stored;

    QString noticeTitle() const { return model->notice() ? model->notice()->title : QString(); }

    const QByteArray found = pngPicture({60, 90});
};

// Books. -----------------------------------------------------------------------

TEST_F(AppModelEdits, ATitleOfBlanksIsRefusedEvenWhileAJobRuns)
{
    startModel();
    services.route(u"/search", LoopbackReply::silence());
    auto adding = model->addBook(draft(QStringLiteral("The Salt Road")));
    ASSERT_TRUE(model->isWorking());

    EXPECT_FALSE(await(model->addBook(draft(QStringLiteral(" \t\n")))));

    EXPECT_EQ(model->notice(),
        AppNotice::error(QStringLiteral("Title Required"), QStringLiteral("Enter a title for this book.")));
    EXPECT_TRUE(model->isWorking());
    services.refuse();
    EXPECT_TRUE(await(std::move(adding)));
}

TEST_F(AppModelEdits, WhileOneTitleIsAddedAnotherIsTurnedAwayWithoutAWord)
{
    startModel();
    services.route(u"/search", LoopbackReply::silence());
    auto adding = model->addBook(draft(QStringLiteral("The Salt Road")));
    EXPECT_EQ(model->activityLabel(), QStringLiteral("Adding The Salt Road…"));

    EXPECT_FALSE(await(model->addBook(draft(QStringLiteral("Nine Winters")))));
    EXPECT_FALSE(await(model->addAudiobook(audioTitle(QStringLiteral("Nine Winters")), QStringLiteral("read"))));

    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(model->activityLabel(), QStringLiteral("Adding The Salt Road…"));
    services.refuse();
    EXPECT_TRUE(await(std::move(adding)));
    EXPECT_EQ(stored("goodreads_books"), 1);
    EXPECT_EQ(stored("audible_books"), 0);
}

TEST_F(AppModelEdits, ABookWithoutACoverAnywhereGetsADrawnOne)
{
    startModel();

    EXPECT_TRUE(await(model->addBook(draft(QStringLiteral(" The Salt Road ")))));

    EXPECT_EQ(titlesShown(), QStringList{QStringLiteral("The Salt Road")});
    EXPECT_EQ(coverSource(), QStringLiteral("manual"));
    EXPECT_TRUE(cover().startsWith("\x89PNG"));
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Book added"));
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(model->activityLabel(), QString());
}

TEST_F(AppModelEdits, ACoverThatIsFoundIsStoredWithItsAddress)
{
    startModel();
    serveCover(QStringLiteral("The Salt Road"), QStringLiteral("Ada Lindqvist"));

    EXPECT_TRUE(await(model->addBook(draft(QStringLiteral("The Salt Road")))));

    EXPECT_EQ(cover(), found);
    ASSERT_EQ(model->books().size(), 1);
    EXPECT_EQ(textOf(model->books().first().coverURL), services.url(u"/found.png").toString());
}

TEST_F(AppModelEdits, ACoverThatCannotBeFetchedLeavesTheBookWithoutOne)
{
    startModel();
    serveCover(QStringLiteral("The Salt Road"), QStringLiteral("Ada Lindqvist"));
    services.route(u"/found.png", LoopbackReply::ok("<html>Sign in</html>", "image/png"));

    EXPECT_TRUE(await(model->addBook(draft(QStringLiteral("The Salt Road")))));

    EXPECT_EQ(cover(), QByteArray());
    EXPECT_EQ(textOf(model->books().first().coverURL), services.url(u"/found.png").toString());
}

TEST_F(AppModelEdits, ABookIsAddedWithoutANetwork)
{
    startModel();
    services.refuse();

    EXPECT_TRUE(await(model->addBook(draft(QStringLiteral("The Salt Road")))));

    EXPECT_TRUE(cover().startsWith("\x89PNG"));
}

TEST_F(AppModelEdits, AddingABookShowsItOnItsShelf)
{
    setStored(QStringLiteral("selectedTab"), QStringLiteral("audio"));
    startModel();
    model->setSearchText(QStringLiteral("something"));

    EXPECT_TRUE(await(model->addBook(draft(QStringLiteral("The Salt Road"), QStringLiteral("to-read")))));

    EXPECT_EQ(model->selectedTab(), LibraryTab::Books);
    EXPECT_EQ(model->selectedShelf(), LibraryShelf::ToRead);
    EXPECT_EQ(model->searchText(), QString());
    EXPECT_EQ(titlesShown(), QStringList{QStringLiteral("The Salt Road")});
}

TEST_F(AppModelEdits, ABookThatCannotBeStoredIsTold)
{
    startModel();
    library.execute("CREATE TRIGGER full BEFORE INSERT ON goodreads_books BEGIN SELECT RAISE(ABORT, 'no room'); END");

    EXPECT_FALSE(await(model->addBook(draft(QStringLiteral("The Salt Road")))));

    EXPECT_EQ(noticeTitle(), QStringLiteral("Book Could Not Be Added"));
    EXPECT_TRUE(model->notice()->message.contains(u"no room"));
    EXPECT_EQ(model->toastMessage(), std::nullopt);
    EXPECT_FALSE(model->isWorking());
}

TEST_F(AppModelEdits, ABookOfTheCatalogueKeepsWhatTheCatalogueKnows)
{
    startModel();
    BookCatalogBook book = catalogBook(QStringLiteral("The Salt Road"));
    book.coverURL = Url::parse(services.url(u"/own.png").toString());
    services.route(u"/own.png", LoopbackReply::ok(found, "image/png"));

    EXPECT_TRUE(await(model->addCatalogBook(book, QStringLiteral("currently-reading"))));

    ASSERT_EQ(model->books().size(), 1);
    const Book &added = model->books().first();
    EXPECT_EQ(added.goodreadsID, QStringLiteral("openlibrary:OL1W"));
    EXPECT_EQ(added.title, QStringLiteral("The Salt Road"));
    EXPECT_EQ(added.isbn, QStringLiteral("9780000000001"));
    EXPECT_EQ(added.numberOfPages, 312);
    EXPECT_EQ(added.publishedYear, 1999);
    EXPECT_EQ(added.shelf, QStringLiteral("currently-reading"));
    EXPECT_EQ(model->selectedShelf(), LibraryShelf::Active);
    EXPECT_EQ(cover(), found);
    // Its own cover goes before any that could be found.
    for (const auto &request : services.requests()) {
        EXPECT_EQ(request.path, QStringLiteral("/own.png"));
    }
}

TEST_F(AppModelEdits, ABookOfTheCatalogueThatIsHiddenInTheLibraryIsAlreadyThere)
{
    library.execute("INSERT INTO goodreads_books (goodreads_id, title, shelf, hidden) VALUES "
                    "('openlibrary:OL1W', 'The Salt Road', 'read', 1)",
        {});
    startModel();

    EXPECT_FALSE(await(model->addCatalogBook(catalogBook(QStringLiteral("The Salt Road")), QStringLiteral("read"))));

    EXPECT_EQ(model->notice(),
        AppNotice::information(
            QStringLiteral("Already in Quire"), QStringLiteral("The Salt Road is already in your Books library.")));
    EXPECT_EQ(stored("goodreads_books"), 1);
    EXPECT_THAT(services.requests(), IsEmpty());
}

// Audiobooks. ---------------------------------------------------------------------

TEST_F(AppModelEdits, AnAudiobookToReadIsAddedBehindTheReadShelf)
{
    startModel();

    EXPECT_TRUE(await(model->addAudiobook(audioTitle(QStringLiteral("Tidewater")), QStringLiteral("to-read"))));

    EXPECT_EQ(model->selectedTab(), LibraryTab::Audio);
    EXPECT_EQ(model->selectedShelf(), LibraryShelf::Read);
    EXPECT_EQ(model->filteredAudiobooks().size(), 0);
    EXPECT_EQ(model->audiobooks().size(), 1);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Audio title added"));
}

TEST_F(AppModelEdits, AnAudiobookBeingListenedToIsShownAmongThose)
{
    startModel();

    EXPECT_TRUE(await(model->addAudiobook(audioTitle(QStringLiteral("Tidewater")), QStringLiteral("reading"))));

    EXPECT_EQ(model->selectedShelf(), LibraryShelf::Active);
    EXPECT_EQ(model->filteredAudiobooks().size(), 1);
}

TEST_F(AppModelEdits, APortraitCoverGoesBeforeTheOneOfTheAudioCatalogue)
{
    startModel();
    serveCover(QStringLiteral("Tidewater"), QStringLiteral("Ada Lindqvist"));
    AudibleCatalogBook book = audioTitle(QStringLiteral("Tidewater"));
    book.coverURL = Url::parse(services.url(u"/square.png").toString());

    EXPECT_TRUE(await(model->addAudiobook(book, QStringLiteral("read"))));

    EXPECT_EQ(cover("audible_books"), found);
    EXPECT_EQ(coverSource("audible_books"), services.url(u"/found.png").toString());
}

TEST_F(AppModelEdits, WithoutAPortraitCoverTheOneOfTheAudioCatalogueIsTaken)
{
    startModel();
    const QByteArray square = pngPicture({80, 80});
    AudibleCatalogBook book = audioTitle(QStringLiteral("Tidewater"));
    book.coverURL = Url::parse(services.url(u"/square.png").toString());
    services.route(u"/square.png", LoopbackReply::ok(square, "image/png"));

    EXPECT_TRUE(await(model->addAudiobook(book, QStringLiteral("read"))));

    EXPECT_EQ(cover("audible_books"), square);
}

TEST_F(AppModelEdits, AnAudiobookWithoutAnyCoverIsStoredWithoutOne)
{
    startModel();
    AudibleCatalogBook typed = audioTitle(QStringLiteral("Tidewater"));
    typed.asin.clear();

    EXPECT_TRUE(await(model->addAudiobook(typed, QStringLiteral("read"))));

    EXPECT_EQ(cover("audible_books"), QByteArray());
    EXPECT_THAT(model->audiobooks().first().asin.toStdString(), ::testing::StartsWith("manual:"));
}

TEST_F(AppModelEdits, AnAudiobookThatCannotBeStoredIsTold)
{
    startModel();
    library.execute("CREATE TRIGGER full BEFORE INSERT ON audible_books BEGIN SELECT RAISE(ABORT, 'no room'); END");

    EXPECT_FALSE(await(model->addAudiobook(audioTitle(QStringLiteral("Tidewater")), QStringLiteral("read"))));

    EXPECT_EQ(noticeTitle(), QStringLiteral("Audio Title Could Not Be Added"));
    EXPECT_FALSE(model->isWorking());
}

// Hiding. -------------------------------------------------------------------------

TEST_F(AppModelEdits, HidingABookClosesItsDetailsAndSoDoesRestoringIt)
{
    ModelTest::addBook(QStringLiteral("Emma"));
    setStored(QStringLiteral("selectedTab"), QStringLiteral("books"));
    startModel();
    const Book emma = model->books().first();
    model->setSelectedBook(emma);

    EXPECT_TRUE(await(model->setBookHidden(emma, true)));
    EXPECT_EQ(model->selectedBook(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Book hidden"));
    EXPECT_THAT(titlesShown(), IsEmpty());

    model->setSelectedShelf(LibraryShelf::Hidden);
    model->setSelectedBook(model->books().first());
    EXPECT_TRUE(await(model->setBookHidden(model->books().first(), false)));
    EXPECT_EQ(model->selectedBook(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Book restored to the library"));
}

TEST_F(AppModelEdits, ABookThatCannotBeHiddenKeepsItsDetails)
{
    ModelTest::addBook(QStringLiteral("Emma"));
    startModel();
    const Book emma = model->books().first();
    model->setSelectedBook(emma);
    library.execute("CREATE TRIGGER full BEFORE UPDATE ON goodreads_books BEGIN SELECT RAISE(ABORT, 'no room'); END");

    EXPECT_FALSE(await(model->setBookHidden(emma, true)));
    EXPECT_EQ(noticeTitle(), QStringLiteral("Book Could Not Be Hidden"));
    EXPECT_FALSE(await(model->setBookHidden(emma, false)));
    EXPECT_EQ(noticeTitle(), QStringLiteral("Book Could Not Be Restored"));
    EXPECT_EQ(model->selectedBook(), emma);
}

TEST_F(AppModelEdits, AModelThatEndsWhileATitleIsAddedTouchesNothing)
{
    startModel();
    services.route(u"/search", LoopbackReply::silence());
    auto adding = model->addBook(draft(QStringLiteral("The Salt Road")));
    ASSERT_TRUE(eventually([this] { return !services.requests().isEmpty(); }));
    model.reset();
    services.refuse();
    EXPECT_FALSE(await(std::move(adding)));
}

// Appearance. ---------------------------------------------------------------------

TEST_F(AppModelEdits, APreviewOfTheAccentIsSeenAtOnceAndNotStored)
{
    startModel();

    model->previewAccentAppearance(AccentColorChoice::Pine, true, {0.25, 0.5, 1});

    EXPECT_EQ(model->settings().accentColor, AccentColorChoice::Pine);
    EXPECT_TRUE(model->settings().usesCustomAccentColor);
    EXPECT_EQ(model->settings().customAccentColor, (CustomAccentColor{0.25, 0.5, 1}));
    settle();
    EXPECT_EQ(stored(QStringLiteral("accentColor")), std::nullopt);
}

TEST_F(AppModelEdits, ASavedAccentIsStoredInFiveSettings)
{
    startModel();

    await(model->saveAccentAppearance(AccentColorChoice::Pine, true, {0.25, 0.5, 1}));

    EXPECT_EQ(stored(QStringLiteral("accentColor")), QStringLiteral("pine"));
    EXPECT_EQ(stored(QStringLiteral("usesCustomAccentColor")), QStringLiteral("1"));
    EXPECT_EQ(stored(QStringLiteral("customAccentRed")), QStringLiteral("0.25"));
    EXPECT_EQ(stored(QStringLiteral("customAccentGreen")), QStringLiteral("0.5"));
    EXPECT_EQ(stored(QStringLiteral("customAccentBlue")), QStringLiteral("1.0"));
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AppModelEdits, ASavedAppearanceIsSeenBeforeItIsStored)
{
    startModel();

    const auto savingAccent = model->saveAccentAppearance(AccentColorChoice::Cabin, false, {1, 0, 0.125});
    const auto savingSidebar = model->saveSidebarAppearance(SidebarAppearance::Glass);

    EXPECT_EQ(model->settings().accentColor, AccentColorChoice::Cabin);
    EXPECT_EQ(model->settings().sidebarAppearance, SidebarAppearance::Glass);
    EXPECT_TRUE(eventually([this] { return stored(QStringLiteral("sidebarAppearance")) == QStringLiteral("glass"); }));
    EXPECT_EQ(stored(QStringLiteral("usesCustomAccentColor")), QStringLiteral("0"));
    EXPECT_EQ(stored(QStringLiteral("customAccentRed")), QStringLiteral("1.0"));
    EXPECT_EQ(stored(QStringLiteral("customAccentGreen")), QStringLiteral("0.0"));
    EXPECT_EQ(stored(QStringLiteral("customAccentBlue")), QStringLiteral("0.125"));
}

TEST_F(AppModelEdits, AnAppearanceThatCannotBeStoredIsTakenBack)
{
    startModel();
    library.execute("CREATE TRIGGER full BEFORE INSERT ON settings BEGIN SELECT RAISE(ABORT, 'no room'); END");

    await(model->saveSidebarAppearance(SidebarAppearance::Cabin));
    EXPECT_EQ(noticeTitle(), QStringLiteral("Appearance Could Not Be Saved"));
    EXPECT_EQ(model->settings().sidebarAppearance, SidebarAppearance::Snow);

    await(model->saveAccentAppearance(AccentColorChoice::Pine, false, {}));
    EXPECT_EQ(model->settings().accentColor, AccentColorChoice::Fjord);
}

TEST_F(AppModelEdits, ASavedSidebarIsStored)
{
    startModel();

    await(model->saveSidebarAppearance(SidebarAppearance::Cabin));

    EXPECT_EQ(model->settings().sidebarAppearance, SidebarAppearance::Cabin);
    EXPECT_EQ(stored(QStringLiteral("sidebarAppearance")), QStringLiteral("cabin"));
}

} // namespace

} // namespace quire
