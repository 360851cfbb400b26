#include "testing/LoopbackServer.h"

#include "testing/LoopbackConnection.h"

#include <QUrlQuery>

#include <memory>

namespace quire::testing {

namespace {

constexpr qsizetype maximumConnections = 64;

} // namespace

QString LoopbackRequest::queryValue(const QString &name) const
{
    const QUrlQuery items(QString::fromLatin1(query));
    return items.queryItemValue(name, QUrl::FullyDecoded);
}

LoopbackServer::LoopbackServer()
{
    if (!m_listener.listen(QHostAddress::LocalHost)) {
        qFatal("No free port on the loopback interface.");
    }
    m_port = m_listener.serverPort();
    connect(&m_listener, &QTcpServer::newConnection, this, &LoopbackServer::accept);
}

LoopbackServer::~LoopbackServer()
{
    refuse();
}

QUrl LoopbackServer::origin() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(m_port));
}

QUrl LoopbackServer::url(QStringView path) const
{
    return QUrl(origin().toString() + path.toString());
}

void LoopbackServer::route(QStringView path, LoopbackReply reply)
{
    route(path, [reply = std::move(reply)](const LoopbackRequest &) { return reply; });
}

void LoopbackServer::route(QStringView path, std::initializer_list<LoopbackReply> replies)
{
    const auto left = std::make_shared<QList<LoopbackReply>>(replies);
    Q_ASSERT(!left->isEmpty());
    route(path, [left](const LoopbackRequest &) { return left->size() > 1 ? left->takeFirst() : left->first(); });
}

void LoopbackServer::route(QStringView path, LoopbackHandler handler)
{
    m_routes[path.toString()] = std::move(handler);
}

void LoopbackServer::routeEverythingElse(LoopbackHandler handler)
{
    m_everythingElse = std::move(handler);
}

void LoopbackServer::refuse()
{
    m_listener.close();
    qDeleteAll(std::exchange(m_connections, {}));
}

QUrl LoopbackServer::refusingOrigin()
{
    const LoopbackServer closedSoon;
    return closedSoon.origin();
}

void LoopbackServer::accept()
{
    while (QTcpSocket *socket = m_listener.nextPendingConnection()) {
        if (m_connections.size() == maximumConnections) {
            delete socket;
            continue;
        }
        auto *connection = new LoopbackConnection(*this, socket);
        m_connections.append(connection);
        connect(connection, &LoopbackConnection::ended, this, [this, connection] {
            m_connections.removeOne(connection);
            connection->deleteLater();
        });
    }
}

LoopbackReply LoopbackServer::answer(const LoopbackRequest &request)
{
    m_requests.append(request);
    const auto found = m_routes.constFind(request.path);
    if (found != m_routes.cend()) {
        const LoopbackHandler handler = *found; // it may replace its own route
        return handler(request);
    }
    return m_everythingElse ? m_everythingElse(request) : LoopbackReply::withStatus(404);
}

} // namespace quire::testing
