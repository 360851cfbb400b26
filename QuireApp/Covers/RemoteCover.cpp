#include "QuireApp/Covers/RemoteCover.h"

#include "QuireApp/Covers/RemoteCoverLoader.h"

#include <QPointer>
#include <QQmlEngine>

namespace quire {

RemoteCover::RemoteCover(QObject *parent)
    : QObject(parent)
{
}

RemoteCover::~RemoteCover()
{
    m_loading.request_stop();
}

void RemoteCover::setUrl(const QUrl &url)
{
    if (url == m_url) {
        return;
    }
    m_url = url;
    Q_EMIT urlChanged();
    load();
}

void RemoteCover::componentComplete()
{
    m_isComplete = true;
    load();
}

void RemoteCover::load()
{
    if (!m_isComplete) {
        return;
    }
    m_loading.request_stop();
    m_loading = std::stop_source();
    setSource({}); // never another title's cover
    auto *loader = RemoteCoverLoader::of(qmlEngine(this));
    if (!loader || m_url.isEmpty()) {
        return;
    }
    const QString key = QStringLiteral("remote-") + m_url.toString(QUrl::FullyEncoded);
    loader->load(m_url, m_loading.get_token(), [self = QPointer(this), key](const std::optional<CoverBytes> &cover) {
        if (self && cover) {
            self->setSource({key, cover});
        }
    });
}

void RemoteCover::setSource(const CoverSource &source)
{
    if (source != m_source) {
        m_source = source;
        Q_EMIT sourceChanged();
    }
}

} // namespace quire
