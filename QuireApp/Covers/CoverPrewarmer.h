// Decodes the first screen of covers before it is scrolled to: whenever what
// the library holds or shows has changed, the first 32 stored covers are handed
// to ArtworkImageCache in the background.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/Covers/ArtworkImageCache.h"

#include <QObject>

#include <stop_token>

namespace quire {

class AppModel;

class CoverPrewarmer final : public QObject
{
    Q_OBJECT

public:
    // model outlives this.
    explicit CoverPrewarmer(AppModel &model, QObject *parent = nullptr);
    ~CoverPrewarmer() override;

private:
    void update();

    AppModel &m_model;
    QString m_signature;
    std::stop_source m_task;
};

// What the covers to decode depend on, joined by "-": readiness, the selected
// tab, and the numbers of titles with those of their stored covers.
QString artworkCacheSignature(const AppModel &model);

// Those to decode, books before audiobooks, at most 32.
QList<ArtworkCacheEntry> prewarmEntries(const AppModel &model);

} // namespace quire
