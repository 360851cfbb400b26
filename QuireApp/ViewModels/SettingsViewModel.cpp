#include "QuireApp/ViewModels/SettingsViewModel.h"

#include "concurrency/Detach.h"
#include "core/AppModel.h"
#include "persistence/AppDirectories.h"
#include "QuireApp/ViewModels/AppearanceViewModel.h"
#include "QuireApp/ViewModels/LibraryTexts.h"
#include "QuireApp/ViewModels/QuireSettingsTab.h"

#include <QPointer>

namespace quire {

namespace {

struct SettingPlace
{
    QuireSettingsTab tab;
    QString property;
};

SettingPlace placeOf(FallibleSetting setting)
{
    switch (setting) {
    case FallibleSetting::PublishInterval:
        return {QuireSettingsTab::Publishing, QStringLiteral("publishInterval")};
    case FallibleSetting::LocalPublishPath:
        return {QuireSettingsTab::Publishing, QStringLiteral("localPublishPath")};
    case FallibleSetting::BackupInterval:
        return {QuireSettingsTab::Data, QStringLiteral("backupInterval")};
    case FallibleSetting::MaximumBackupFiles:
        return {QuireSettingsTab::Data, QStringLiteral("maximumBackupFiles")};
    case FallibleSetting::BackupPath:
        return {QuireSettingsTab::Data, QStringLiteral("backupPath")};
    case FallibleSetting::DatabaseFolderPath:
        return {QuireSettingsTab::Data, QStringLiteral("databaseFolderPath")};
    }
    Q_UNREACHABLE();
}

} // namespace

SettingsViewModel::SettingsViewModel(AppModel &model, AppearanceViewModel &appearance, QUrl helpHost, QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_appearance(appearance)
    , m_helpHost(std::move(helpHost))
    , m_selectedTab(rawValue(allQuireSettingsTabs.front()))
    , m_edit(SettingsEdit::of(model.settings()))
{
    m_tabs.setChoices(settingsTabChoices());
    // What a window shows that was opened before are no settings of the library.
    connect(&m_model, &AppModel::isReadyChanged, this, &SettingsViewModel::load);
    connect(&m_model, &AppModel::isReadyChanged, this, &SettingsViewModel::isReadyChanged);
    connect(&m_model, &AppModel::settingsChanged, this, &SettingsViewModel::settingsChanged);
    connect(&m_model, &AppModel::audibleAvailabilityChanged, this, &SettingsViewModel::audibleChanged);
}

bool SettingsViewModel::isReady() const
{
    return m_model.isReady();
}

void SettingsViewModel::selectTab(const QString &word)
{
    if (word != m_selectedTab && m_tabs.rowOf(word) >= 0) {
        m_selectedTab = word;
        Q_EMIT selectedTabChanged();
    }
}

template<typename Value>
void SettingsViewModel::enter(Value SettingsEdit::*buffer, const std::type_identity_t<Value> &value)
{
    if (value != m_edit.*buffer) {
        m_edit.*buffer = value;
        Q_EMIT editChanged();
    }
}

bool SettingsViewModel::isAudibleInstalled() const
{
    return m_model.audibleAvailability().isInstalled();
}

QString SettingsViewModel::audibleDetail() const
{
    return m_model.audibleAvailability().detail();
}

QString SettingsViewModel::audiblePermissionText() const
{
    if (!isAudibleInstalled()) {
        return {};
    }
    return m_model.audibleAvailability().libraryURL
        ? QStringLiteral("macOS may ask before Quire reads Audible data. Choose Allow. If macOS reports Quire was "
                         "blocked, enable Quire in System Settings › Privacy & Security (usually Full Disk Access), "
                         "then quit and reopen Quire.")
        : QStringLiteral("First sync permission: macOS may report that Quire was blocked from data belonging to "
                         "another app. Choose Allow. If access remains blocked, open System Settings › Privacy & "
                         "Security, enable Quire in the privacy section macOS presents (usually Full Disk Access), "
                         "quit and reopen Quire, then click Grant Access.");
}

void SettingsViewModel::setShowBooksSection(bool shows)
{
    enter(&SettingsEdit::showBooksSection, shows);
}

void SettingsViewModel::setShowAudioSection(bool shows)
{
    enter(&SettingsEdit::showAudioSection, shows);
}

void SettingsViewModel::setAutomaticGoodreadsSync(bool automatic)
{
    enter(&SettingsEdit::automaticGoodreadsSync, automatic);
}

void SettingsViewModel::setAutomaticAudibleSync(bool automatic)
{
    enter(&SettingsEdit::automaticAudibleSync, automatic);
}

void SettingsViewModel::grantAudibleLibraryAccess()
{
    detach(m_model.grantAudibleLibraryAccess());
}

void SettingsViewModel::refreshAudiobookCovers()
{
    detach(m_model.refreshAudiobookCovers());
}

void SettingsViewModel::setGoodreadsUserID(const QString &text)
{
    enter(&SettingsEdit::goodreadsUserID, text);
}

void SettingsViewModel::setGoodreadsKey(const QString &text)
{
    enter(&SettingsEdit::goodreadsKey, text);
}

void SettingsViewModel::setNetlifyToken(const QString &text)
{
    enter(&SettingsEdit::netlifyToken, text);
}

void SettingsViewModel::setLocalPublishPath(const QString &path)
{
    enter(&SettingsEdit::localPublishPath, path);
}

void SettingsViewModel::setPublishInterval(int minutes)
{
    enter(&SettingsEdit::publishInterval, minutes);
}

void SettingsViewModel::setAutomaticPublishing(bool automatic)
{
    enter(&SettingsEdit::automaticPublishing, automatic);
}

void SettingsViewModel::setDatabaseFolderPath(const QString &path)
{
    enter(&SettingsEdit::databaseFolderPath, path);
}

void SettingsViewModel::setBackupPath(const QString &path)
{
    enter(&SettingsEdit::backupPath, path);
}

void SettingsViewModel::setBackupInterval(int days)
{
    enter(&SettingsEdit::backupInterval, days);
}

void SettingsViewModel::setMaximumBackupFiles(int files)
{
    enter(&SettingsEdit::maximumBackupFiles, files);
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

QString SettingsViewModel::publishedPage() const
{
    return m_model.settings().netlifySiteURL;
}

QString SettingsViewModel::netlifyTokenPrompt() const
{
    return m_model.settings().netlifyTokenSet ? QStringLiteral("Saved; enter a new token to replace it")
                                              : QStringLiteral("Token for the reading website");
}

QUrl SettingsViewModel::netlifyHelp() const
{
    return help(QStringLiteral("netlify-setup"));
}

QString SettingsViewModel::lastUpdatedText() const
{
    return LibraryTexts::lastUpdated(m_model.settings().publishLastRun);
}

void SettingsViewModel::load()
{
    m_edit = SettingsEdit::of(m_model.settings());
    m_appearance.load();
    Q_EMIT editChanged();
}

void SettingsViewModel::chooseLocalPublishFolder()
{
    detach(fillFromAnswer(&SettingsEdit::localPublishPath, m_model.chooseLocalPublishFolder(m_edit.localPublishPath)));
}

void SettingsViewModel::chooseDatabaseFolder()
{
    detach(fillFromAnswer(&SettingsEdit::databaseFolderPath, m_model.chooseDatabaseFolder(m_edit.databaseFolderPath)));
}

void SettingsViewModel::chooseBackupFolder()
{
    detach(fillFromAnswer(&SettingsEdit::backupPath, m_model.chooseBackupFolder(m_edit.backupPath)));
}

QCoro::Task<> SettingsViewModel::fillFromAnswer(
    QString SettingsEdit::*buffer, QCoro::Task<std::optional<QString>> asking)
{
    const QPointer<SettingsViewModel> self(this);
    const std::optional<QString> answer = co_await asking;
    if (self && answer) {
        enter(buffer, *answer);
    }
}

void SettingsViewModel::useDefaultDatabaseFolder()
{
    setDatabaseFolderPath(AppDirectories::supportDirectory());
}

void SettingsViewModel::useDefaultBackupFolder()
{
    setBackupPath(AppDirectories::defaultBackupDirectory());
}

void SettingsViewModel::backUpDatabase()
{
    if (!m_isBackingUp) {
        detach(backUpInto(m_edit.backupPath));
    }
}

QCoro::Task<> SettingsViewModel::backUpInto(QString folder)
{
    const QPointer<SettingsViewModel> self(this);
    m_isBackingUp = true;
    Q_EMIT backingUpChanged();
    const auto backingUp = m_model.backUpDatabase(folder);
    co_await backingUp;
    if (self) {
        m_isBackingUp = false;
        Q_EMIT backingUpChanged();
    }
}

void SettingsViewModel::openBackups()
{
    detach(m_model.openBackupFolder(m_edit.backupPath));
}

void SettingsViewModel::save()
{
    if (m_model.isReady() && !m_isSaving) {
        m_appearance.enterInto(m_edit);
        showWhatIsRefused();
        detach(saveEdit(m_edit));
    }
}

void SettingsViewModel::showWhatIsRefused()
{
    if (const auto fault = firstFault(m_edit)) {
        const auto [tab, property] = placeOf(fault->setting);
        selectTab(rawValue(tab));
        Q_EMIT refused(property);
    }
}

QCoro::Task<> SettingsViewModel::saveEdit(SettingsEdit edit)
{
    const QPointer<SettingsViewModel> self(this);
    setSaving(true);
    const auto saving = m_model.saveSettings(std::move(edit));
    const bool isSaved = co_await saving;
    if (self) {
        setSaving(false);
        if (isSaved) {
            Q_EMIT saved();
        }
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
