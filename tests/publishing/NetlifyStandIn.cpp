#include "NetlifyStandIn.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace quire::testing {

namespace {

LoopbackReply json(const QJsonObject &object, int status = 200)
{
    LoopbackReply reply = LoopbackReply::ok(QJsonDocument(object).toJson(), "application/json");
    reply.status = status;
    return reply;
}

QByteArray callOf(const LoopbackRequest &request)
{
    return request.method + ' ' + request.path.toUtf8();
}

const QString sitePath = QStringLiteral("/api/v1/sites/");
const QString deployPath = QStringLiteral("/api/v1/deploys/");

} // namespace

NetlifyStandIn::NetlifyStandIn()
{
    m_server.routeEverythingElse([this](const LoopbackRequest &request) { return answer(request); });
}

QByteArrayList NetlifyStandIn::calls() const
{
    QByteArrayList calls;
    for (const LoopbackRequest &request : m_server.requests()) {
        calls.append(callOf(request));
    }
    return calls;
}

qsizetype NetlifyStandIn::count(const QByteArray &callBegin) const
{
    const QByteArrayList all = calls();
    return std::count_if(all.begin(), all.end(), [&](const QByteArray &call) { return call.startsWith(callBegin); });
}

LoopbackReply NetlifyStandIn::answer(const LoopbackRequest &request)
{
    if (insteadOf) {
        if (const auto reply = insteadOf(request)) {
            return *reply;
        }
    }
    const QByteArray call = callOf(request);
    QByteArray longest;
    for (auto at = instead.cbegin(); at != instead.cend(); ++at) {
        if (call.startsWith(at.key()) && at.key().size() > longest.size()) {
            longest = at.key();
        }
    }
    return longest.isEmpty() ? usualAnswer(request) : instead.value(longest);
}

LoopbackReply NetlifyStandIn::usualAnswer(const LoopbackRequest &request)
{
    if (request.path == u"/pages/list/index.html" && request.method == "GET") {
        return LoopbackReply::ok(m_page, "text/html; charset=UTF-8");
    }
    if (request.headers.value("authorization") != "Bearer a-token") {
        return json({{QStringLiteral("code"), 401}, {QStringLiteral("message"), QStringLiteral("Access Denied")}}, 401);
    }
    if (request.path == u"/api/v1/sites" && request.method == "POST") {
        m_sites.insert(QStringLiteral("site-1"));
        LoopbackReply reply = site();
        reply.status = 201;
        return reply;
    }
    if (request.path.startsWith(sitePath)) {
        const QString id = request.path.mid(sitePath.size()).section(u'/', 0, 0);
        if (!m_sites.contains(id)) {
            return json({{QStringLiteral("code"), 404}, {QStringLiteral("message"), QStringLiteral("Not Found")}}, 404);
        }
        return request.method == "POST" ? newDeploy(request) : site();
    }
    if (request.path.startsWith(deployPath)) {
        if (request.method == "PUT") {
            m_files.insert(m_deployed, request.body);
            m_page = request.body;
            return json({});
        }
        return state();
    }
    return LoopbackReply::withStatus(404);
}

LoopbackReply NetlifyStandIn::site() const
{
    QJsonObject site{{QStringLiteral("id"), QStringLiteral("site-1")},
        {QStringLiteral("custom_domain"), QJsonValue::Null}, {QStringLiteral("url"), siteAddress()},
        {QStringLiteral("ssl_url"), siteAddress()}};
    for (auto at = siteMembers.begin(); at != siteMembers.end(); ++at) {
        site.insert(at.key(), at.value());
    }
    return json(site);
}

LoopbackReply NetlifyStandIn::newDeploy(const LoopbackRequest &request)
{
    m_deployed = QJsonDocument::fromJson(request.body)[u"files"][u"/index.html"].toString();
    m_polls = 0;
    QJsonArray required;
    if (m_files.contains(m_deployed)) {
        m_page = m_files.value(m_deployed);
    } else {
        required.append(m_deployed);
    }
    return json({{QStringLiteral("id"), QStringLiteral("deploy-%1").arg(++m_deploys)},
        {QStringLiteral("state"), QStringLiteral("uploading")}, {QStringLiteral("required"), required},
        {QStringLiteral("required_functions"), QJsonValue::Null}});
}

LoopbackReply NetlifyStandIn::state()
{
    const QJsonValue now = states.at(std::min(m_polls++, states.size() - 1));
    return json({{QStringLiteral("id"), QStringLiteral("deploy-%1").arg(m_deploys)}, {QStringLiteral("state"), now}});
}

} // namespace quire::testing
