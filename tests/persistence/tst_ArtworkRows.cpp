#include "persistence/database/DatabaseError.h"
#include "testing/Await.h"
#include "testing/ImportRecords.h"
#include "testing/TestLibrary.h"

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;

namespace {

QString text(const char *value)
{
    return QString::fromUtf8(value);
}

const SQLiteValue null;
const QString placeholder = QStringLiteral("generated:placeholder");
const SQLiteValue image = QByteArrayLiteral("image");

void addBook(TestLibrary &library, const char *title, const SQLiteValue &coverURL, const SQLiteValue &imageURL,
    const SQLiteValue &data, const SQLiteValue &source)
{
    library.execute("INSERT INTO goodreads_books (goodreads_id, title, cover_url, goodreads_image_url, cover_data, "
                    "cover_data_source) VALUES (?, ?, ?, ?, ?, ?)",
        {text(title), text(title), coverURL, imageURL, data, source});
}

void addAudiobook(TestLibrary &library, const char *title, const SQLiteValue &coverURL, const SQLiteValue &data,
    const SQLiteValue &source)
{
    library.execute(
        "INSERT INTO audible_books (asin, title, cover_url, cover_data, cover_data_source) VALUES (?, ?, ?, ?, ?)",
        {text(title), text(title), coverURL, data, source});
}

ArtworkRequest request(ArtworkKind kind, qint64 id, const char *title, const char *source = nullptr)
{
    return {
        .kind = kind, .id = id, .title = text(title), .sourceURL = source ? std::optional(url(source)) : std::nullopt};
}

} // namespace

TEST(ArtworkRows, CoverageCountsPlaceholdersAndNoEmptyBytes)
{
    TestLibrary library;
    addBook(library, "none", null, null, null, null);
    addBook(library, "empty", null, null, QByteArray(""), null);
    addBook(library, "image", null, null, image, text("manual"));
    addBook(library, "placeholder", null, null, image, placeholder);
    addAudiobook(library, "none", null, null, null);
    addAudiobook(library, "image", null, image, placeholder);
    EXPECT_EQ(await(library.store().artworkCoverage()), (ArtworkCoverage{.books = 2, .audiobooks = 1}));
}

TEST(ArtworkRows, BooksThenAudiobooksWithoutACoverAreAskedFor)
{
    TestLibrary library;
    addAudiobook(library, "audio none", text("https://a.example/1"), null, null);
    addAudiobook(library, "audio image", text("https://a.example/2"), image, text("https://a.example/2"));
    addAudiobook(library, "audio empty", null, QByteArray(""), null);
    addBook(library, "none", text("https://b.example/1"), text("https://b.example/small"), null, null);
    addBook(library, "fallback", null, text("https://b.example/small"), null, null);
    addBook(library, "image", text("https://b.example/2"), null, image, text("manual"));
    addBook(library, "empty", null, null, QByteArray(""), text("manual"));
    EXPECT_EQ(await(library.store().artworkRequestsNeedingCache()),
        (QList{request(ArtworkKind::Book, 1, "none", "https://b.example/1"),
            request(ArtworkKind::Book, 2, "fallback", "https://b.example/small"),
            request(ArtworkKind::Book, 4, "empty"),
            request(ArtworkKind::Audiobook, 1, "audio none", "https://a.example/1"),
            request(ArtworkKind::Audiobook, 3, "audio empty")}));
}

TEST(ArtworkRows, APlaceholderIsAskedForOnlyWhileAURLIsKnown)
{
    TestLibrary library;
    addBook(library, "known", null, text("https://b.example/1"), image, placeholder);
    addBook(library, "unknown", null, null, image, placeholder);
    addAudiobook(library, "audio known", text("https://a.example/1"), image, placeholder);
    addAudiobook(library, "audio unknown", null, image, placeholder);
    EXPECT_EQ(await(library.store().artworkRequestsNeedingCache()),
        (QList{request(ArtworkKind::Book, 1, "known", "https://b.example/1"),
            request(ArtworkKind::Audiobook, 1, "audio known", "https://a.example/1")}));
}

TEST(ArtworkRows, AnAddressThatIsNoneIsAskedForWithoutIt)
{
    TestLibrary library;
    addBook(library, "empty", text(""), text("https://b.example/1"), null, null); // empty is not absent
    addBook(library, "broken", text("not a url"), null, null, null);
    EXPECT_EQ(await(library.store().artworkRequestsNeedingCache()),
        (QList{request(ArtworkKind::Book, 1, "empty"), request(ArtworkKind::Book, 2, "broken")}));
}

