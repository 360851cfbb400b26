// The failure of an update check that the answer itself is to blame for. What
// the network or the reading of JSON fails with travels beside it, unchanged.

#pragma once

#include "records/Failure.h"

namespace quire {

class QuireUpdateCheckError final : public Failure
{
public:
    static QuireUpdateCheckError invalidAddress()
    {
        return QuireUpdateCheckError(QStringLiteral("Quire’s update address is invalid."));
    }
    static QuireUpdateCheckError invalidResponse()
    {
        return QuireUpdateCheckError(QStringLiteral("The update server returned an invalid response."));
    }
    static QuireUpdateCheckError unavailable()
    {
        return QuireUpdateCheckError(QStringLiteral("The update server is unavailable."));
    }
    static QuireUpdateCheckError invalidDownloadAddress()
    {
        return QuireUpdateCheckError(QStringLiteral("The update server returned an invalid download address."));
    }

    const QString &message() const { return m_message; }
    QString description() const override { return m_message; }

private:
    explicit QuireUpdateCheckError(QString message)
        : m_message(std::move(message))
    {
    }

    QString m_message;
};

} // namespace quire
