// The tabs of the settings window, in their order.
//
// Thread: plain values and pure functions, any thread.

#pragma once

#include "QuireApp/ViewModels/ChoiceListModel.h"

#include <QList>
#include <QString>

#include <array>

namespace quire {

enum class QuireSettingsTab {
    Appearance,
    Libraries,
    Goodreads,
    Publishing,
    Data,
};

inline constexpr std::array allQuireSettingsTabs{QuireSettingsTab::Appearance, QuireSettingsTab::Libraries,
    QuireSettingsTab::Goodreads, QuireSettingsTab::Publishing, QuireSettingsTab::Data};

QString rawValue(QuireSettingsTab tab); // the word by which the views know it
QString label(QuireSettingsTab tab);

QList<Choice> settingsTabChoices();

} // namespace quire