TEST(ArtworkRows, StoringACoverTouchesItsTwoColumnsAlone)
{
    TestLibrary library;
    addBook(library, "book", null, null, null, null);
    addAudiobook(library, "audio", null, null, null);
    const auto book = library.query("SELECT * FROM goodreads_books").value(0);
    const auto audiobook = library.query("SELECT * FROM audible_books").value(0);
    const qint64 generation = library.scalar("SELECT generation FROM library_metadata").intValue().value();

    await(library.store().storeArtwork(
        CoverBytes(QByteArrayLiteral("b")), request(ArtworkKind::Book, 1, "x"), text("manual")));
    await(library.store().storeArtwork(
        CoverBytes(QByteArrayLiteral("a")), request(ArtworkKind::Audiobook, 1, "x"), placeholder));

    SQLiteRow expectedBook = book;
    expectedBook.set(text("cover_data"), QByteArrayLiteral("b"));
    expectedBook.set(text("cover_data_source"), text("manual"));
    EXPECT_EQ(library.query("SELECT * FROM goodreads_books").value(0), expectedBook);
    SQLiteRow expectedAudiobook = audiobook;
    expectedAudiobook.set(text("cover_data"), QByteArrayLiteral("a"));
    expectedAudiobook.set(text("cover_data_source"), placeholder);
    EXPECT_EQ(library.query("SELECT * FROM audible_books").value(0), expectedAudiobook);
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM field_provenance").intValue(), 0);
    EXPECT_EQ(library.scalar("SELECT generation FROM library_metadata").intValue(), generation + 2);
}

TEST(ArtworkRows, AtTheReadersCommandACoverIsReplaced)
{
    TestLibrary library;
    addAudiobook(library, "audio", text("https://a.example/old"), image, text("manual"));
    library.execute("UPDATE audible_books SET date_synced = '2001-01-01 00:00:00'");
    await(library.store().updateAudiobookCover(1, url("https://a.example/new"), CoverBytes(QByteArrayLiteral("new"))));
    const SQLiteRow row = library.query("SELECT * FROM audible_books").value(0);
    EXPECT_EQ(row.value(text("cover_url")), text("https://a.example/new"));
    EXPECT_EQ(row.value(text("cover_data")), SQLiteValue(QByteArrayLiteral("new")));
    EXPECT_EQ(row.value(text("cover_data_source")), text("https://a.example/new"));
    EXPECT_TRUE(isSqlNow(library, row.value(text("date_synced"))));
}

TEST(ArtworkRows, ACoverThatWasHandedOutIsForgottenWhenItIsReplaced)
{
    TestLibrary library;
    LibraryStore &store = library.store();
    const auto coverOfBook = [&] { return await(store.books()).value(0).coverData.value().bytes(); };
    const auto coverOfAudiobook = [&] { return await(store.audiobooks()).value(0).coverData.value().bytes(); };
    const ArtworkRequest book = request(ArtworkKind::Book, 1, "x");
    const ArtworkRequest audiobook = request(ArtworkKind::Audiobook, 1, "x");
    addBook(library, "book", null, null, QByteArrayLiteral("old"), text("manual"));
    addAudiobook(library, "audio", null, QByteArrayLiteral("old"), text("manual"));
    EXPECT_EQ(coverOfBook(), QByteArrayLiteral("old"));
    EXPECT_EQ(coverOfAudiobook(), QByteArrayLiteral("old"));

    // As long as before, so that nothing but the bytes tells.
    await(store.storeArtwork(CoverBytes(QByteArrayLiteral("new")), book, text("manual")));
    await(store.storeArtwork(CoverBytes(QByteArrayLiteral("new")), audiobook, text("manual")));
    EXPECT_EQ(coverOfBook(), QByteArrayLiteral("new"));
    EXPECT_EQ(coverOfAudiobook(), QByteArrayLiteral("new"));

    await(store.updateAudiobookCover(1, url("https://a.example/1"), CoverBytes(QByteArrayLiteral("own"))));
    EXPECT_EQ(coverOfAudiobook(), QByteArrayLiteral("own"));
}

TEST(ArtworkRows, ACoverThatCameWithAnImportedTitleOutlastsImports)
{
    TestLibrary library;
    LibraryStore &store = library.store();
    await(store.upsertGoodreadsBooks({fullFeedBook()}));
    await(
        store.storeArtwork(CoverBytes(QByteArrayLiteral("cover")), request(ArtworkKind::Book, 1, "x"), text("manual")));
    const auto before = await(store.books()).value(0).coverData;
    await(store.upsertGoodreadsBooks({fullFeedBook()}));
    const auto after = await(store.books()).value(0).coverData;
    ASSERT_TRUE(before && after);
    EXPECT_EQ(before->bytes().constData(), after->bytes().constData()); // shared, not read again
}

TEST(ArtworkRows, AnAudiobookAddedAgainShowsTheCoverThatItLacked)
{
    TestLibrary library;
    LibraryStore &store = library.store();
    AudibleCatalogBook book;
    book.asin = text("B1");
    book.title = text("Title");
    await(store.addAudiobook(book, text("read"), std::nullopt, std::nullopt));
    EXPECT_EQ(await(store.audiobooks()).value(0).coverData, std::nullopt);
    await(store.addAudiobook(book, text("read"), std::nullopt, CoverBytes(QByteArrayLiteral("cover"))));
    EXPECT_EQ(await(store.audiobooks()).value(0).coverData, CoverBytes(QByteArrayLiteral("cover")));
}
