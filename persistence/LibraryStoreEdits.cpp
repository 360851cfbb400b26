#include "persistence/LibraryStore.h"

#include "persistence/ArtworkRows.h"
#include "persistence/AudiobookEdits.h"
#include "persistence/BookEdits.h"
#include "persistence/LibraryStoreState.h"

namespace quire {

QFuture<void> LibraryStore::updateBook(qint64 id, double rating, const QString &shelf, const QString &notes)
{
    return write(
        [id, rating, shelf, notes](State &state) { BookEdits::update(*state.database, id, rating, shelf, notes); });
}

QFuture<void> LibraryStore::setBookHidden(qint64 id, bool hidden)
{
    return write([id, hidden](State &state) { BookEdits::setHidden(*state.database, id, hidden); });
}

QFuture<qint64> LibraryStore::addManualBook(const ManualBookDraft &draft, const std::optional<CoverBytes> &artwork)
{
    return write([draft, artwork](State &state) {
        return BookEdits::addManual(*state.database, draft, artwork, state.clock.now());
    });
}

QFuture<void> LibraryStore::updateAudiobook(qint64 id, double rating, const QString &status, const QString &notes)
{
    return write([id, rating, status, notes](
                     State &state) { AudiobookEdits::update(*state.database, id, rating, status, notes); });
}

QFuture<qint64> LibraryStore::addAudiobook(const AudibleCatalogBook &book, const QString &status,
    const std::optional<Url> &preferredCover, const std::optional<CoverBytes> &artwork)
{
    return write([book, status, preferredCover, artwork](State &state) {
        const qint64 id
            = AudiobookEdits::add(*state.database, book, status, preferredCover, artwork, state.clock.now());
        state.covers.forget(ArtworkKind::Audiobook, id); // the title may have been here without a cover
        return id;
    });
}

QFuture<ArtworkCoverage> LibraryStore::artworkCoverage()
{
    return read([](State &state) { return ArtworkRows::coverage(*state.database); });
}

QFuture<QList<ArtworkRequest>> LibraryStore::artworkRequestsNeedingCache()
{
    return read([](State &state) { return ArtworkRows::requestsNeedingCache(*state.database); });
}

// Both forget first: a cover that is forgotten for nothing is only read again.

QFuture<void> LibraryStore::updateAudiobookCover(qint64 id, const Url &url, const CoverBytes &artwork)
{
    return read([id, url, artwork](State &state) {
        state.covers.forget(ArtworkKind::Audiobook, id);
        ArtworkRows::replaceAudiobookCover(*state.database, id, url, artwork);
    });
}

QFuture<void> LibraryStore::storeArtwork(
    const std::optional<CoverBytes> &artwork, const ArtworkRequest &request, const QString &source)
{
    return read([artwork, request, source](State &state) {
        state.covers.forget(request.kind, request.id);
        ArtworkRows::store(*state.database, artwork, request, source);
    });
}

} // namespace quire
