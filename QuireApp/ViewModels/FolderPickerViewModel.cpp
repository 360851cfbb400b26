#include "QuireApp/ViewModels/FolderPickerViewModel.h"

#include "concurrency/Detach.h"
#include "concurrency/InBackground.h"
#include "files/FolderPath.h"
#include "records/Text.h"
#include "records/TitleCollator.h"

#include <QCoroFuture>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace quire {

struct FolderPickerViewModel::Listing
{
    QString folder;
    QStringList names;
    QString trouble; // then the rest is empty
};

namespace {

QString absolutePath(const QString &typed)
{
    const QString path = FolderPath::expandingTilde(Text::trimmed(typed));
    return path.startsWith(u'/') ? QDir::cleanPath(path) : QString();
}

QString absence(const QString &typed)
{
    return QStringLiteral("There is no folder “%1”.").arg(Text::trimmed(typed));
}

// The folder itself, or the nearest above it that is there.
QString existing(QString folder)
{
    while (!QFileInfo(folder).isDir() && folder != u"/") {
        folder = QFileInfo(folder).path();
    }
    return folder;
}

// The names of the folders within, hidden ones left out, in no order; nothing
// when it cannot be read (the toolkit would show it as empty).
std::optional<QStringList> foldersIn(const QString &folder)
{
    std::error_code failure;
    std::filesystem::directory_iterator entry(QFile::encodeName(folder).toStdString(), failure);
    QStringList names;
    for (; !failure && entry != std::filesystem::directory_iterator(); entry.increment(failure)) {
        const QString name = QFile::decodeName(entry->path().filename().c_str());
        std::error_code unknown;
        if (!name.startsWith(u'.') && entry->is_directory(unknown)) {
            names.append(name);
        }
    }
    return failure ? std::nullopt : std::optional(names);
}

} // namespace

FolderPickerViewModel::FolderPickerViewModel(QObject *parent)
    : QObject(parent)
{
}

FolderPickerViewModel::~FolderPickerViewModel()
{
    if (m_promise) {
        m_promise->addResult(Answer());
        m_promise->finish();
    }
}

QFuture<FolderPickerViewModel::Answer> FolderPickerViewModel::ask(const FolderQuestion &question)
{
    auto promise = std::make_unique<QPromise<Answer>>();
    auto answer = promise->future();
    promise->start();
    if (isOpen()) {
        promise->addResult(Answer());
        promise->finish();
        return answer;
    }
    m_question = question;
    m_promise = std::move(promise);
    m_folder.clear();
    m_folders.clear();
    setTrouble(QString());
    Q_EMIT folderChanged();
    Q_EMIT openChanged();
    detach(show(inBackground([start = question.startFolder] { return listing(existing(QDir::cleanPath(start))); })));
    return answer;
}

QString FolderPickerViewModel::pathOf(const QString &name) const
{
    return QDir::cleanPath(m_folder + u'/' + name);
}

void FolderPickerViewModel::goTo(const QString &typed)
{
    const QString path = absolutePath(typed);
    if (path.isEmpty()) {
        setTrouble(absence(typed));
        return;
    }
    detach(show(inBackground([path] { return listing(path); })));
}

void FolderPickerViewModel::goUp()
{
    goTo(QFileInfo(m_folder).path());
}

void FolderPickerViewModel::makeFolder(const QString &name)
{
    const QString wanted = Text::trimmed(name);
    if (wanted.isEmpty() || wanted.contains(u'/') || wanted == u"." || wanted == u"..") {
        setTrouble(QStringLiteral("Enter a name for the folder, without “/”."));
        return;
    }
    detach(show(inBackground([folder = m_folder, wanted] {
        const QDir within(folder);
        if (!within.mkdir(wanted) && !QFileInfo(within.filePath(wanted)).isDir()) {
            return Listing{{}, {}, QStringLiteral("The folder “%1” could not be made here.").arg(wanted)};
        }
        return listing(within.filePath(wanted));
    })));
}

void FolderPickerViewModel::choose(const QString &typed)
{
    const QString path = absolutePath(typed);
    if (path.isEmpty()) {
        setTrouble(absence(typed));
        return;
    }
    detach(chooseIfThere(path));
}

void FolderPickerViewModel::cancel()
{
    finish(std::nullopt);
}

FolderPickerViewModel::Listing FolderPickerViewModel::listing(const QString &folder)
{
    if (!QFileInfo(folder).isDir()) {
        return {{}, {}, absence(folder)};
    }
    const auto found = foldersIn(folder);
    if (!found) {
        return {{}, {}, QStringLiteral("The folder “%1” cannot be looked into.").arg(folder)};
    }
    QStringList names = *found;
    const QCollator order = titleCollator();
    std::sort(names.begin(), names.end(),
        [&order](const QString &left, const QString &right) { return order.compare(left, right) < 0; });
    return {folder, names, {}};
}

QCoro::Task<> FolderPickerViewModel::show(QFuture<Listing> reading)
{
    const QPointer self(this);
    const int step = ++m_step;
    const Listing found = co_await reading;
    if (!self || step != m_step || !isOpen()) {
        co_return;
    }
    setTrouble(found.trouble);
    if (found.trouble.isEmpty()) {
        m_folder = found.folder;
        m_folders = found.names;
        Q_EMIT folderChanged();
    }
}

QCoro::Task<> FolderPickerViewModel::chooseIfThere(QString path)
{
    const QPointer self(this);
    const int step = ++m_step;
    const auto looking = inBackground([path] { return QFileInfo(path).isDir(); });
    const bool isThere = co_await looking;
    if (!self || step != m_step || !isOpen()) {
        co_return;
    }
    if (isThere) {
        finish(path);
    } else {
        setTrouble(absence(path));
    }
}

void FolderPickerViewModel::setTrouble(const QString &trouble)
{
    if (trouble != m_trouble) {
        m_trouble = trouble;
        Q_EMIT troubleChanged();
    }
}

void FolderPickerViewModel::finish(const Answer &answer)
{
    if (const auto promise = std::move(m_promise)) {
        promise->addResult(answer);
        promise->finish();
        Q_EMIT openChanged();
    }
}

} // namespace quire
