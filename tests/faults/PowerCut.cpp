#include "faults/PowerCut.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace quire::testing {

namespace {

bool chance(std::mt19937 &random, double probability)
{
    return std::bernoulli_distribution(probability)(random);
}

int below(std::mt19937 &random, qsizetype limit)
{
    return std::uniform_int_distribution<int>(0, int(limit) - 1)(random);
}

// An end of a file that is known to be there before its bytes are.
QByteArray leftover(qsizetype size, bool garbage, std::mt19937 &random)
{
    QByteArray bytes(size, '\0');
    if (garbage) {
        std::generate(bytes.begin(), bytes.end(), [&] { return char(random()); });
    }
    return bytes;
}

void apply(const DiskEvent &event, QByteArray &content)
{
    if (event.kind == DiskEvent::Kind::Truncate) {
        content.resize(event.offset, '\0');
        return;
    }
    if (content.size() < event.offset + event.bytes.size()) {
        content.resize(event.offset + event.bytes.size(), '\0');
    }
    std::copy(event.bytes.begin(), event.bytes.end(), content.begin() + event.offset);
}

// A write as the sectors that it touches.
QList<DiskEvent> inSectors(const DiskEvent &event, qint64 sector)
{
    if (event.kind != DiskEvent::Kind::Write) {
        return {event};
    }
    QList<DiskEvent> pieces;
    for (qint64 done = 0; done < event.bytes.size();) {
        const qint64 at = event.offset + done;
        const qint64 size = std::min(event.bytes.size() - done, sector - at % sector);
        DiskEvent piece = event;
        piece.offset = at;
        piece.bytes = event.bytes.mid(done, size);
        pieces.append(std::move(piece));
        done += size;
    }
    return pieces;
}

} // namespace

struct PowerCut::File
{
    QByteArray synced;
    QList<const DiskEvent *> pending;

    QByteArray whole() const
    {
        QByteArray content = synced;
        for (const DiskEvent *event : pending) {
            apply(*event, content);
        }
        return content;
    }

    void sync()
    {
        synced = whole();
        pending.clear();
    }

    QByteArray survivor(std::mt19937 &random) const;
};

QByteArray PowerCut::File::survivor(std::mt19937 &random) const
{
    if (pending.isEmpty()) {
        return synced;
    }
    // Some cuts lose everything, some nothing, and most leave a mixture.
    static constexpr std::array chances{0.0, 0.1, 0.5, 0.5, 0.9, 1.0};
    const double kept = chances[std::size_t(below(random, std::ssize(chances)))];
    const qint64 sector = chance(random, 0.5) ? 512 : 4'096;
    QByteArray content = synced;
    if (chance(random, 0.3)) {
        if (const qsizetype grown = whole().size() - content.size(); grown > 0) {
            content += leftover(grown, chance(random, 0.5), random);
        }
    }
    for (const DiskEvent *event : pending) {
        for (const DiskEvent &piece : inSectors(*event, sector)) {
            if (chance(random, kept)) {
                apply(piece, content);
            }
        }
    }
    return content;
}

struct PowerCut::Disk
{
    using Names = QMap<QString, int>;

    QHash<int, File> files;
    Names names; // as synced
    QList<const DiskEvent *> pendingNames;

    static QString folderOf(const QString &name)
    {
        return name.contains(QLatin1Char('/')) ? name.left(name.lastIndexOf(QLatin1Char('/'))) : QString();
    }

    static void applyName(const DiskEvent &event, Names &names)
    {
        if (event.kind == DiskEvent::Kind::Create) {
            names.insert(event.name, event.file);
        } else if (event.kind == DiskEvent::Kind::Delete) {
            names.remove(event.name);
        } else if (names.contains(event.name)) {
            names.insert(event.newName, names.take(event.name));
        }
    }

    void syncFolder(const QString &folder)
    {
        const auto isSynced = [&](const DiskEvent *event) { return folderOf(event->name) == folder; };
        for (const DiskEvent *event : pendingNames) {
            if (isSynced(event)) {
                applyName(*event, names);
            }
        }
        pendingNames.removeIf(isSynced);
    }

    Names namesAfter(qsizetype changes) const
    {
        Names result = names;
        for (const DiskEvent *event : pendingNames.first(changes)) {
            applyName(*event, result);
        }
        return result;
    }
};

PowerCut::PowerCut(DiskRecord record)
    : m_record(std::move(record))
{
}

qint64 PowerCut::markAt(int moment) const
{
    for (int i = moment - 1; i >= 0; --i) {
        if (m_record.events[i].kind == DiskEvent::Kind::Mark) {
            return m_record.events[i].offset;
        }
    }
    return 0;
}

PowerCut::Disk PowerCut::diskAt(int moment) const
{
    Disk disk;
    for (auto file = m_record.before.cbegin(); file != m_record.before.cend(); ++file) {
        const int number = int(disk.names.size());
        disk.names.insert(file.key(), number);
        disk.files.insert(number, {*file, {}});
    }
    for (int i = 0; i < moment; ++i) {
        const DiskEvent &event = m_record.events[i];
        switch (event.kind) {
        case DiskEvent::Kind::Write:
        case DiskEvent::Kind::Truncate:
            disk.files[event.file].pending.append(&event);
            break;
        case DiskEvent::Kind::Sync:
            disk.files[event.file].sync();
            break;
        case DiskEvent::Kind::Create:
        case DiskEvent::Kind::Delete:
        case DiskEvent::Kind::Rename:
            disk.pendingNames.append(&event);
            break;
        case DiskEvent::Kind::SyncFolder:
            disk.syncFolder(event.name);
            break;
        case DiskEvent::Kind::Mark:
            break;
        }
    }
    return disk;
}

FolderImage PowerCut::afterCrash(int moment) const
{
    const Disk disk = diskAt(moment);
    FolderImage image;
    const auto names = disk.namesAfter(disk.pendingNames.size());
    for (auto name = names.cbegin(); name != names.cend(); ++name) {
        image.insert(name.key(), disk.files.value(*name).whole());
    }
    return image;
}

FolderImage PowerCut::afterPowerCut(int moment, std::mt19937 &random) const
{
    const Disk disk = diskAt(moment);
    FolderImage image;
    const auto names = disk.namesAfter(below(random, disk.pendingNames.size() + 1));
    for (auto name = names.cbegin(); name != names.cend(); ++name) {
        image.insert(name.key(), disk.files.value(*name).survivor(random));
    }
    return image;
}

} // namespace quire::testing
