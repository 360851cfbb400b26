// The calls that a publication makes to Netlify, each with the reader's token and
// its own time-out. The token is in no failure's description, even when the
// service repeats it.
//
// Thread: the interface thread. The object and the network outlive every task.

#pragma once

#include "publishing/NetlifyAnswer.h"

#include <QByteArray>
#include <QCoroTask>
#include <QJsonObject>
#include <QString>
#include <QUrl>

#include <chrono>
#include <stop_token>

namespace quire {

class NetworkClient;
struct NetworkRequest;

class NetlifyAPI
{
public:
    // For each call, in all.
    static constexpr std::chrono::seconds requestTimeout{30};

    // endpoint: scheme and authority; empty makes every call fail as an invalid
    // URL.
    NetlifyAPI(NetworkClient &network, QUrl endpoint, QString token, std::stop_token stop);

    // One call that is answered in JSON. path: as it stands after the endpoint.
    // json: sent with every method but GET. Failures: ServiceError http outside 200
    // to 299, in the service's words when it has some, and invalidURL; those of
    // NetworkClient.
    QCoro::Task<NetlifyAnswer> netlifyJSON(QByteArray method, QString path, QJsonObject json = {});

    // Sends the one file that a deploy asks for. Failures: as above.
    QCoro::Task<> uploadPage(QString deployID, QByteArray html);

private:
    NetworkRequest request(const QByteArray &method, const QString &path, const QByteArray &contentType) const;

    NetworkClient &m_network;
    QUrl m_endpoint;
    QString m_token;
    std::stop_token m_stop;
};

} // namespace quire
