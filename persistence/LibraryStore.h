// LibraryStore owns the library: one SQLite file, one connection for the life
// of the library, one serial executor that everything below runs on. No other
// part of the program touches the database.
//
// Thread: any thread may call; every operation is one hop onto the executor
// and returns at once with a future. Operations run in the order of the calls
// and never interleave. Each public write is one transaction.
//
// Failures: a future carries a DatabaseError (MissingDatabase whenever the
// library is not open), a QuireReliabilityError, or the typed wrapper of a
// file-system failure; a failed write has changed nothing.

#pragma once

#include "concurrency/Clock.h"
#include "concurrency/SerialExecutor.h"
#include "records/ArtworkRequest.h"
#include "records/AudibleLibraryItem.h"
#include "records/Audiobook.h"
#include "records/Book.h"
#include "records/CatalogBooks.h"
#include "records/GoodreadsFeedBook.h"
#include "records/ManualBookDraft.h"
#include "records/TagCount.h"
#include "reliability/QuireBackgroundJob.h"

#include <QFuture>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>

#include <memory>
#include <optional>

namespace quire {

// Settings by key, secrets laid over the stored rows. Sorted, so that a batch
// is written in ascending order of key.
using SettingsMap = QMap<QString, QString>;

// How many titles have a cover stored, placeholders included.
struct ArtworkCoverage
{
    qint64 books = 0;
    qint64 audiobooks = 0;

    bool operator==(const ArtworkCoverage &) const = default;
};

class LibraryStore
{
public:
    // clock: outlives the store. folder: where the library and its local state
    // live; absent for the configured place, which is then read once and for all,
    // on the executor. importLegacyBooksOnFirstLaunch: a library that is not there
    // yet begins as a copy of the older program's. Writes nothing to the disk.
    explicit LibraryStore(const Clock &clock, const std::optional<QString> &folder = std::nullopt,
        bool importLegacyBooksOnFirstLaunch = false);

    // Closes the library if it is open; queued operations run first.
    ~LibraryStore();

    LibraryStore(const LibraryStore &) = delete;
    LibraryStore &operator=(const LibraryStore &) = delete;

    // Life. --------------------------------------------------------------

    // Opens the library: creates its folder, refuses it while a sync service's
    // conflict copy lies beside it, takes the lease, opens the file and brings its
    // schema up to date, compares it with what this machine remembers of it and,
    // when recovering, checks it. Does nothing when the library is open. After a
    // failure the library is closed, the lease given up and no file held.
    QFuture<void> prepare(bool recoveringFromCrash);

    // Remembers how far the library came, closes it and gives up the lease. Never
    // fails; may be followed by another prepare().
    QFuture<void> shutdown();

    // Absolute path of the library file, open or not. Never fails.
    QFuture<QString> databaseURL();

    // Takes the library to `folder`, an absolute path, which is created: copies it
    // there, or adopts the one that is there already, and remembers the folder for
    // the next start. The old file stays where it is. True when the library was
    // copied, false when one was adopted or `folder` is the present one. After a
    // failure (as those of Relocation::open) the library is where it was.
    QFuture<bool> relocateDatabase(const QString &folder);

    // Reads. -------------------------------------------------------------

    // Every book, hidden ones too, with tags, in the store's order. A cover
    // that did not change since the last call is the same shared value.
    QFuture<QList<Book>> books();
    QFuture<QList<Audiobook>> audiobooks();
    QFuture<QList<TagCount>> tags();
    QFuture<SettingsMap> settings();

    // Settings. ----------------------------------------------------------

    // Protected keys live in the credential file and never in the table.
    QFuture<std::optional<QString>> setting(const QString &key);
    QFuture<void> setSetting(const QString &key, const QString &value);
    QFuture<void> setSettings(const SettingsMap &values);

    // The reader's edits. -------------------------------------------------

    QFuture<void> updateBook(qint64 id, double rating, const QString &shelf, const QString &notes);
    QFuture<void> setBookHidden(qint64 id, bool hidden);
    // The row id of the new book.
    QFuture<qint64> addManualBook(const ManualBookDraft &draft, const std::optional<CoverBytes> &artwork);
    QFuture<void> updateAudiobook(qint64 id, double rating, const QString &status, const QString &notes);
    // The row id of the new or already present audiobook.
    QFuture<qint64> addAudiobook(const AudibleCatalogBook &book, const QString &status,
        const std::optional<Url> &preferredCover, const std::optional<CoverBytes> &artwork);

    // Covers. --------------------------------------------------------------

    QFuture<ArtworkCoverage> artworkCoverage();
    QFuture<QList<ArtworkRequest>> artworkRequestsNeedingCache();
    // Replaces an existing cover: only at the reader's command.
    QFuture<void> updateAudiobookCover(qint64 id, const Url &url, const CoverBytes &artwork);
    // artwork: absent leaves the title without a cover. source: a URL's text,
    // "manual" or "generated:placeholder".
    QFuture<void> storeArtwork(
        const std::optional<CoverBytes> &artwork, const ArtworkRequest &request, const QString &source);

    // Imports: all or nothing, and never at the expense of what the reader
    // entered. ------------------------------------------------------------

    QFuture<void> upsertGoodreadsBooks(const QList<GoodreadsFeedBook> &batch);
    QFuture<AudibleSyncResult> mergeAudibleLibraryItems(const QList<AudibleLibraryItem> &batch);

    // Backups. -------------------------------------------------------------

    // A verified backup; its absolute path. Old ones beyond the configured
    // number are removed. folder: absolute; absent for the configured one.
    // DatabaseError Backup when there is no new backup; FileError also when it
    // stands but an old one could not be removed.
    QFuture<QString> backUpDatabase(const std::optional<QString> &folder);
    // The same into the configured folder, when the last backup is as old as the
    // configured interval; otherwise nothing.
    QFuture<std::optional<QString>> backUpDatabaseIfDue();

    // Job history. ----------------------------------------------------------

    QFuture<void> recordBackgroundJob(const QuireJobEvent &event);

private:
    struct State;

    template<typename Job>
    auto read(Job job);
    template<typename Job>
    auto write(Job job);

    std::unique_ptr<State> m_state; // touched only on m_executor
    SerialExecutor m_executor; // last: joins before the state dies
};

} // namespace quire
