#include "faults/Deeds.h"

#include "faults/ReliabilityDeeds.h"
#include "faults/RelocationDeeds.h"
#include "persistence/OldLibraries.h"
#include "testing/ImportRecords.h"

namespace quire::testing {

namespace {

CoverBytes cover(int number)
{
    // Larger than a page, so that it takes overflow pages.
    return CoverBytes(QByteArray(9'000, char('A' + number % 26)));
}

QList<GoodreadsFeedBook> feed(int first, int count)
{
    QList<GoodreadsFeedBook> batch;
    for (int i = first; i < first + count; ++i) {
        auto book = fullFeedBook(QString::number(i));
        book.title = QStringLiteral("Feed title %1").arg(i);
        batch.append(book);
    }
    return batch;
}

QList<AudibleLibraryItem> audioItems(int first, int count)
{
    QList<AudibleLibraryItem> batch;
    for (int i = first; i < first + count; ++i) {
        auto item = fullAudibleItem(QStringLiteral("B%1").arg(i));
        item.title = QStringLiteral("Audio title %1").arg(i);
        batch.append(item);
    }
    return batch;
}

ManualBookDraft draft(int number)
{
    ManualBookDraft draft;
    draft.title = QStringLiteral("Manual title %1").arg(number);
    draft.author = QStringLiteral("Some Author");
    draft.shelf = QStringLiteral("read");
    draft.notes = QStringLiteral("Typed in");
    return draft;
}

AudibleCatalogBook catalogBook(int number)
{
    AudibleCatalogBook book;
    book.asin = QStringLiteral("C%1").arg(number);
    book.title = QStringLiteral("Catalogue title %1").arg(number);
    return book;
}

ArtworkRequest bookCover(qint64 id)
{
    return {.kind = ArtworkKind::Book, .id = id, .title = QStringLiteral("A title"), .sourceURL = std::nullopt};
}

SettingsMap settingsBatch(int number)
{
    const QString value = QStringLiteral("value %1").arg(number);
    return {{QStringLiteral("alpha"), value}, {QStringLiteral("beta"), value}, {QStringLiteral("gamma"), value}};
}

FolderImage libraryOf(Place place, const std::function<void(const QString &)> &create)
{
    FaultBench bench(place);
    create(bench.folder() + QStringLiteral("/quire.db"));
    return bench.image();
}

// A library of before secrets had a file of their own.
FolderImage libraryWithSecretsInside(Place place)
{
    FaultBench bench(place);
    bench.reset(filledLibrary(place));
    SQLiteDatabase(bench.folder() + QStringLiteral("/quire.db")).executeScript(R"sql(
        INSERT INTO settings VALUES ('goodreadsRssKey', 'key of old'), ('netlifyToken', 'token of old');
    )sql");
    return bench.image();
}

void addEdits(std::vector<Deed> &deeds, const FolderImage &filled)
{
    const auto edit = [&](const char *name, std::function<void(LibraryStore &)> run) {
        deeds.push_back({name, Deed::Kind::Edit, filled, std::move(run)});
    };
    edit("feed import", [](LibraryStore &store) { done(store.upsertGoodreadsBooks(feed(5, 12))); });
    edit("audio merge", [](LibraryStore &store) { done(store.mergeAudibleLibraryItems(audioItems(3, 8))); });
    edit("edit of a book", [](LibraryStore &store) {
        done(store.updateBook(2, 3.5, QStringLiteral("currently-reading"), QStringLiteral("A new note")));
    });
    edit("hiding of a book", [](LibraryStore &store) { done(store.setBookHidden(3, true)); });
    edit("adding of a book", [](LibraryStore &store) { done(store.addManualBook(draft(1), cover(1))); });
    edit("edit of an audiobook", [](LibraryStore &store) {
        done(store.updateAudiobook(2, 4, QStringLiteral("reading"), QStringLiteral("Heard in part")));
    });
    edit("adding of an audiobook", [](LibraryStore &store) {
        done(store.addAudiobook(catalogBook(1), QStringLiteral("read"), std::nullopt, cover(2)));
    });
    edit("storing of a cover",
        [](LibraryStore &store) { done(store.storeArtwork(cover(3), bookCover(1), QStringLiteral("manual"))); });
    edit("replacing of a cover", [](LibraryStore &store) {
        done(store.updateAudiobookCover(1, url("https://covers.example/new.jpg"), cover(4)));
    });
    edit("setting",
        [](LibraryStore &store) { done(store.setSetting(QStringLiteral("alpha"), QStringLiteral("another value"))); });
    edit("settings batch", [](LibraryStore &store) { done(store.setSettings(settingsBatch(7))); });
    edit("settings batch with a secret", [](LibraryStore &store) {
        auto batch = settingsBatch(8);
        batch.insert(QStringLiteral("goodreadsRssKey"), QStringLiteral("a new key"));
        done(store.setSettings(batch));
    });
    edit("secret", [](LibraryStore &store) {
        done(store.setSetting(QStringLiteral("netlifyToken"), QStringLiteral("a new token")));
    });
    edit("job history", [](LibraryStore &store) {
        done(store.recordBackgroundJob({.job = QuireBackgroundJob::GoodreadsSync,
            .state = QStringLiteral("running"),
            .attempt = 1,
            .message = std::nullopt}));
    });
    edit("reload", [](LibraryStore &store) {
        done(store.books());
        done(store.audiobooks());
        done(store.tags());
        done(store.settings());
        done(store.artworkCoverage());
        done(store.artworkRequestsNeedingCache());
    });
}

void addOpenings(std::vector<Deed> &deeds, Place place, const FolderImage &filled)
{
    const auto opening = [&](const char *name, FolderImage start, bool recovering = false, const char *row = "R03") {
        deeds.push_back({name, Deed::Kind::Opening, std::move(start),
            [recovering](LibraryStore &store) { done(store.prepare(recovering)); }, {}, row});
    };
    opening("first opening", {});
    opening("opening", filled);
    opening("opening after a crash", filled, true);
    opening("migration from version 0",
        libraryOf(place, [](const QString &path) { OldLibraries::createVersion0(path, 20); }), false, "R14");
    opening("migration from version 1", libraryOf(place, OldLibraries::createVersion1), false, "R14");
    opening("taking over of secrets", libraryWithSecretsInside(place));
}

} // namespace

FolderImage filledLibrary(Place place)
{
    FaultBench bench(place);
    bench.open();
    LibraryStore &store = bench.store();
    done(store.upsertGoodreadsBooks(feed(0, 10)));
    done(store.mergeAudibleLibraryItems(audioItems(0, 6)));
    done(store.setSettings(settingsBatch(0)));
    done(store.setSetting(QStringLiteral("goodreadsRssKey"), QStringLiteral("the first key")));
    done(store.storeArtwork(cover(0), bookCover(1), QStringLiteral("manual")));
    bench.close();
    SQLiteDatabase(bench.folder() + QStringLiteral("/quire.db"))
        .executeScript("INSERT INTO book_tags (book_id, tag) VALUES (1, 'sea'), (2, 'sea'), (2, 'war')");
    return bench.image();
}

std::vector<Deed> allDeeds(Place place)
{
    const FolderImage filled = filledLibrary(place);
    std::vector<Deed> deeds;
    addEdits(deeds, filled);
    addOpenings(deeds, place, filled);
    addMoves(deeds, place, filled);
    addReliabilityDeeds(deeds, place, filled);
    return deeds;
}

void doStep(LibraryStore &store, int step)
{
    const QString words = QStringLiteral("step %1").arg(step);
    switch (step % 8) {
    case 0:
        done(store.updateBook(1 + step % 10, step % 6, QStringLiteral("read"), words));
        break;
    case 1:
        done(store.setSettings(settingsBatch(step)));
        break;
    case 2:
        done(store.storeArtwork(cover(step), bookCover(1 + step % 10), words));
        break;
    case 3:
        done(store.upsertGoodreadsBooks(feed(step * 10, 6)));
        break;
    case 4:
        done(store.updateAudiobook(1 + step % 6, step % 6, QStringLiteral("reading"), words));
        break;
    case 5:
        done(store.addManualBook(draft(step), cover(step)));
        break;
    case 6:
        done(store.mergeAudibleLibraryItems(audioItems(step * 10, 4)));
        break;
    default:
        done(store.setSetting(QStringLiteral("alpha"), words));
        break;
    }
}

} // namespace quire::testing
