#include "core/UserDefaults.h"

#include "records/DateParser.h"

#include <QSettings>

namespace quire {

namespace {

const QString lastUpdateCheckKey = QStringLiteral("quireLastAutomaticUpdateCheck");
const QString windowSizeKey = QStringLiteral("windowSize");
const QString windowIsMaximizedKey = QStringLiteral("windowIsMaximized");

} // namespace

UserDefaults::UserDefaults(QString file)
    : m_file(std::move(file))
{
}

std::optional<Instant> UserDefaults::lastUpdateCheck() const
{
    const QSettings settings(m_file, QSettings::IniFormat);
    const QString text = settings.value(lastUpdateCheckKey).toString();
    // A date in another form was not put there by setLastUpdateCheck().
    const auto instant = DateParser::date(text);
    return instant && DateParser::iso8601(*instant) == text ? instant : std::nullopt;
}

void UserDefaults::setLastUpdateCheck(Instant instant) const
{
    QSettings settings(m_file, QSettings::IniFormat);
    settings.setValue(lastUpdateCheckKey, DateParser::iso8601(instant));
}

std::optional<WindowShape> UserDefaults::windowShape() const
{
    const QSettings settings(m_file, QSettings::IniFormat);
    const QSize size = settings.value(windowSizeKey).toSize();
    if (size.isEmpty()) {
        return std::nullopt;
    }
    return WindowShape{.size = size, .isMaximized = settings.value(windowIsMaximizedKey).toBool()};
}

void UserDefaults::setWindowShape(const WindowShape &shape) const
{
    QSettings settings(m_file, QSettings::IniFormat);
    settings.setValue(windowSizeKey, shape.size);
    settings.setValue(windowIsMaximizedKey, shape.isMaximized);
}

} // namespace quire
