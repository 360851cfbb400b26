// An HTTP/1.1 server on 127.0.0.1 that answers as a test tells it: properly,
// late, byte by byte, cut short, without end, or not in HTTP at all. It records
// every request it was sent.
//
//     LoopbackServer server;
//     server.route(u"/feed", LoopbackReply::ok(feedBytes));
//     server.route(u"/flaky", {LoopbackReply::withStatus(503), LoopbackReply::ok("at last")});
//     server.route(u"/echo", [](const LoopbackRequest &r) { return LoopbackReply::ok(r.body); });
//     ... server.url(u"/feed") ... server.requests() ...
//
// Thread: the test's. It answers while the test's event loop runs, which
// await() and eventually() do; so handlers may touch the test's variables.
//
// Bounds: 64 connections at once, heads of 64 KiB, request bodies of 64 MiB;
// of an answer at most about 256 KiB wait in memory for a slow reader.

#pragma once

#include "testing/LoopbackReply.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QTcpServer>
#include <QUrl>

#include <functional>
#include <initializer_list>

namespace quire::testing {

class LoopbackConnection;

struct LoopbackRequest
{
    QByteArray method;
    QByteArray target; // as sent: path and query, still encoded
    QString path; // decoded
    QByteArray query; // as sent, without the question mark
    QHash<QByteArray, QByteArray> headers; // by lower-case name
    QByteArray body;

    // The decoded value of the first query item of that name; a plus sign is a
    // plus sign.
    QString queryValue(const QString &name) const;
};

using LoopbackHandler = std::function<LoopbackReply(const LoopbackRequest &)>;

class LoopbackServer final : public QObject
{
    Q_OBJECT

public:
    // Listens on a free port. Ends the test program if there is none.
    LoopbackServer();
    ~LoopbackServer() override;

    // "http://127.0.0.1:<port>", without and with a path. The path is taken as
    // encoded, and may carry a query.
    QUrl origin() const;
    QUrl url(QStringView path) const;

    // What requests for `path` (decoded, without query) get, whatever their
    // method. Of a list each request takes the next, and the last stays. A
    // later call for the same path replaces the former.
    void route(QStringView path, LoopbackReply reply);
    void route(QStringView path, std::initializer_list<LoopbackReply> replies);
    void route(QStringView path, LoopbackHandler handler);

    // What all other requests get; 404 with an empty body until it is set.
    void routeEverythingElse(LoopbackHandler handler);

    // Every request since the start or the last forgetRequests(), in the order
    // in which they were complete.
    const QList<LoopbackRequest> &requests() const { return m_requests; }
    void forgetRequests() { m_requests.clear(); }

    // Connections that are open now.
    qsizetype connections() const { return m_connections.size(); }

    // Hangs up everywhere and refuses from now on; url() stays as it was.
    void refuse();

    // An origin nobody listens at.
    static QUrl refusingOrigin();

private:
    friend class LoopbackConnection;
    void accept();
    LoopbackReply answer(const LoopbackRequest &request);

    QTcpServer m_listener;
    quint16 m_port = 0;
    QHash<QString, LoopbackHandler> m_routes;
    LoopbackHandler m_everythingElse;
    QList<LoopbackRequest> m_requests;
    QList<LoopbackConnection *> m_connections;
};

} // namespace quire::testing
