#include "testing/LoopbackReply.h"

namespace quire::testing {

LoopbackReply LoopbackReply::ok(QByteArray body, QByteArray contentType)
{
    LoopbackReply reply;
    reply.body = std::move(body);
    reply.headers.append({"Content-Type", std::move(contentType)});
    return reply;
}

LoopbackReply LoopbackReply::withStatus(int status, QByteArray body)
{
    LoopbackReply reply;
    reply.status = status;
    reply.body = std::move(body);
    return reply;
}

LoopbackReply LoopbackReply::redirect(const QByteArray &location, int status)
{
    return withStatus(status).header("Location", location);
}

LoopbackReply LoopbackReply::raw(QByteArray bytes)
{
    LoopbackReply reply;
    reply.body = std::move(bytes);
    reply.framing = Framing::Raw;
    reply.hangsUp = true;
    return reply;
}

LoopbackReply LoopbackReply::silence()
{
    LoopbackReply reply;
    reply.framing = Framing::Nothing;
    return reply;
}

LoopbackReply LoopbackReply::hangUp()
{
    LoopbackReply reply = silence();
    reply.hangsUp = true;
    return reply;
}

LoopbackReply LoopbackReply::header(QByteArray name, QByteArray value) const
{
    LoopbackReply reply = *this;
    reply.headers.append({std::move(name), std::move(value)});
    return reply;
}

LoopbackReply LoopbackReply::chunked() const
{
    LoopbackReply reply = *this;
    reply.framing = Framing::Chunked;
    return reply;
}

LoopbackReply LoopbackReply::untilClose() const
{
    LoopbackReply reply = *this;
    reply.framing = Framing::UntilClose;
    reply.hangsUp = true;
    return reply;
}

LoopbackReply LoopbackReply::after(std::chrono::milliseconds delayBeforeHead) const
{
    LoopbackReply reply = *this;
    reply.delay = delayBeforeHead;
    return reply;
}

LoopbackReply LoopbackReply::dripping(std::chrono::milliseconds interval, qsizetype bytesAtOnce) const
{
    LoopbackReply reply = *this;
    reply.dripInterval = interval;
    reply.dripSize = bytesAtOnce;
    return reply;
}

LoopbackReply LoopbackReply::cutAfter(qsizetype bytesOfBody) const
{
    LoopbackReply reply = *this;
    reply.cut = bytesOfBody;
    reply.hangsUp = true;
    return reply;
}

LoopbackReply LoopbackReply::repeatedForEver() const
{
    LoopbackReply reply = *this;
    reply.endless = true;
    if (reply.framing == Framing::ContentLength) {
        reply.framing = Framing::Chunked;
    }
    return reply;
}

} // namespace quire::testing
