// The system's proxy for the world, none for this machine itself.

#pragma once

#include <QNetworkProxyFactory>

namespace quire {

class SystemProxy final : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override;
};

} // namespace quire
