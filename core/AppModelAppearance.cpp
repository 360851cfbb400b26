// The look of the window, changed as the reader tries it out.

#include "core/AppModelAssign.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"
#include "records/Text.h"

#include <QCoroFuture>

#include <QPointer>

namespace quire {

void AppModel::previewAccentAppearance(
    AccentColorChoice accentColor, bool usesCustomAccentColor, CustomAccentColor customAccentColor)
{
    SettingsSnapshot settings = m_settings;
    settings.accentColor = accentColor;
    settings.usesCustomAccentColor = usesCustomAccentColor;
    settings.customAccentColor = customAccentColor;
    assign(m_settings, settings, &AppModel::settingsChanged);
    saveLaunchCache();
}

QCoro::Task<> AppModel::saveAccentAppearance(
    AccentColorChoice accentColor, bool usesCustomAccentColor, CustomAccentColor customAccentColor)
{
    previewAccentAppearance(accentColor, usesCustomAccentColor, customAccentColor);
    return saveAppearance({
        {QStringLiteral("accentColor"), rawValue(accentColor)},
        {QStringLiteral("usesCustomAccentColor"), usesCustomAccentColor ? QStringLiteral("1") : QStringLiteral("0")},
        {QStringLiteral("customAccentRed"), Text::shortestDecimal(customAccentColor.red)},
        {QStringLiteral("customAccentGreen"), Text::shortestDecimal(customAccentColor.green)},
        {QStringLiteral("customAccentBlue"), Text::shortestDecimal(customAccentColor.blue)},
    });
}

QCoro::Task<> AppModel::saveSidebarAppearance(SidebarAppearance appearance)
{
    SettingsSnapshot settings = m_settings;
    settings.sidebarAppearance = appearance;
    assign(m_settings, settings, &AppModel::settingsChanged);
    saveLaunchCache();
    return saveAppearance({{QStringLiteral("sidebarAppearance"), rawValue(appearance)}});
}

QCoro::Task<> AppModel::saveAppearance(SettingsMap values)
{
    const QPointer self(this);
    std::optional<QString> failure;
    try {
        const auto saving = m_store->setSettings(values);
        co_await saving;
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (!self || !failure) {
        co_return;
    }
    setNotice(AppNotice::error(QStringLiteral("Appearance Could Not Be Saved"), *failure));
    try {
        const auto loading = reload(); // back to what is stored
        co_await loading;
    } catch (const std::exception &) {
        // The notice has told that the library cannot be reached.
    }
}

} // namespace quire
