#include "QuireApp/Covers/RemoteCoverLoader.h"

#include "concurrency/Detach.h"
#include "records/Failure.h"
#include "sources/ArtworkService.h"
#include "sources/NetworkClient.h"

#include <QPointer>
#include <QQmlEngine>

#include <utility>

namespace quire {

namespace {

constexpr auto servedLoader = "quireRemoteCovers";

} // namespace

RemoteCoverLoader::RemoteCoverLoader(NetworkClient &network, QObject *parent)
    : QObject(parent)
    , m_network(network)
    , m_kept(keptBytes)
{
}

void RemoteCoverLoader::serve(QQmlEngine &engine, RemoteCoverLoader &loader)
{
    engine.setProperty(servedLoader, QVariant::fromValue(&loader));
}

RemoteCoverLoader *RemoteCoverLoader::of(const QQmlEngine *engine)
{
    return engine ? engine->property(servedLoader).value<RemoteCoverLoader *>() : nullptr;
}

void RemoteCoverLoader::load(
    const QUrl &url, std::stop_token stop, std::function<void(const std::optional<CoverBytes> &)> done)
{
    if (const CoverBytes *kept = m_kept.object(url)) {
        done(*kept);
        return;
    }
    m_waiting.push_back({url, std::move(stop), std::move(done)});
    startNext();
}

void RemoteCoverLoader::startNext()
{
    while (m_downloads < mostDownloads && !m_waiting.empty()) {
        Wanted next = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (!next.stop.stop_requested()) {
            ++m_downloads;
            detach(fetch(std::move(next)));
        }
    }
}

QCoro::Task<> RemoteCoverLoader::fetch(Wanted wanted)
{
    const QPointer self(this);
    std::optional<CoverBytes> cover;
    try {
        const auto downloading = ArtworkService::artworkData(m_network, wanted.url, wanted.stop);
        cover = co_await downloading;
    } catch (const Failure &) {
        // Its placeholder stays, and nothing is reported.
    }
    if (!self) {
        co_return;
    }
    --m_downloads;
    if (cover) {
        m_kept.insert(wanted.url, new CoverBytes(*cover), cover->size()); // the cache takes it
    }
    if (!wanted.stop.stop_requested()) {
        wanted.done(cover);
    }
    if (self) {
        startNext();
    }
}

} // namespace quire
