#include "faults/ReliabilityDeeds.h"

#include "persistence/database/SQLiteDatabase.h"
#include "records/Failure.h"
#include "reliability/BackupPaths.h"
#include "reliability/FinishedBackup.h"
#include "reliability/QuireHostIdentity.h"
#include "reliability/QuireLibraryLeaseOwner.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace quire::testing {

namespace {

const QString library = QStringLiteral("quire.db");
const QString backups = QStringLiteral("Database Backups/");
const QString recovery = QStringLiteral("Recovery/");

// The image of a library that a session has passed over.
FolderImage after(Place place, const FolderImage &start, const std::function<void(LibraryStore &)> &session)
{
    FaultBench bench(place);
    bench.reset(start);
    bench.open();
    session(bench.store());
    bench.close();
    return bench.image();
}

FolderImage afterEdit(Place place, const FolderImage &start, const QString &note)
{
    return after(
        place, start, [&](LibraryStore &store) { done(store.updateBook(1, 2, QStringLiteral("read"), note)); });
}

FolderImage with(FolderImage image, const QString &name, const QByteArray &bytes)
{
    image.insert(name, bytes);
    return image;
}

// Backups. -----------------------------------------------------------------------

// A dead disk does not let its temporary files be taken back; they are hidden.
bool isTemporary(const QString &name)
{
    return name.section(u'/', -1).startsWith(u'.') && name.endsWith(u".tmp");
}

// What lies in the backup folder is good, and something does.
QStringList findingsOfBackups(FaultBench &bench)
{
    QStringList findings;
    int good = 0;
    for (const QString &name : bench.image().keys()) {
        if (!name.startsWith(backups)) {
            continue;
        }
        if (name.endsWith(u".db")) {
            const auto condition = FinishedBackup::condition(bench.folder() + u'/' + name);
            good += condition == FinishedBackup::Condition::Good;
            if (condition != FinishedBackup::Condition::Good) {
                findings.append(QStringLiteral("no good backup: ") + name);
            }
        } else if (!name.endsWith(u".db.manifest.json") && !isTemporary(name)) {
            findings.append(QStringLiteral("left behind: ") + name);
        }
    }
    if (good == 0) {
        findings.append(QStringLiteral("no good backup is left"));
    }
    return findings;
}

void addBackups(std::vector<Deed> &deeds, Place place, const FolderImage &filled)
{
    const FolderImage backedUp = after(place, filled, [](LibraryStore &store) {
        done(store.backUpDatabase(std::nullopt));
        done(store.setSetting(QStringLiteral("maximumBackupFiles"), QStringLiteral("1")));
    });
    deeds.push_back({"backup that takes the place of another", Deed::Kind::Work, backedUp,
        [](LibraryStore &store) { done(store.backUpDatabase(std::nullopt)); },
        [](FaultBench &bench) { return bench.findingsOfFurtherWork() + findingsOfBackups(bench); }});
}

// Openings over what others left. --------------------------------------------------

// The lock of a process of this machine that is no more.
QByteArray recordOfADeadOwner()
{
    QuireLibraryLeaseOwner owner;
    owner.token = QUuid::createUuid();
    owner.processID = 2'000'000'000; // beyond what any system gives
    owner.hostName = QuireHostIdentity::ofThisMachine().hostName;
    owner.hostID = QuireHostIdentity::ofThisMachine().current;
    return owner.encoded();
}

QStringList findingsOfStaleFiles(FaultBench &bench)
{
    QStringList findings;
    for (const QString &name : bench.image().keys()) {
        if (name.endsWith(u".tmp") && !isTemporary(name)) {
            findings.append(QStringLiteral("left behind: ") + name);
        }
    }
    return findings + findingsOfBackups(bench);
}

void addOpenings(std::vector<Deed> &deeds, Place place, const FolderImage &filled)
{
    const auto opening = [&](const char *name, FolderImage start, std::function<QStringList(FaultBench &)> aftermath) {
        deeds.push_back({name, Deed::Kind::Opening, std::move(start),
            [](LibraryStore &store) { done(store.prepare(true)); }, std::move(aftermath)});
    };
    opening("opening over an abandoned lease",
        with(filled, QStringLiteral(".Quire Locks/Quire Library.lock/Owner.json"), recordOfADeadOwner()), {});

    FolderImage stale = after(place, filled, [](LibraryStore &store) { done(store.backUpDatabase(std::nullopt)); });
    const QString unfinished = backups + QStringLiteral("Quire Database 2026-01-02T03-04-05.678Z.db");
    stale.insert(unfinished, filled.value(library).left(9'000));
    stale.insert(BackupPaths::manifest(unfinished), "{}");
    stale.insert(BackupPaths::marker(unfinished), "");
    stale.insert(QStringLiteral("deploy/index.quire.md.4711.tmp"), "half a page");
    opening("opening that cleans up", stale,
        [](FaultBench &bench) { return bench.findingsOfFurtherWork() + findingsOfStaleFiles(bench); });
}

// Refusals. ------------------------------------------------------------------------

// Opens, and fails unless it is refused with these words.
void expectRefusal(LibraryStore &store, const char *words)
{
    try {
        done(store.prepare(false));
    } catch (const Failure &failure) {
        if (failure.description().contains(QLatin1String(words))) {
            return;
        }
        throw;
    }
    throw std::logic_error("it was opened");
}

struct Refusal
{
    const char *name;
    const char *words; // of the message
    FolderImage start;
    FolderImage healed; // what a person puts there instead of what was refused
    bool preserves = true; // whether copies are made
};

QStringList findingsOfCopies(FaultBench &bench)
{
    QStringList findings;
    int copies = 0;
    for (const QString &name : bench.image().keys()) {
        if (!name.startsWith(recovery)) {
            continue;
        }
        if (name.endsWith(u".db-wal") || name.endsWith(u".db-journal") || isTemporary(name)) {
            continue; // the first two of a library that was copied as it lay there
        }
        if (!name.endsWith(u".db")) {
            findings.append(QStringLiteral("left behind: ") + name);
            continue;
        }
        ++copies;
        const QString path = bench.folder() + u'/' + name;
        if (QFile(path).size() > 0 && !SQLiteDatabase(path, true).integrityCheck()) {
            findings.append(QStringLiteral("not a whole copy: ") + name);
        }
    }
    if (copies == 0) {
        findings.append(QStringLiteral("no copy was made"));
    }
    return findings;
}

// Nothing was touched, it is refused once more, and works once it is healed.
QStringList aftermathOf(const Refusal &refusal, FaultBench &bench)
{
    QStringList findings;
    const auto expectUntouched = [&] {
        const FolderImage image = bench.image();
        bench.reset(refusal.start); // names the memory as this bench does
        const FolderImage start = bench.image();
        bench.reset(image);
        for (auto file = start.cbegin(); file != start.cend(); ++file) {
            if (image.value(file.key()) != *file) {
                findings.append(QStringLiteral("was touched: ") + file.key());
            }
        }
        if (!image.value(library + QStringLiteral("-wal")).isEmpty()) {
            findings.append(QStringLiteral("a log was left that would go into the next file"));
        }
    };
    try {
        expectUntouched();
        expectRefusal(bench.store(), refusal.words);
        expectUntouched();
        if (refusal.preserves) {
            findings += findingsOfCopies(bench);
        }
        FolderImage healed = bench.image();
        for (const QString &name : refusal.start.keys()) {
            if (name.endsWith(u".db")) {
                healed.remove(name);
            }
        }
        healed.insert(refusal.healed);
        bench.reset(healed);
    } catch (const std::exception &failure) {
        findings.append(QStringLiteral("not refused once more: ") + describe(failure));
    }
    return findings + bench.findingsOfFurtherWork();
}

void addRefusals(std::vector<Deed> &deeds, Place place, const FolderImage &filled)
{
    const QByteArray file = filled.value(library);
    const FolderImage one = afterEdit(place, filled, QStringLiteral("one history"));
    const FolderImage other = afterEdit(place, filled, QStringLiteral("the other history"));
    const QByteArray foreign = filledLibrary(place).value(library);
    const FolderImage newer = after(place, filled, [](LibraryStore &) {});
    const QByteArray newest = [&] {
        FaultBench bench(place);
        bench.reset(newer);
        SQLiteDatabase(bench.folder() + u'/' + library).executeScript("PRAGMA user_version = 99");
        return bench.image().value(library);
    }();

    const FolderImage justOne{{library, one.value(library)}};
    const FolderImage just{{library, file}};
    const Refusal refusals[]{
        {"opening of an older file", "is older than the copy", with(one, library, file), justOne},
        {"opening of another history", "has diverged", with(one, library, other.value(library)), justOne},
        {"opening of another library", "has diverged", with(filled, library, foreign), just},
        {"opening of a file without bytes", "is older than the copy", with(filled, library, ""), just},
        {"opening beside a conflict copy", "created a conflicting Quire database",
            with(filled, QStringLiteral("quire (Anna's conflicted copy).db"), other.value(library)), just},
        {"opening of a newer version's file", "created by a newer version", with(newer, library, newest), just, false},
    };
    for (const Refusal &refusal : refusals) {
        deeds.push_back({refusal.name, Deed::Kind::Refusal, refusal.start,
            [words = refusal.words](LibraryStore &store) { expectRefusal(store, words); },
            [refusal](FaultBench &bench) { return aftermathOf(refusal, bench); }, refusal.preserves ? "R12" : "R14"});
    }
}

} // namespace

void addReliabilityDeeds(std::vector<Deed> &deeds, Place place, const FolderImage &filled)
{
    addBackups(deeds, place, filled);
    addOpenings(deeds, place, filled);
    addRefusals(deeds, place, filled);
}

} // namespace quire::testing
