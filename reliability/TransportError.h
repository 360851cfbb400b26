// A request that never became an answer: no route, no such host, too late, cut
// short. It keeps what the network layer said, and the class of the failure,
// since the retry policy looks at that.

#pragma once

#include "records/Failure.h"

namespace quire {

class TransportError final : public Failure
{
public:
    enum class Kind {
        // Worth another try.
        TimedOut,
        CannotFindHost,
        CannotConnectToHost,
        NetworkConnectionLost,
        DnsLookupFailed,
        NotConnectedToInternet,
        ResourceUnavailable,
        // Not: trying again would end the same way.
        BodyTooLong,
        TooManyRedirects,
        Other,
    };

    // code: the network layer's own number of the failure, 0 when it was found
    // above that layer. text: its description, shown as it stands.
    TransportError(Kind kind, int code, QString text)
        : m_kind(kind)
        , m_code(code)
        , m_text(std::move(text))
    {
    }

    Kind kind() const { return m_kind; }
    int code() const { return m_code; }
    QString description() const override { return m_text; }

private:
    Kind m_kind;
    int m_code;
    QString m_text;
};

} // namespace quire
