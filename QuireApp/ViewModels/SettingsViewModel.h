// The edit buffers of the settings window. They are filled when the window
// opens and reach the library only through save(); a stored secret never
// enters them.
//
// Thread: interface thread.

#pragma once

#include "core/SettingsEdit.h"
#include "QuireApp/ViewModels/ChoiceListModel.h"

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

#include <optional>
#include <type_traits>

namespace quire {

class AppearanceViewModel;
class AppModel;

class SettingsViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    // The library is open: only then is there something to store them in.
    Q_PROPERTY(bool isReady READ isReady NOTIFY isReadyChanged)

    Q_PROPERTY(quire::ChoiceListModel *tabs READ tabs CONSTANT)
    Q_PROPERTY(QString selectedTab READ selectedTab WRITE selectTab NOTIFY selectedTabChanged)

    Q_PROPERTY(bool isAudibleInstalled READ isAudibleInstalled NOTIFY audibleChanged)
    Q_PROPERTY(QString audibleDetail READ audibleDetail NOTIFY audibleChanged)
    Q_PROPERTY(QString audiblePermissionText READ audiblePermissionText NOTIFY audibleChanged)
    Q_PROPERTY(bool showBooksSection READ showBooksSection WRITE setShowBooksSection NOTIFY editChanged)
    Q_PROPERTY(bool showAudioSection READ showAudioSection WRITE setShowAudioSection NOTIFY editChanged)
    Q_PROPERTY(
        bool automaticGoodreadsSync READ automaticGoodreadsSync WRITE setAutomaticGoodreadsSync NOTIFY editChanged)
    Q_PROPERTY(bool automaticAudibleSync READ automaticAudibleSync WRITE setAutomaticAudibleSync NOTIFY editChanged)

    Q_PROPERTY(QString goodreadsUserID READ goodreadsUserID WRITE setGoodreadsUserID NOTIFY editChanged)
    Q_PROPERTY(QString goodreadsKey READ goodreadsKey WRITE setGoodreadsKey NOTIFY editChanged)
    Q_PROPERTY(QString goodreadsKeyPrompt READ goodreadsKeyPrompt NOTIFY settingsChanged)
    Q_PROPERTY(QUrl goodreadsUserIDHelp READ goodreadsUserIDHelp CONSTANT)
    Q_PROPERTY(QUrl goodreadsKeyHelp READ goodreadsKeyHelp CONSTANT)

    Q_PROPERTY(QString publishedPage READ publishedPage NOTIFY settingsChanged)
    Q_PROPERTY(QString netlifyToken READ netlifyToken WRITE setNetlifyToken NOTIFY editChanged)
    Q_PROPERTY(QString netlifyTokenPrompt READ netlifyTokenPrompt NOTIFY settingsChanged)
    Q_PROPERTY(QUrl netlifyHelp READ netlifyHelp CONSTANT)
    Q_PROPERTY(QString localPublishPath READ localPublishPath WRITE setLocalPublishPath NOTIFY editChanged)
    Q_PROPERTY(int publishInterval READ publishInterval WRITE setPublishInterval NOTIFY editChanged)
    Q_PROPERTY(bool automaticPublishing READ automaticPublishing WRITE setAutomaticPublishing NOTIFY editChanged)

    Q_PROPERTY(QString databaseFolderPath READ databaseFolderPath WRITE setDatabaseFolderPath NOTIFY editChanged)
    Q_PROPERTY(QString backupPath READ backupPath WRITE setBackupPath NOTIFY editChanged)
    Q_PROPERTY(int backupInterval READ backupInterval WRITE setBackupInterval NOTIFY editChanged)
    Q_PROPERTY(int maximumBackupFiles READ maximumBackupFiles WRITE setMaximumBackupFiles NOTIFY editChanged)

    Q_PROPERTY(QString lastUpdatedText READ lastUpdatedText NOTIFY settingsChanged)
    // Under way: a save; a backup that was asked for here.
    Q_PROPERTY(bool isSaving READ isSaving NOTIFY savingChanged)
    Q_PROPERTY(bool isBackingUp READ isBackingUp NOTIFY backingUpChanged)

public:
    // model and appearance outlive this. appearance: the buffers of its tab, which
    // are loaded and saved with the others. helpHost: scheme and authority of the
    // help pages.
    SettingsViewModel(AppModel &model, AppearanceViewModel &appearance, QUrl helpHost, QObject *parent = nullptr);

    bool isReady() const;
    ChoiceListModel *tabs() { return &m_tabs; }
    QString selectedTab() const { return m_selectedTab; }
    void selectTab(const QString &word);

