#include "sources/SystemProxy.h"

#include <QHostAddress>
#include <QUrl>

namespace quire {

QList<QNetworkProxy> SystemProxy::queryProxy(const QNetworkProxyQuery &query)
{
    const QString host = query.url().host();
    if (host == QStringLiteral("localhost") || QHostAddress(host).isLoopback()) {
        return {QNetworkProxy(QNetworkProxy::NoProxy)};
    }
    return systemProxyForQuery(query);
}

} // namespace quire
