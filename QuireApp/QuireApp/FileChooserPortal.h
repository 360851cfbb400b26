// The desktop's own folder picker, lent to programs over the session bus
// (org.freedesktop.portal.FileChooser). GNOME, KDE and most others have it,
// whatever toolkit a program is made with.
//
// Thread: interface thread.

#pragma once

#include "core/Desktop.h"

#include <QDBusConnection>
#include <QFuture>
#include <QObject>
#include <QPromise>

#include <memory>

class QDBusServiceWatcher;
class QWindow;

namespace quire {

class FileChooserPortal final : public QObject
{
    Q_OBJECT

public:
    struct Answer
    {
        bool isFromDesktop = false; // false: this desktop lends no picker, nobody was asked
        std::optional<QString> folder; // absolute; absent when the reader cancelled
    };

    explicit FileChooserPortal(QObject *parent = nullptr);
    ~FileChooserPortal() override; // a question that stands is answered as cancelled

    // Opens the desktop's picker over `parent`, which may be null. Answered as
    // cancelled while another question stands, and when the desktop's picker
    // ends without a word.
    QCoro::Task<Answer> chooseFolder(FolderQuestion question, const QWindow *parent);

private Q_SLOTS:
    void respond(uint outcome, const QVariantMap &results);

private:
    QCoro::Task<bool> isThere();
    void listen(const QString &token);
    void finish(const std::optional<QString> &folder);

    QDBusConnection m_bus;
    std::unique_ptr<QDBusServiceWatcher> m_life; // of the desktop's side
    QString m_request; // the path of the question on the bus, while one stands
    std::unique_ptr<QPromise<std::optional<QString>>> m_promise;
    int m_count = 0; // of questions asked
};

} // namespace quire
