#include "persistence/LiveLibrary.h"

#include "persistence/SettingsRows.h"
#include "records/Text.h"

namespace quire {

std::optional<QString> LiveLibrary::setting(const QString &key) const
{
    return SettingsRows::value(database, credentials, key);
}

std::optional<qint64> LiveLibrary::integerSetting(const QString &key) const
{
    const auto text = setting(key);
    return text ? Text::decimalInteger(*text) : std::nullopt;
}

void LiveLibrary::setSetting(const QString &key, const QString &value) const
{
    SettingsRows::set(database, credentials, key, value);
}

} // namespace quire
