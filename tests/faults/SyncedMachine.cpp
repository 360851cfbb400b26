#include "faults/SyncedMachine.h"

#include "persistence/CloudLineage.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "reliability/QuireReliabilityError.h"
#include "testing/Await.h"

#include <QDir>
#include <QFile>

#include <atomic>
#include <stdexcept>

namespace quire::testing {

namespace {

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        throw std::runtime_error("cannot write " + path.toStdString());
    }
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::optional<QuireCloudLineage> lineageOf(const QString &path)
{
    try {
        const SQLiteDatabase database(path, true);
        return CloudLineage::currentLineage(database, Instant());
    } catch (const DatabaseError &) {
        return std::nullopt;
    }
}

bool isLineageOf(const QString &path, const QString &other)
{
    const auto a = lineageOf(path);
    const auto b = lineageOf(other);
    return a && a == b;
}

const char *nameOf(Ending ending)
{
    switch (ending) {
    case Ending::Opened:
        return "opened";
    case Ending::OpenedLongerFork:
        return "opened, a longer fork";
    case Ending::OpenedNewLibrary:
        return "opened, a new library";
    case Ending::ConflictCopy:
        return "a conflict copy";
    case Ending::RolledBack:
        return "rolled back";
    case Ending::Diverged:
        return "diverged";
    case Ending::NoLibrary:
        return "no library";
    }
    Q_UNREACHABLE();
}

bool isOpen(Ending ending)
{
    return ending == Ending::Opened || ending == Ending::OpenedLongerFork || ending == Ending::OpenedNewLibrary;
}

} // namespace

bool isOf(const MomentPtr &later, const MomentPtr &moment)
{
    for (const Moment *at = later.get(); at; at = at->before.get()) {
        if (at == moment.get()) {
            return true;
        }
    }
    return false;
}

void SyncedMachine::deliver(const MomentPtr &moment)
{
    deliverNoLibrary(moment->file);
    m_file = moment;
}

void SyncedMachine::deliverNoLibrary(const QByteArray &bytes)
{
    m_file.reset();
    m_bytes = bytes;
    QFile::remove(libraryPath());
    if (!bytes.isNull()) {
        const QString partial = path(QStringLiteral(".quire.db.partial"));
        put(partial, bytes);
        QFile::rename(partial, libraryPath());
    }
}

void SyncedMachine::leave(const QString &name, const QByteArray &bytes)
{
    put(path(name), bytes);
    if (name.contains(u"conflict", Qt::CaseInsensitive) && name.endsWith(u".db", Qt::CaseInsensitive)) {
        m_conflictCopies.insert(name, bytes);
    }
}

void SyncedMachine::forgetLibrary()
{
    QFile::remove(memory().recordURL(libraryPath()));
    m_remembered.reset();
}

Ending SyncedMachine::expected() const
{
    if (!m_conflictCopies.isEmpty()) {
        return Ending::ConflictCopy;
    }
    if (!m_file) {
        if (!m_remembered) {
            return m_bytes.isEmpty() ? Ending::OpenedNewLibrary : Ending::NoLibrary;
        }
        return m_bytes.isNull() ? Ending::Diverged : Ending::RolledBack;
    }
    if (!m_remembered || isOf(m_file, m_remembered)) {
        return Ending::Opened;
    }
    if (m_file->library != m_remembered->library) {
        return Ending::Diverged;
    }
    if (m_file->generation == m_remembered->generation) {
        return Ending::Diverged;
    }
    return m_file->generation < m_remembered->generation ? Ending::RolledBack : Ending::OpenedLongerFork;
}

Ending SyncedMachine::open(LibraryStore &store) const
{
    try {
        await(store.prepare(false));
        return Ending::Opened;
    } catch (const QuireReliabilityError &failure) {
        switch (failure.kind()) {
        case QuireReliabilityError::Kind::CloudConflictCopy:
            return Ending::ConflictCopy;
        case QuireReliabilityError::Kind::CloudLibraryRolledBack:
            return Ending::RolledBack;
        case QuireReliabilityError::Kind::CloudLibraryDiverged:
            return Ending::Diverged;
        case QuireReliabilityError::Kind::InvalidImport:
            break;
        }
        throw;
    } catch (const DatabaseError &failure) {
        if (failure.text() == u"file is not a database" || failure.text() == u"database disk image is malformed") {
            return Ending::NoLibrary;
        }
        throw;
    }
}

