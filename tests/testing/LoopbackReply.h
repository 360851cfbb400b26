// What a LoopbackServer does with one request, as a plain value. Start from one
// of the makers and refine:
//
//     LoopbackReply::ok(bytes).chunked().dripping(50ms).cutAfter(100)

#pragma once

#include <QByteArray>
#include <QList>

#include <chrono>
#include <optional>
#include <utility>

namespace quire::testing {

struct LoopbackReply
{
    enum class Framing {
        ContentLength,
        Chunked,
        UntilClose, // no length given; the end of the connection ends the body
        Raw, // `body` is everything that is sent, status line included
        Nothing, // not a byte
    };

    int status = 200;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
    Framing framing = Framing::ContentLength;
    std::chrono::milliseconds delay{0}; // before the first byte
    std::optional<std::chrono::milliseconds> dripInterval; // between two pieces of the body
    qsizetype dripSize = 1;
    std::optional<qsizetype> cut; // bytes of the body after which the server hangs up
    bool endless = false; // the body again and again
    bool hangsUp = false; // closes when all is sent

    // Makers. ---------------------------------------------------------------

    static LoopbackReply ok(QByteArray body, QByteArray contentType = "application/xml; charset=utf-8");
    static LoopbackReply withStatus(int status, QByteArray body = {});
    static LoopbackReply redirect(const QByteArray &location, int status = 302);
    // Any bytes, and then the end of the connection.
    static LoopbackReply raw(QByteArray bytes);
    // Takes the request and says nothing, with the connection open.
    static LoopbackReply silence();
    // Takes the request and closes the connection.
    static LoopbackReply hangUp();

    // Refinements, each on a copy. ------------------------------------------

    LoopbackReply header(QByteArray name, QByteArray value) const;
    LoopbackReply chunked() const;
    LoopbackReply untilClose() const;
    LoopbackReply after(std::chrono::milliseconds delayBeforeHead) const;
    LoopbackReply dripping(std::chrono::milliseconds interval, qsizetype bytesAtOnce = 1) const;
    // The head promises the whole body, or for a chunked one no end comes.
    LoopbackReply cutAfter(qsizetype bytesOfBody) const;
    // Needs a body, and turns a Content-Length framing into a chunked one.
    LoopbackReply repeatedForEver() const;
};

} // namespace quire::testing
