// Fetches the covers that lists of search results show by their address: by
// the rules of every download of a cover, a few at a time, and kept for a while
// so that scrolling back asks nobody again.
//
// Thread: interface thread; pictures are decoded elsewhere.

#pragma once

#include "records/CoverBytes.h"

#include <QCache>
#include <QCoroTask>
#include <QObject>
#include <QUrl>

#include <deque>
#include <functional>
#include <optional>
#include <stop_token>

class QQmlEngine;

namespace quire {

class NetworkClient;

class RemoteCoverLoader final : public QObject
{
    Q_OBJECT

public:
    static constexpr int mostDownloads = 4;
    static constexpr qsizetype keptBytes = 32LL * 1024 * 1024;

    // network: outlives the loader.
    explicit RemoteCoverLoader(NetworkClient &network, QObject *parent = nullptr);

    // Makes `loader` the one that the views of `engine` use; it outlives them.
    static void serve(QQmlEngine &engine, RemoteCoverLoader &loader);
    static RemoteCoverLoader *of(const QQmlEngine *engine); // null without one

    // Calls `done` with the picture, or with nothing when it could not be had;
    // at once for one that is kept, and not at all once `stop` is requested.
    void load(const QUrl &url, std::stop_token stop, std::function<void(const std::optional<CoverBytes> &)> done);

private:
    struct Wanted
    {
        QUrl url;
        std::stop_token stop;
        std::function<void(const std::optional<CoverBytes> &)> done;
    };

    void startNext();
    QCoro::Task<> fetch(Wanted wanted);

    NetworkClient &m_network;
    std::deque<Wanted> m_waiting;
    int m_downloads = 0; // under way
    QCache<QUrl, CoverBytes> m_kept;
};

} // namespace quire
