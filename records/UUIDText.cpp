#include "records/UUIDText.h"

namespace quire::UUIDText {

QString of(const QUuid &uuid)
{
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

QString fresh()
{
    return of(QUuid::createUuid());
}

std::optional<QUuid> parsed(const QString &text)
{
    const QUuid uuid = QUuid::fromString(text);
    // QUuid is content with braces, and with less than a whole UUID.
    return of(uuid).compare(text, Qt::CaseInsensitive) == 0 ? std::optional(uuid) : std::nullopt;
}

} // namespace quire::UUIDText
