// The failure type of the outside services. Its description is what the reader
// sees, as it stands.

#pragma once

#include "reliability/HttpFailure.h"

namespace quire {

class ServiceError final : public HttpFailure
{
public:
    enum class Kind {
        Http,
        Message,
        InvalidURL,
        InvalidResponse,
    };

    // An answer outside 200 to 299. body: the answer's text, shown word for
    // word when it is not empty.
    static ServiceError http(int status, QString body);
    static ServiceError message(QString text);
    static ServiceError invalidURL();
    static ServiceError invalidResponse();

    Kind kind() const { return m_kind; }
    int status() const { return m_status; } // of Http, else 0
    std::optional<int> httpStatus() const override;
    QString description() const override;

private:
    ServiceError(Kind kind, int status, QString text);

    Kind m_kind;
    int m_status;
    QString m_text;
};

} // namespace quire
