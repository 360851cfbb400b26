// One fetch of the manifest, in a session that lives as long as it does: nothing
// is kept on disk, no cookie, no cache, no header of the program's own. The body
// is read up to its limit and not a byte further.
//
// Thread: the interface thread; cancelLater() from any.

#pragma once

#include <QByteArray>
#include <QFuture>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QPromise>
#include <QUrl>

#include <exception>

namespace quire {

class UpdateDownload final : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 maximumBytes = 65'536;

    explicit UpdateDownload(const QUrl &address);
    ~UpdateDownload() override;

    // The whole body, once. Finishes with Cancelled; QuireUpdateCheckError for a
    // body beyond the limit, whatever the status, and else for a status outside
    // 200 to 299 or what is no HTTP; TransportError for what never became a
    // whole answer.
    QFuture<QByteArray> body() const { return m_promise.future(); }

    // Ends the fetch, unless it has ended.
    void expire(); // as timed out
    void cancelLater(); // as Cancelled

private:
    void read();
    void end();
    void succeed();
    void fail(std::exception_ptr failure);
    void dropReply();

    QNetworkAccessManager m_session;
    QPromise<QByteArray> m_promise;
    QNetworkReply *m_reply = nullptr; // owned, see dropReply()
    QByteArray m_body;
    bool m_ended = false;
};

} // namespace quire