    bool isAudibleInstalled() const;
    QString audibleDetail() const;
    // What the reader may have to allow; empty while the application is not there.
    QString audiblePermissionText() const;
    bool showBooksSection() const { return m_edit.showBooksSection; }
    void setShowBooksSection(bool shows);
    bool showAudioSection() const { return m_edit.showAudioSection; }
    void setShowAudioSection(bool shows);
    bool automaticGoodreadsSync() const { return m_edit.automaticGoodreadsSync; }
    void setAutomaticGoodreadsSync(bool automatic);
    bool automaticAudibleSync() const { return m_edit.automaticAudibleSync; }
    void setAutomaticAudibleSync(bool automatic);

    QString goodreadsUserID() const { return m_edit.goodreadsUserID; }
    void setGoodreadsUserID(const QString &text);
    QString goodreadsKey() const { return m_edit.goodreadsKey; }
    void setGoodreadsKey(const QString &text);
    QString goodreadsKeyPrompt() const;
    QUrl goodreadsUserIDHelp() const;
    QUrl goodreadsKeyHelp() const;

    QString publishedPage() const; // its address; empty before the first publication
    QString netlifyToken() const { return m_edit.netlifyToken; }
    void setNetlifyToken(const QString &text);
    QString netlifyTokenPrompt() const;
    QUrl netlifyHelp() const;
    QString localPublishPath() const { return m_edit.localPublishPath; }
    void setLocalPublishPath(const QString &path);
    int publishInterval() const { return int(m_edit.publishInterval); } // minutes
    void setPublishInterval(int minutes);
    bool automaticPublishing() const { return m_edit.automaticPublishing; }
    void setAutomaticPublishing(bool automatic);

    QString databaseFolderPath() const { return m_edit.databaseFolderPath; }
    void setDatabaseFolderPath(const QString &path);
    QString backupPath() const { return m_edit.backupPath; }
    void setBackupPath(const QString &path);
    int backupInterval() const { return int(m_edit.backupInterval); } // days
    void setBackupInterval(int days);
    int maximumBackupFiles() const { return int(m_edit.maximumBackupFiles); }
    void setMaximumBackupFiles(int files);

    QString lastUpdatedText() const;
    bool isSaving() const { return m_isSaving; }
    bool isBackingUp() const { return m_isBackingUp; }

    // Takes every buffer from the settings in force.
    Q_INVOKABLE void load();

    // Asks the reader for the folder of the Audible application.
    Q_INVOKABLE void grantAudibleLibraryAccess();
    Q_INVOKABLE void refreshAudiobookCovers();

    // Ask the reader, beginning at the folder in the buffer, which takes the
    // answer.
    Q_INVOKABLE void chooseLocalPublishFolder();
    Q_INVOKABLE void chooseDatabaseFolder();
    Q_INVOKABLE void chooseBackupFolder();
    // The folders that Quire takes by itself.
    Q_INVOKABLE void useDefaultDatabaseFolder();
    Q_INVOKABLE void useDefaultBackupFolder();
    // Into the backup folder as it stands in its buffer.
    Q_INVOKABLE void backUpDatabase();
    // Shows the backup folder as it stands in its buffer.
    Q_INVOKABLE void openBackups();

    // Stores the buffers; saved() follows, or a notice of the model, and before it
    // refused() where a value is wrong.
    // Nothing before the library is open: they hold no settings of its own yet.
    Q_INVOKABLE void save();

Q_SIGNALS:
    void isReadyChanged();
    void selectedTabChanged();
    void editChanged();
    void settingsChanged();
    void audibleChanged();
    void savingChanged();
    void backingUpChanged();
    void saved();
    // The value of that property cannot be saved; its tab is the one selected.
    void refused(const QString &property);

private:
    // Puts a value into its buffer, and announces a change.
    template<typename Value>
    void enter(Value SettingsEdit::*buffer, const std::type_identity_t<Value> &value);
    QCoro::Task<> fillFromAnswer(QString SettingsEdit::*buffer, QCoro::Task<std::optional<QString>> asking);
    void showWhatIsRefused();
    QCoro::Task<> saveEdit(SettingsEdit edit);
    void setSaving(bool saving);
    QCoro::Task<> backUpInto(QString folder);
    QUrl help(const QString &anchor) const;

    AppModel &m_model;
    AppearanceViewModel &m_appearance;
    QUrl m_helpHost;
    ChoiceListModel m_tabs;
    QString m_selectedTab;
    SettingsEdit m_edit;
    bool m_isSaving = false;
    bool m_isBackingUp = false;
};

} // namespace quire
