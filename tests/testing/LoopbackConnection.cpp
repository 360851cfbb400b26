#include "testing/LoopbackConnection.h"

#include <algorithm>
#include <limits>

namespace quire::testing {

namespace {

constexpr qsizetype maximumHead = 64 * 1024;
constexpr qsizetype maximumBody = 64 * 1024 * 1024;
constexpr qsizetype pieceSize = 64 * 1024;
constexpr qint64 maximumWaiting = 256 * 1024;

} // namespace

LoopbackConnection::LoopbackConnection(LoopbackServer &server, QTcpSocket *socket)
    : m_server(server)
    , m_socket(socket)
{
    m_socket->setParent(nullptr);
    m_delay.setSingleShot(true);
    m_delay.setTimerType(Qt::PreciseTimer);
    m_drip.setTimerType(Qt::PreciseTimer);
    connect(&m_delay, &QTimer::timeout, this, &LoopbackConnection::answerNow);
    connect(&m_drip, &QTimer::timeout, this, [this] { sendPiece(m_reply.dripSize); });
    connect(m_socket.get(), &QTcpSocket::readyRead, this, &LoopbackConnection::read);
    connect(m_socket.get(), &QTcpSocket::bytesWritten, this, &LoopbackConnection::sendMore);
    connect(m_socket.get(), &QTcpSocket::disconnected, this, &LoopbackConnection::ended);
    QMetaObject::invokeMethod(this, &LoopbackConnection::read, Qt::QueuedConnection);
}

LoopbackConnection::~LoopbackConnection()
{
    m_socket->disconnect(this);
    m_socket->abort();
}

void LoopbackConnection::read()
{
    m_received += m_socket->readAll();
    if (m_received.size() > maximumHead + maximumBody) {
        m_socket->abort();
        return;
    }
    LoopbackRequest request;
    if (m_answering || !takeRequest(request)) {
        return;
    }
    m_reply = m_server.answer(request);
    m_answering = true;
    m_sent = 0;
    m_headOnly = request.method == "HEAD" || m_reply.status < 200 || m_reply.status == 204 || m_reply.status == 304;
    m_delay.start(m_reply.delay);
}

// Moves a complete request out of what was received; false when there is none.
bool LoopbackConnection::takeRequest(LoopbackRequest &request)
{
    const qsizetype headEnd = m_received.indexOf("\r\n\r\n");
    if (headEnd < 0) {
        if (m_received.size() > maximumHead) {
            m_socket->abort();
        }
        return false;
    }
    QList<QByteArray> lines = m_received.first(headEnd).split('\n');
    const QList<QByteArray> words = lines.takeFirst().trimmed().split(' ');
    if (words.size() != 3) {
        m_socket->abort();
        return false;
    }
    for (const QByteArray &line : std::as_const(lines)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.first(std::max<qsizetype>(colon, 0)).toLower(), line.sliced(colon + 1).trimmed());
    }
    const qsizetype bodySize = request.headers.value("content-length").toLongLong();
    const qsizetype bodyStart = headEnd + 4;
    if (bodySize < 0 || bodySize > maximumBody) {
        m_socket->abort();
        return false;
    }
    if (m_received.size() - bodyStart < bodySize) {
        return false;
    }
    const QUrl target = QUrl::fromEncoded(words.at(1));
    request.method = words.at(0);
    request.target = words.at(1);
    request.path = target.path(QUrl::FullyDecoded);
    request.query = target.query(QUrl::FullyEncoded).toLatin1();
    request.body = m_received.sliced(bodyStart, bodySize);
    m_received.remove(0, bodyStart + bodySize);
    return true;
}

void LoopbackConnection::answerNow()
{
    if (m_reply.framing == LoopbackReply::Framing::Nothing) {
        if (m_reply.hangsUp) {
            m_socket->disconnectFromHost();
        }
        return; // silent for as long as the client likes
    }
    if (m_reply.framing != LoopbackReply::Framing::Raw) {
        sendHead();
    }
    if (m_reply.dripInterval) {
        m_drip.start(*m_reply.dripInterval);
    } else {
        m_flowing = true;
        sendMore();
    }
}

void LoopbackConnection::sendHead()
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(m_reply.status) + " As told\r\n";
    for (const auto &[name, value] : std::as_const(m_reply.headers)) {
        head += name + ": " + value + "\r\n";
    }
    if (m_reply.framing == LoopbackReply::Framing::Chunked) {
        head += "Transfer-Encoding: chunked\r\n";
    } else if (m_reply.framing == LoopbackReply::Framing::ContentLength) {
        head += "Content-Length: " + QByteArray::number(m_reply.body.size()) + "\r\n";
    }
    if (m_reply.hangsUp) {
        head += "Connection: close\r\n";
    }
    m_socket->write(head + "\r\n");
}

void LoopbackConnection::sendMore()
{
    while (m_flowing && m_socket->bytesToWrite() < maximumWaiting && sendPiece(pieceSize)) { }
}

// Sends the next bytes of the body, or ends the reply when there are none;
// true when more may follow.
bool LoopbackConnection::sendPiece(qsizetype maximumSize)
{
    const qsizetype left = bodyBytesLeft();
    if (left == 0) {
        endOfReply();
        return false;
    }
    const qsizetype at = m_sent % m_reply.body.size();
    const qsizetype size = std::min({maximumSize, left, m_reply.body.size() - at});
    const QByteArray piece = m_reply.body.sliced(at, size);
    m_sent += size;
    if (m_reply.framing == LoopbackReply::Framing::Chunked) {
        m_socket->write(QByteArray::number(size, 16) + "\r\n" + piece + "\r\n");
    } else {
        m_socket->write(piece);
    }
    return true;
}

qsizetype LoopbackConnection::bodyBytesLeft() const
{
    if (m_headOnly || m_reply.body.isEmpty()) {
        return 0;
    }
    const qsizetype whole = m_reply.endless ? std::numeric_limits<qsizetype>::max() : m_reply.body.size();
    return std::min(whole, m_reply.cut.value_or(whole)) - m_sent;
}

void LoopbackConnection::endOfReply()
{
    m_drip.stop();
    m_flowing = false;
    if (m_reply.framing == LoopbackReply::Framing::Chunked && !m_reply.cut && !m_headOnly) {
        m_socket->write("0\r\n\r\n");
    }
    if (m_reply.hangsUp) {
        m_socket->disconnectFromHost(); // once everything is out
        return;
    }
    m_answering = false;
    QMetaObject::invokeMethod(this, &LoopbackConnection::read, Qt::QueuedConnection);
}

} // namespace quire::testing
