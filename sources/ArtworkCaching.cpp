// The pass over the titles that have no cover.

#include "concurrency/Cancelled.h"
#include "concurrency/Clock.h"
#include "persistence/LibraryStore.h"
#include "sources/ArtworkService.h"
#include "sources/NetworkClient.h"

#include <QCoroFuture>

namespace quire::ArtworkService {

namespace {

using namespace std::chrono_literals;

constexpr int attempts = 3;
constexpr std::chrono::nanoseconds firstPause = 450ms; // and that much longer after each attempt

// A finished cover; without bytes when not even one could be drawn.
struct ResolvedArtwork
{
    ArtworkRequest request;
    std::optional<CoverBytes> data;
    QString source;
    bool downloaded = false;
};

// What the lanes of one pass share. They take turns on one thread.
struct Pass
{
    LibraryStore &store;
    NetworkClient &network;
    Clock &clock;
    QList<ArtworkRequest> requests;
    qsizetype next = 0;
    std::stop_source stop;
    std::exception_ptr failure; // the first
    ArtworkCacheResult result;
};

void throwIfStopped(const Pass &pass)
{
    if (pass.stop.stop_requested()) {
        throw Cancelled();
    }
}

// A pause that is cut short ends as one that is over: the next attempt sees.
QCoro::Task<> pauseAfter(Pass &pass, int attempt)
{
    try {
        const auto pause = pass.clock.sleep(firstPause * attempt, pass.stop.get_token());
        co_await pause;
    } catch (const Cancelled &) {
    }
}

// The picture at the title's address; nothing when there is none to be had.
QCoro::Task<std::optional<CoverBytes>> download(Pass &pass, QUrl url)
{
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        try {
            const auto downloading = artworkData(pass.network, url, pass.stop.get_token());
            auto data = co_await downloading;
            co_return data;
        } catch (const Failure &) {
            // The drawn cover tells of it, and the next pass tries again.
        }
        if (attempt < attempts) {
            const auto pause = pauseAfter(pass, attempt);
            co_await pause;
        }
        throwIfStopped(pass);
    }
    co_return std::nullopt;
}

QCoro::Task<ResolvedArtwork> resolve(Pass &pass, ArtworkRequest request)
{
    if (request.sourceURL) {
        const auto downloading = download(pass, request.sourceURL->toQUrl());
        auto data = co_await downloading;
        if (data) {
            const QString source = request.sourceURL->text();
            co_return ResolvedArtwork{
                .request = std::move(request), .data = std::move(data), .source = source, .downloaded = true};
        }
    }
    const auto drawing = generatedPlaceholder(request.title);
    auto data = co_await drawing;
    co_return ResolvedArtwork{
        .request = std::move(request), .data = std::move(data), .source = QStringLiteral("generated:placeholder")};
}

// Takes the next title as soon as it has done with one.
QCoro::Task<> runLane(Pass &pass)
{
    try {
        while (pass.next < pass.requests.size()) {
            throwIfStopped(pass);
            const ArtworkRequest request = pass.requests.at(pass.next++);
            const auto resolving = resolve(pass, request);
            const auto artwork = co_await resolving;
            throwIfStopped(pass);
            const auto storing = pass.store.storeArtwork(artwork.data, artwork.request, artwork.source);
            co_await storing;
            ++(artwork.downloaded ? pass.result.downloaded : pass.result.placeholders);
        }
    } catch (...) {
        if (!pass.failure) {
            pass.failure = std::current_exception();
        }
        pass.stop.request_stop();
    }
}

} // namespace

QCoro::Task<ArtworkCacheResult> cacheMissingArtwork(
    LibraryStore &store, NetworkClient &network, Clock &clock, std::stop_token stop)
{
    Pass pass{.store = store, .network = network, .clock = clock};
    const auto stopPass = [&pass] { pass.stop.request_stop(); };
    const std::stop_callback onStop(stop, stopPass);

    const auto reading = store.artworkRequestsNeedingCache();
    pass.requests = co_await reading;
    pass.result.total = pass.requests.size();

    // Both begin here, and neither outlives the pass.
    const auto first = runLane(pass);
    const auto second = runLane(pass);
    co_await first;
    co_await second;
    if (pass.failure) {
        std::rethrow_exception(pass.failure);
    }
    co_return pass.result;
}

} // namespace quire::ArtworkService
