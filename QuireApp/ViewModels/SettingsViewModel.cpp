#include "QuireApp/ViewModels/SettingsViewModel.h"

#include "concurrency/Detach.h"
#include "core/AppModel.h"
#include "QuireApp/ViewModels/LibraryTexts.h"

#include <QPointer>

namespace quire {

SettingsViewModel::SettingsViewModel(AppModel &model, QUrl helpHost, QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_helpHost(std::move(helpHost))
    , m_selectedTab(QStringLiteral("goodreads"))
    , m_edit(SettingsEdit::of(model.settings()))
{
    m_tabs.setChoices({{m_selectedTab, QStringLiteral("Goodreads"), QString()}});
    connect(&m_model, &AppModel::settingsChanged, this, &SettingsViewModel::settingsChanged);
}

void SettingsViewModel::selectTab(const QString &word)
{
    if (word != m_selectedTab && m_tabs.rowOf(word) >= 0) {
        m_selectedTab = word;
        Q_EMIT selectedTabChanged();
    }
}

void SettingsViewModel::setGoodreadsUserID(const QString &text)
{
    if (text != m_edit.goodreadsUserID) {
        m_edit.goodreadsUserID = text;
        Q_EMIT editChanged();
    }
}

void SettingsViewModel::setGoodreadsKey(const QString &text)
{
    if (text != m_edit.goodreadsKey) {
        m_edit.goodreadsKey = text;
        Q_EMIT editChanged();
    }
}

QString SettingsViewModel::goodreadsKeyPrompt() const
{
    return m_model.settings().goodreadsRSSKeySet ? QStringLiteral("Saved; enter a new key to replace it")
                                                 : QStringLiteral("RSS key from Goodreads");
}

QUrl SettingsViewModel::help(const QString &anchor) const
{
    QUrl page = m_helpHost;
    page.setPath(QStringLiteral("/quire/help.html"));
    page.setFragment(anchor);
    return page;
}

QUrl SettingsViewModel::goodreadsUserIDHelp() const
{
    return help(QStringLiteral("goodreads-setup"));
}

QUrl SettingsViewModel::goodreadsKeyHelp() const
{
    return help(QStringLiteral("rss-setup"));
}

QString SettingsViewModel::lastUpdatedText() const
{
    return LibraryTexts::lastUpdated(m_model.settings().publishLastRun);
}

void SettingsViewModel::load()
{
    m_edit = SettingsEdit::of(m_model.settings());
    Q_EMIT editChanged();
}

void SettingsViewModel::save()
{
    if (!m_isSaving) {
        detach(saveEdit(m_edit));
    }
}

QCoro::Task<> SettingsViewModel::saveEdit(SettingsEdit edit)
{
    const QPointer<SettingsViewModel> self(this);
    setSaving(true);
    const auto saving = m_model.saveSettings(std::move(edit));
    const bool isSaved = co_await saving;
    if (!self) {
        co_return;
    }
    setSaving(false);
    if (isSaved) {
        Q_EMIT saved();
    }
}

void SettingsViewModel::setSaving(bool saving)
{
    if (saving != m_isSaving) {
        m_isSaving = saving;
        Q_EMIT savingChanged();
    }
}

} // namespace quire
