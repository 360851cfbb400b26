// One connection of a LoopbackServer: reads requests, one after the other, and
// plays the server's answers. Of interest to the server only.

#pragma once

#include "testing/LoopbackServer.h"

#include <QTcpSocket>
#include <QTimer>

#include <memory>

namespace quire::testing {

class LoopbackConnection final : public QObject
{
    Q_OBJECT

public:
    LoopbackConnection(LoopbackServer &server, QTcpSocket *socket); // takes the socket
    ~LoopbackConnection() override;

Q_SIGNALS:
    void ended();

private:
    void read();
    bool takeRequest(LoopbackRequest &request);

    void answerNow();
    void sendHead();
    void sendMore();
    bool sendPiece(qsizetype maximumSize);
    void endOfReply();
    qsizetype bodyBytesLeft() const;

    LoopbackServer &m_server;
    std::unique_ptr<QTcpSocket> m_socket;
    QByteArray m_received;
    LoopbackReply m_reply;
    bool m_answering = false; // from the request to the end of the reply
    bool m_flowing = false; // pieces go out as fast as they are read
    bool m_headOnly = false; // a HEAD request, or a status without a body
    qsizetype m_sent = 0; // bytes of the body
    QTimer m_delay;
    QTimer m_drip;
};

} // namespace quire::testing
