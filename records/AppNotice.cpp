#include "records/AppNotice.h"

namespace quire {

AppNotice AppNotice::information(QString title, QString message)
{
    return {Kind::Information, std::move(title), std::move(message)};
}

AppNotice AppNotice::error(QString title, QString message)
{
    return {Kind::Error, std::move(title), std::move(message)};
}

QString AppNotice::id() const
{
    const QString prefix = kind == Kind::Error ? QStringLiteral("error-") : QStringLiteral("info-");
    return prefix + title + QLatin1Char('-') + message;
}

} // namespace quire
