// What the window shows of running work and of what it reports: the toast, the
// working overlay, the notice, the sidebar's sync button.
//
// Thread: interface thread.

#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quire {

class AppModel;

class ActivityViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    // The library is open. Until then the window may show what it held yesterday,
    // and offers nothing that would need it.
    Q_PROPERTY(bool isReady READ isReady NOTIFY workChanged)
    Q_PROPERTY(bool canWork READ canWork NOTIFY workChanged) // it is open, and no job runs
    Q_PROPERTY(bool isSyncingAll READ isSyncingAll NOTIFY workChanged)
    Q_PROPERTY(QString activityLabel READ activityLabel NOTIFY workChanged)
    // Jobs with a button in the sidebar show their progress there instead.
    Q_PROPERTY(bool showsOverlay READ showsOverlay NOTIFY workChanged)

    // Empty when there is none. Of a text of more than 10,000 code units only the
    // start is shown; the message of a notice likewise.
    Q_PROPERTY(QString toast READ toast NOTIFY toastChanged)

    Q_PROPERTY(bool hasNotice READ hasNotice NOTIFY noticeChanged)
    Q_PROPERTY(QString noticeTitle READ noticeTitle NOTIFY noticeChanged)
    Q_PROPERTY(QString noticeMessage READ noticeMessage NOTIFY noticeChanged)

public:
    // model outlives this.
    explicit ActivityViewModel(AppModel &model, QObject *parent = nullptr);

    bool isReady() const;
    bool canWork() const;
    bool isSyncingAll() const;
    QString activityLabel() const;
    bool showsOverlay() const;
    QString toast() const;
    bool hasNotice() const;
    QString noticeTitle() const;
    QString noticeMessage() const;

    Q_INVOKABLE void dismissNotice();
    // Runs in the background; nothing happens while a job runs.
    Q_INVOKABLE void synchronizeAll();

Q_SIGNALS:
    void workChanged();
    void toastChanged();
    void noticeChanged();

private:
    AppModel &m_model;
};

} // namespace quire
