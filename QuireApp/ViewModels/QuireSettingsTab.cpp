#include "QuireApp/ViewModels/QuireSettingsTab.h"

namespace quire {

QString label(QuireSettingsTab tab)
{
    switch (tab) {
    case QuireSettingsTab::Appearance:
        return QStringLiteral("Appearance");
    case QuireSettingsTab::Libraries:
        return QStringLiteral("Libraries");
    case QuireSettingsTab::Goodreads:
        return QStringLiteral("Goodreads");
    case QuireSettingsTab::Publishing:
        return QStringLiteral("Publishing");
    case QuireSettingsTab::Data:
        return QStringLiteral("Data");
    }
    Q_UNREACHABLE();
}

QString rawValue(QuireSettingsTab tab)
{
    return label(tab).toLower();
}

QList<Choice> settingsTabChoices()
{
    QList<Choice> choices;
    for (const QuireSettingsTab tab : allQuireSettingsTabs) {
        choices.append({rawValue(tab), label(tab), QString()});
    }
    return choices;
}

} // namespace quire
