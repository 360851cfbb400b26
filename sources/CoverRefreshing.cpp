#include "sources/CoverRefreshing.h"

#include "concurrency/Cancelled.h"
#include "persistence/LibraryStore.h"
#include "sources/ArtworkService.h"
#include "sources/CoverFinder.h"
#include "sources/NetworkClient.h"

#include <QCoroFuture>

namespace quire::AudibleService {

namespace {

struct FoundCover
{
    Url url;
    CoverBytes data;
};

void throwIfStopped(const std::stop_token &stop)
{
    if (stop.stop_requested()) {
        throw Cancelled();
    }
}

// Nothing when there is no better cover to be had, whatever the reason.
QCoro::Task<std::optional<FoundCover>> betterCover(
    NetworkClient &network, ServiceEndpoints endpoints, Audiobook audiobook, QList<Book> library, std::stop_token stop)
{
    try {
        const auto finding = CoverFinder::find(network, endpoints, audiobook.title, audiobook.author, library, stop);
        const auto found = co_await finding;
        if (!found) {
            co_return std::nullopt;
        }
        const auto downloading = ArtworkService::artworkData(network, found->url.toQUrl(), stop);
        const auto data = co_await downloading;
        co_return FoundCover{.url = found->url, .data = data};
    } catch (const Failure &) {
        co_return std::nullopt; // the artwork that is there stays
    }
}

} // namespace

QCoro::Task<CoverRefreshResult> refreshCovers(
    LibraryStore &store, NetworkClient &network, ServiceEndpoints endpoints, std::stop_token stop)
{
    const auto readingAudiobooks = store.audiobooks();
    const auto audiobooks = co_await readingAudiobooks;
    const auto readingBooks = store.books();
    const auto library = co_await readingBooks;
    // What a worse cover replaces can be had back from before it.
    const auto backingUp = store.backUpDatabaseIfDue();
    co_await backingUp;

    CoverRefreshResult result{.total = audiobooks.size()};
    for (const Audiobook &audiobook : audiobooks) {
        throwIfStopped(stop);
        const auto looking = betterCover(network, endpoints, audiobook, library, stop);
        const auto cover = co_await looking;
        throwIfStopped(stop);
        if (cover) {
            const auto storing = store.updateAudiobookCover(audiobook.id, cover->url, cover->data);
            co_await storing;
            ++result.refreshed;
        }
    }
    result.retained = result.total - result.refreshed;
    co_return result;
}

} // namespace quire::AudibleService
