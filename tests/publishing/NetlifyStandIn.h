// The part of Netlify that a publication talks to, on this machine: it makes
// sites, takes deploys by digest, keeps the files it is sent, lets a deploy take
// its time, and serves the page. A test may make any of it go wrong.
//
// Thread: the test's.

#pragma once

#include "testing/LoopbackServer.h"

#include <QByteArrayList>
#include <QHash>
#include <QJsonObject>
#include <QSet>

#include <optional>

namespace quire::testing {

class NetlifyStandIn
{
public:
    NetlifyStandIn();

    // Of the API: what a publication is told as the service's address.
    QUrl origin() const { return m_server.origin(); }
    // Of the page, without "/index.html".
    QString siteAddress() const { return m_server.url(u"/pages/list").toString(); }

    // A site that was made before.
    void knowSite(const QString &id) { m_sites.insert(id); }

    // What goes otherwise than well. -------------------------------------------------

    // What a call gets instead of its answer, by how it begins, as in
    // "GET /api/v1/deploys/"; the longest that fits.
    QHash<QByteArray, LoopbackReply> instead;
    // The same, decided when it is asked; nothing for the usual answer.
    std::function<std::optional<LoopbackReply>(const LoopbackRequest &)> insteadOf;
    // Members of a site's description, over the usual ones.
    QJsonObject siteMembers;
    // What a deploy's state is, poll by poll; the last one stays.
    QList<QJsonValue> states{QStringLiteral("ready")};

    // What happened. --------------------------------------------------------------------

    // Method and path of every call, in order.
    QByteArrayList calls() const;
    const QList<LoopbackRequest> &requests() const { return m_server.requests(); }
    void forgetRequests() { m_server.forgetRequests(); }
    qsizetype count(const QByteArray &callBegin) const;

    // The page that readers are served.
    const QByteArray &page() const { return m_page; }

private:
    LoopbackReply answer(const LoopbackRequest &request);
    LoopbackReply usualAnswer(const LoopbackRequest &request);
    LoopbackReply site() const;
    LoopbackReply newDeploy(const LoopbackRequest &request);
    LoopbackReply state();

    LoopbackServer m_server;
    QSet<QString> m_sites;
    QHash<QString, QByteArray> m_files; // by SHA-1
    QString m_deployed; // SHA-1 of the newest deploy
    int m_deploys = 0;
    QByteArray m_page;
    qsizetype m_polls = 0;
};

} // namespace quire::testing
