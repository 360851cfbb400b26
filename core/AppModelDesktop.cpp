// Folders: choosing one, and showing one in the desktop.

#include "core/AppModel.h"

#include "concurrency/InBackground.h"
#include "core/Desktop.h"
#include "files/FolderPath.h"
#include "persistence/AppDirectories.h"
#include "persistence/LibraryStore.h"
#include "records/Text.h"

#include <QCoroFuture>

#include <QDir>
#include <QFileInfo>
#include <QPointer>

namespace quire {

namespace {

// Where a picker opens: at the present folder if there is one, else at the
// fallback.
QString startFolder(const QString &present, const QString &fallback)
{
    const QString folder = FolderPath::expandingTilde(Text::trimmed(present));
    if (folder.startsWith(u'/') && QFileInfo(folder).isDir()) {
        return QDir::cleanPath(folder);
    }
    return fallback;
}

} // namespace

QCoro::Task<std::optional<QString>> AppModel::chooseFolder(FolderQuestion question, QString startingAt)
{
    const QPointer self(this);
    const auto looking
        = inBackground([startingAt, fallback = question.startFolder] { return startFolder(startingAt, fallback); });
    question.startFolder = co_await looking;
    if (!self) {
        co_return std::nullopt;
    }
    const auto choosing = m_dependencies.desktop.chooseFolder(question);
    co_return co_await choosing;
}

QCoro::Task<std::optional<QString>> AppModel::chooseLocalPublishFolder(QString startingAt)
{
    return chooseFolder({QStringLiteral("Choose the local reading website folder"),
                            QStringLiteral("Quire writes the reading-list Markdown file to this folder."), std::nullopt,
                            QDir::homePath(), false},
        std::move(startingAt));
}

QCoro::Task<std::optional<QString>> AppModel::chooseBackupFolder(QString startingAt)
{
    return chooseFolder({QStringLiteral("Choose the Quire backup folder"),
                            QStringLiteral("Verified database backups will be saved in this folder."), std::nullopt,
                            AppDirectories::defaultBackupDirectory(), true},
        std::move(startingAt));
}

QCoro::Task<std::optional<QString>> AppModel::chooseDatabaseFolder(QString startingAt)
{
    return chooseFolder(
        {QStringLiteral("Choose the Quire library folder"),
            QStringLiteral(
                "Quire stores quire.db in this folder. If a cloud service synchronizes it, use Quire on only "
                "one computer at a time."),
            QStringLiteral("Choose"), AppDirectories::supportDirectory(), true},
        std::move(startingAt));
}

QCoro::Task<> AppModel::openDataFolder()
{
    const QPointer self(this);
    const auto asking = m_store->databaseURL();
    const QString database = co_await asking;
    if (self) {
        const auto showing = showFolder(QFileInfo(database).absolutePath());
        co_await showing;
    }
}

QCoro::Task<> AppModel::openBackupFolder(std::optional<QString> path)
{
    QString folder = AppDirectories::defaultBackupDirectory();
    if (const auto given = Text::nonEmptyValue(path)) {
        folder = *given;
    } else if (const auto configured = Text::nonEmptyValue(m_settings.backupPath)) {
        folder = *configured;
    }
    return showFolder(FolderPath::expandingTilde(folder));
}

QCoro::Task<> AppModel::showFolder(QString folder)
{
    const QPointer self(this);
    const auto making = inBackground([folder] { QDir().mkpath(folder); }); // what cannot be made is opened all the same
    co_await making;
    if (self) {
        m_dependencies.desktop.open(QUrl::fromLocalFile(folder));
    }
}

} // namespace quire
