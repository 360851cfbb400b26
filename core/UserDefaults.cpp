#include "core/UserDefaults.h"

#include "records/DateParser.h"

#include <QSettings>

namespace quire {

namespace {

const QString lastUpdateCheckKey = QStringLiteral("quireLastAutomaticUpdateCheck");

} // namespace

UserDefaults::UserDefaults(QString file)
    : m_file(std::move(file))
{
}

std::optional<Instant> UserDefaults::lastUpdateCheck() const
{
    const QSettings settings(m_file, QSettings::IniFormat);
    return DateParser::date(settings.value(lastUpdateCheckKey).toString());
}

void UserDefaults::setLastUpdateCheck(Instant instant) const
{
    QSettings settings(m_file, QSettings::IniFormat);
    settings.setValue(lastUpdateCheckKey, DateParser::iso8601(instant));
}

} // namespace quire
