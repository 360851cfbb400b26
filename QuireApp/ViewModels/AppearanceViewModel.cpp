#include "QuireApp/ViewModels/AppearanceViewModel.h"

#include "concurrency/Clock.h"
#include "concurrency/Detach.h"
#include "core/AppModel.h"
#include "QuireApp/Theme/QuireThemePalette.h"
#include "QuireApp/ViewModels/AppearanceChoices.h"

#include <QPointer>

#include <chrono>

namespace quire {

namespace {

// A drag over the colour wheel is written once, at its end.
constexpr std::chrono::milliseconds calm{160};

} // namespace

AppearanceViewModel::AppearanceViewModel(
    AppModel &model, Clock &clock, CustomColorPanelPresenter &colorPanel, QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_clock(clock)
    , m_colorPanel(colorPanel)
{
    m_sidebars.setChoices(AppearanceChoices::sidebars());
    m_fonts.setChoices(AppearanceChoices::fonts());
    m_accents.setChoices(
        AppearanceChoices::accents() + QList<Choice>{{customAccent(), QStringLiteral("Custom Color"), QString()}});
    load();
    connect(&m_model, &AppModel::settingsChanged, this, &AppearanceViewModel::followSettings);
}

QString AppearanceViewModel::sidebarAppearance() const
{
    return rawValue(m_sidebarAppearance);
}

QString AppearanceViewModel::interfaceFont() const
{
    return rawValue(m_interfaceFont);
}

QString AppearanceViewModel::accent() const
{
    return m_usesCustomAccentColor ? customAccent() : rawValue(m_accentColor);
}

QString AppearanceViewModel::customAccent()
{
    return QStringLiteral("custom");
}

QColor AppearanceViewModel::customAccentColor() const
{
    return ThemePalette::toColor(m_customAccentColor);
}

QColor AppearanceViewModel::accentColorOf(const QString &word) const
{
    const auto choice = fromRawValue<AccentColorChoice>(word);
    return choice ? ThemePalette::toColor(ThemePalette::color(*choice)) : customAccentColor();
}

void AppearanceViewModel::chooseSidebar(const QString &word)
{
    const auto appearance = fromRawValue<SidebarAppearance>(word);
    if (appearance && *appearance != m_sidebarAppearance && m_model.isReady()) {
        m_sidebarAppearance = *appearance;
        Q_EMIT changed();
        detach(m_model.saveSidebarAppearance(*appearance));
    }
}

void AppearanceViewModel::chooseFont(const QString &word)
{
    const auto font = fromRawValue<InterfaceFontChoice>(word);
    if (font && *font != m_interfaceFont && m_model.isReady()) {
        m_interfaceFont = *font;
        Q_EMIT changed();
    }
}

void AppearanceViewModel::chooseAccent(const QString &word)
{
    const auto choice = fromRawValue<AccentColorChoice>(word);
    const bool isCustom = word == customAccent();
    if ((!choice && !isCustom) || !m_model.isReady()) {
        return;
    }
    if (word != accent()) {
        m_usesCustomAccentColor = isCustom;
        m_accentColor = choice.value_or(m_accentColor);
        Q_EMIT changed();
        scheduleAccentSave();
    }
    if (isCustom) {
        m_colorPanel.show(m_customAccentColor, [self = QPointer(this)](const CustomAccentColor &color) {
            if (self) {
                self->takeCustomColor(color);
            }
        });
    }
}

void AppearanceViewModel::takeCustomColor(const CustomAccentColor &color)
{
    m_usesCustomAccentColor = true; // another may have been chosen while the panel stood open
    m_customAccentColor = color;
    Q_EMIT changed();
    scheduleAccentSave();
}

void AppearanceViewModel::scheduleAccentSave()
{
    m_accentIsToBeSaved = true;
    m_model.previewAccentAppearance(m_accentColor, m_usesCustomAccentColor, m_customAccentColor);
    m_accentSaveTask.start([this](std::stop_token stop) { return saveAccentAfterCalm(stop); });
}

QCoro::Task<> AppearanceViewModel::saveAccentAfterCalm(std::stop_token stop)
{
    const QPointer self(this);
    const auto resting = m_clock.sleep(calm, stop);
    co_await resting;
    if (!self || stop.stop_requested()) {
        co_return;
    }
    const auto saving = saveAccent();
    co_await saving;
}

QCoro::Task<> AppearanceViewModel::saveAccent()
{
    m_accentIsToBeSaved = false;
    return m_model.saveAccentAppearance(m_accentColor, m_usesCustomAccentColor, m_customAccentColor);
}

void AppearanceViewModel::finishAccentSave()
{
    if (m_accentIsToBeSaved) {
        m_accentSaveTask.cancel();
        detach(saveAccent());
    }
}

void AppearanceViewModel::load()
{
    m_interfaceFont = m_model.settings().interfaceFont;
    followSettings();
    Q_EMIT changed();
}

// What is seen is what is chosen, also when it could not be stored and was taken
// back.
void AppearanceViewModel::followSettings()
{
    const auto edit = SettingsEdit::of(m_model.settings());
    m_sidebarAppearance = edit.sidebarAppearance;
    if (!m_accentIsToBeSaved) {
        m_accentColor = edit.accentColor;
        m_usesCustomAccentColor = edit.usesCustomAccentColor;
        m_customAccentColor = edit.customAccentColor;
    }
    Q_EMIT changed();
}

void AppearanceViewModel::enterInto(SettingsEdit &edit) const
{
    edit.sidebarAppearance = m_sidebarAppearance;
    edit.interfaceFont = m_interfaceFont;
    edit.accentColor = m_accentColor;
    edit.usesCustomAccentColor = m_usesCustomAccentColor;
    edit.customAccentColor = m_customAccentColor;
}

} // namespace quire
