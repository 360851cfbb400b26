// Rotation in a folder that holds whatever a reader may have put there, against
// a plain model of its rule, and nothing else may change. Broken twins of the
// rotation show that the model sees what it is there to see.

#include "faults/Torture.h"
#include "persistence/BackupRotation.h"

#include <QByteArray>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quire;
using namespace quire::testing;

namespace {

namespace fs = std::filesystem;
using Rotation = std::function<void(const QString &folder, qsizetype limit)>;

// One entry as the test made it, and as it is found again.
struct Entry
{
    enum class Kind { File, Folder, Link };
    Kind kind = Kind::File;
    std::pair<qint64, qint64> date; // seconds, nanoseconds
    QByteArray content; // of a file, or where a link leads

    bool operator==(const Entry &) const = default;
};
using Contents = QMap<QByteArray, Entry>; // by name

// Names that a reader's folder may hold, near misses among them.
QByteArray randomName(Torture &torture)
{
    static const QList<QByteArray> stems{"Quire Database 2026-11-16T03-41-09.123Z", "library", "a", "B", ".hidden",
        "two.dots", "with space", "caf\xc3\xa9", "caf\xe9", "line\nfeed", "quote's", "100%", "~", "-rf", "x.db", "",
        "Quire Database 2019-01-01T00-00-00.000Z", "z"};
    static const QList<QByteArray> endings{".db", ".db", ".db", ".db", ".DB", ".Db", ".db.manifest.json",
        ".DB.manifest.json", ".db.incomplete", ".db-wal", ".db-journal", ".sqlite", ".txt", "", "db", ".db ", ".dbx",
        "."};
    QByteArray name = stems[torture.below(int(stems.size()))];
    if (torture.below(3) == 0) {
        name += QByteArray::number(torture.below(6));
    }
    name += endings[torture.below(int(endings.size()))];
    return name.isEmpty() || name == "." || name == ".." ? QByteArray("b.db") : name;
}

std::pair<qint64, qint64> randomDate(Torture &torture)
{
    // Few of them, so that many are the same; some before 1970, some far ahead.
    static const QList<qint64> seconds{-86'400, 0, 1'600'000'000, 1'600'000'001, 1'700'000'000, 4'000'000'000};
    return {seconds[torture.below(int(seconds.size()))], torture.below(2) * 500'000'000};
}

// A folder of its own, which a name that is no text cannot keep from going away
// with it.
class Folder
{
public:
    Folder() { fs::create_directory(native()); }
    ~Folder() { fs::remove_all(native()); }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    QString path() const { return m_root.filePath(QStringLiteral("backups")); }

private:
    fs::path native() const { return QFile::encodeName(path()).toStdString(); }

    QTemporaryDir m_root;
};

fs::path native(const QString &folder, const QByteArray &name)
{
    return fs::path(QFile::encodeName(folder).toStdString()) / name.toStdString();
}

void setDate(const fs::path &path, std::pair<qint64, qint64> date)
{
    const timespec times[] = {{0, UTIME_OMIT}, {date.first, long(date.second)}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0) << path;
}

Contents fill(const QString &folder, Torture &torture)
{
    Contents contents;
    for (int i = torture.below(14); i >= 0; --i) {
        const QByteArray name = randomName(torture);
        if (contents.contains(name)) {
            continue;
        }
        const int choice = torture.below(10);
        Entry entry{choice == 0 ? Entry::Kind::Folder
                : choice == 1   ? Entry::Kind::Link
                                : Entry::Kind::File,
            randomDate(torture), "content of " + name};
        const fs::path path = native(folder, name);
        if (entry.kind == Entry::Kind::Folder) {
            fs::create_directory(path);
            entry.content.clear();
            if (torture.below(2) == 0) {
                entry.content = "full";
                fs::create_directory(path / "inside");
            }
        } else if (entry.kind == Entry::Kind::Link) {
            entry.content = torture.below(2) == 0 ? "../elsewhere" : "nowhere";
            fs::create_symlink(entry.content.toStdString(), path);
        } else {
            const int descriptor = ::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0644);
            EXPECT_EQ(::write(descriptor, entry.content.constData(), std::size_t(entry.content.size())),
                entry.content.size());
            ::close(descriptor);
        }
        setDate(path, entry.date);
        contents.insert(name, entry);
    }
    return contents;
}

Contents look(const QString &folder)
{
    Contents contents;
    for (const fs::directory_entry &found : fs::directory_iterator(native(folder, {}))) {
        struct stat status
        {
        };
        EXPECT_EQ(::lstat(found.path().c_str(), &status), 0);
        Entry entry{Entry::Kind::File, {status.st_mtim.tv_sec, status.st_mtim.tv_nsec}, {}};
        if (S_ISDIR(status.st_mode)) {
            entry.kind = Entry::Kind::Folder;
            entry.content = fs::is_empty(found.path()) ? "" : "full";
        } else if (S_ISLNK(status.st_mode)) {
            entry.kind = Entry::Kind::Link;
            entry.content = QByteArray::fromStdString(fs::read_symlink(found.path()).native());
        } else {
            char buffer[256];
            const int descriptor = ::open(found.path().c_str(), O_RDONLY | O_CLOEXEC);
            const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
            ::close(descriptor);
            entry.content = QByteArray(buffer, std::max<ssize_t>(count, 0));
        }
        contents.insert(QByteArray::fromStdString(found.path().filename().native()), entry);
    }
    return contents;
}

// The rule, said once more and in another way: a file stays when fewer than
// `limit` others come before it.
Contents expected(const Contents &before, qsizetype limit)
{
    const auto takesPart = [&before](const QByteArray &name) {
        return before[name].kind != Entry::Kind::Folder && name.size() > 3 && name.toLower().endsWith(".db");
    };
    const auto comesBefore = [&before](const QByteArray &a, const QByteArray &b) {
        return before[a].date != before[b].date ? before[a].date > before[b].date : a > b;
    };
    Contents after = before;
    for (const QByteArray &name : before.keys()) {
        const QList<QByteArray> names = before.keys();
        const auto newer = std::count_if(names.begin(), names.end(),
            [&](const QByteArray &other) { return takesPart(other) && comesBefore(other, name); });
        if (takesPart(name) && newer >= limit) {
            after.remove(name);
            const QByteArray manifest = name + ".manifest.json";
            if (before.contains(manifest) && before[manifest].kind != Entry::Kind::Folder) {
                after.remove(manifest);
            }
        }
    }
    return after;
}

QString told(const Contents &contents)
{
    QStringList names;
    for (auto entry = contents.cbegin(); entry != contents.cend(); ++entry) {
        names.append(QStringLiteral("%1 (%2.%3)")
                         .arg(QString::fromLatin1(entry.key().toPercentEncoding(" .")))
                         .arg(entry->date.first)
                         .arg(entry->date.second));
    }
    return names.join(QStringLiteral(", "));
}

// What is wrong with one random round; nothing when all is well.
std::optional<QString> fault(Torture &torture, const Rotation &rotate)
{
    const Folder own;
    const QString folder = own.path();
    const Contents before = fill(folder, torture);
    const qsizetype limit = 1 + torture.below(5);
    const Contents wanted = expected(before, limit);

    rotate(folder, limit);

    const Contents after = look(folder);
    if (after != wanted) {
        return QStringLiteral("limit %1 of: %2; left: %3; expected: %4")
            .arg(QString::number(limit), told(before), told(after), told(wanted));
    }
    rotate(folder, limit);
    if (look(folder) != wanted) {
        return QStringLiteral("a second rotation changed: ") + told(wanted);
    }
    return std::nullopt;
}

// Rotations with one fault each.
void keepsOneMore(const QString &folder, qsizetype limit)
{
    BackupRotation::rotate(folder, limit + 1);
}

void takesFoldersAlong(const QString &folder, qsizetype limit)
{
    BackupRotation::rotate(folder, limit);
    for (const fs::directory_entry &found : fs::directory_iterator(native(folder, {}))) {
        if (found.is_directory() && found.path().extension() == ".db") {
            fs::remove_all(found.path());
        }
    }
}

void forgetsOnesThatAreLoud(const QString &folder, qsizetype limit)
{
    std::vector<std::pair<fs::path, fs::path>> hidden;
    for (const fs::directory_entry &found : fs::directory_iterator(native(folder, {}))) {
        if (found.path().extension() == ".DB") {
            hidden.emplace_back(found.path(), found.path().parent_path().parent_path() / found.path().filename());
        }
    }
    for (const auto &[from, to] : hidden) {
        fs::rename(from, to);
    }
    BackupRotation::rotate(folder, limit);
    for (const auto &[from, to] : hidden) {
        fs::rename(to, from);
    }
}

void leavesManifests(const QString &folder, qsizetype limit)
{
    const Contents before = look(folder);
    BackupRotation::rotate(folder, limit);
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry) {
        const fs::path path = native(folder, entry.key());
        if (entry.key().endsWith(".manifest.json") && !fs::exists(fs::symlink_status(path))) {
            ::close(::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
        }
    }
}

} // namespace

TEST(BackupRotationModel, DeletesWhatTheRuleSaysAndNothingElse)
{
    Torture torture("R07", "rotation among a reader's own files");
    for (int round = Torture::scaled(1'000); round > 0; --round) {
        torture.addRounds();
        if (const auto found = fault(torture, &BackupRotation::rotate)) {
            torture.addFinding(*found);
        }
    }
}

TEST(BackupRotationModel, SeesABrokenRotation)
{
    for (const Rotation &broken : {Rotation(&keepsOneMore), Rotation(&takesFoldersAlong),
             Rotation(&forgetsOnesThatAreLoud), Rotation(&leavesManifests)}) {
        Torture torture("R07", "control: a broken rotation");
        bool isSeen = false;
        for (int round = 0; round < 2'000 && !isSeen; ++round) {
            isSeen = fault(torture, broken).has_value();
        }
        EXPECT_TRUE(isSeen);
    }
}