void SyncedMachine::edit(LibraryStore &store, int edits) const
{
    for (int count = 0; count < edits; ++count) {
        await(store.setBookHidden(1, true)); // a change even if it changes nothing
    }
}

Ending SyncedMachine::use(int edits, bool crashes, QStringList &findings)
{
    const Ending should = expected();
    const QString record = memory().recordURL(libraryPath());
    if (auto remembered = memory().read(libraryPath()); tamper && remembered) {
        if (const auto current = lineageOf(libraryPath())) {
            tamper(*remembered, *current);
            memory().save(*remembered, libraryPath());
        }
    }
    const QByteArray memoryBefore = bytesOf(record);
    Ending did = Ending::Opened;
    {
        LibraryStore store(m_clock, m_folder.path());
        did = open(store);
        if (did == Ending::Opened) {
            did = isOpen(should) ? should : Ending::Opened;
            if (did == Ending::OpenedNewLibrary) {
                ManualBookDraft draft;
                draft.title = QStringLiteral("First");
                await(store.addManualBook(draft, std::nullopt));
            }
            edit(store, edits);
            if (!crashes) {
                await(store.shutdown());
            }
        }
    }
    if (did != should) {
        findings.append(QStringLiteral("%1 where it must be %2")
                            .arg(QString::fromLatin1(nameOf(did)), QString::fromLatin1(nameOf(should))));
    }
    if (did == Ending::NoLibrary) {
        return did;
    }
    if (isOpen(did)) {
        const MomentPtr atOpening = m_file;
        takeOver(did, edits, findings);
        m_remembered = crashes && atOpening ? atOpening : m_file;
        if (crashes && !atOpening) {
            forgetLibrary(); // made before the first change, which no moment stands for
        }
    } else {
        checkRefusal(did, memoryBefore, findings);
    }
    return did;
}

void SyncedMachine::takeOver(Ending ending, int edits, QStringList &findings)
{
    static std::atomic<int> libraries = 1000;

    const auto lineage = lineageOf(libraryPath());
    const qint64 before = m_file ? m_file->generation : 0;
    if (!lineage || (m_file && lineage->generation != before + edits)) {
        findings.append(QStringLiteral("the generation did not follow the changes"));
    }
    m_bytes = bytesOf(libraryPath());
    if (ending == Ending::OpenedNewLibrary || !m_file) {
        m_file = std::make_shared<Moment>(Moment{++libraries, lineage ? lineage->generation : 0, m_bytes, nullptr});
    } else if (edits > 0) {
        m_file = std::make_shared<Moment>(Moment{m_file->library, before + edits, m_bytes, m_file});
    }
}

void SyncedMachine::checkRefusal(Ending ending, const QByteArray &memoryBefore, QStringList &findings)
{
    if (bytesOf(libraryPath()) != m_bytes || QFile::exists(libraryPath()) == m_bytes.isNull()) {
        findings.append(QStringLiteral("the refused file was touched"));
    }
    if (bytesOf(memory().recordURL(libraryPath())) != memoryBefore) {
        findings.append(QStringLiteral("the memory was touched"));
    }
    if (QFile::exists(path(QStringLiteral(".Quire Locks/Quire Library.lock")))) {
        findings.append(QStringLiteral("the lease was kept"));
    }
    const QDir recovery(path(QStringLiteral("Recovery")));
    bool isCurrentKept = m_bytes.isNull();
    bool isConflictKept = ending != Ending::ConflictCopy;
    for (const QString &name : recovery.entryList(QDir::Files)) {
        const QString copy = recovery.filePath(name);
        isCurrentKept = isCurrentKept
            || (m_file ? isLineageOf(copy, libraryPath()) : !m_bytes.isNull() && bytesOf(copy) == m_bytes);
        for (auto conflict = m_conflictCopies.begin(); conflict != m_conflictCopies.end(); ++conflict) {
            isConflictKept = isConflictKept || isLineageOf(copy, path(conflict.key()));
        }
        QFile::remove(copy);
    }
    if (!isCurrentKept || !isConflictKept) {
        findings.append(QStringLiteral("what was refused was not preserved"));
    }
}

void SyncedMachine::heal()
{
    for (auto conflict = m_conflictCopies.begin(); conflict != m_conflictCopies.end(); ++conflict) {
        QFile::remove(path(conflict.key()));
    }
    m_conflictCopies.clear();
    if (m_remembered) {
        deliver(m_remembered);
    }
}

} // namespace quire::testing
