#include "faults/FaultBench.h"

#include "faults/FaultyDisk.h"
#include "persistence/QuireLibraryLocation.h"
#include "records/Failure.h"
#include "reliability/QuireCloudLineage.h"
#include "reliability/QuireLibraryLeaseOwner.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quire::testing {

namespace {

const QString memoryFolder = QStringLiteral("Cloud Library State");

// What a machine remembers of a library is filed under the library's path, which
// differs between the bench that made an image and the one that it is put into.
FolderImage rememberedAt(const QString &folder, const FolderImage &image)
{
    static const QRegularExpression record(QLatin1Char('^') + memoryFolder + QStringLiteral("/[0-9a-f]{64}\\.json$"));
    const QString url
        = QuireCloudLineageStore(folder + u'/' + memoryFolder).recordURL(folder + QStringLiteral("/quire.db"));
    FolderImage moved;
    for (auto file = image.cbegin(); file != image.cend(); ++file) {
        moved.insert(record.match(file.key()).hasMatch() ? QDir(folder).relativeFilePath(url) : file.key(), *file);
    }
    return moved;
}

// Whoever held the lock of an image is no more: the program was started anew, after
// a power cut perhaps.
FolderImage withoutHolder(FolderImage image)
{
    for (auto file = image.begin(); file != image.end(); ++file) {
        auto owner = file.key().endsWith(QStringLiteral("/Owner.json")) ? QuireLibraryLeaseOwner::decoded(*file)
                                                                        : std::nullopt;
        if (owner && owner->processID == ::getpid()) {
            owner->processID = 2'000'000'000; // beyond what any system gives
            *file = owner->encoded();
        }
    }
    return image;
}

// Faults are made, not waited for: a folder in memory is as good and far faster.
QString rootTemplate()
{
    const QString memory = QStringLiteral("/dev/shm");
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + QStringLiteral("/quire-faults-XXXXXX");
}

} // namespace

const char *nameOf(Place place)
{
    return place == Place::DefaultFolder ? "default folder" : "chosen folder";
}

FaultBench::FaultBench(Place place)
    : m_place(place)
    , m_root(rootTemplate())
    , m_folder(outside(place == Place::DefaultFolder ? QStringLiteral("data/" QUIRE_SUPPORT_DIRECTORY)
                                                     : QStringLiteral("A reader's folder")))
{
    FaultyDisk::instance(); // before the first connection
    reset({});
}

FaultBench::~FaultBench()
{
    FaultyDisk::instance().release();
}

QString FaultBench::outside(const QString &name) const
{
    return m_root.path() + QLatin1Char('/') + name;
}

void FaultBench::reset(const FolderImage &image)
{
    FaultyDisk::instance().release();
    m_store.reset();
    // Each time: another bench may have been here since.
    qputenv("XDG_DATA_HOME", QFile::encodeName(outside(QStringLiteral("data"))));
    qputenv("QUIRE_LOG_PATH", QFile::encodeName(outside(QStringLiteral("log/quire.log"))));
    qputenv("HOME", QFile::encodeName(m_folder));
    QDir(m_folder).removeRecursively();
    QDir().mkpath(m_folder);
    writeFolder(m_folder, withoutHolder(rememberedAt(m_folder, image)));
    restart();
    FaultyDisk::instance().watch(m_folder);
}

void FaultBench::open(bool recoveringFromCrash)
{
    done(m_store->prepare(recoveringFromCrash));
}

void FaultBench::close()
{
    done(m_store->shutdown());
}

void FaultBench::letTimePass() const
{
    for (const QString &folder : {m_folder, libraryFolder()}) {
        const QString lock = folder + QStringLiteral("/.Quire Locks/Quire Library.lock");
        const QString record = lock + QStringLiteral("/Owner.json");
        if (!QuireLibraryLeaseOwner::read(record)) {
            constexpr timespec longAgo{.tv_sec = 1'000'000'000, .tv_nsec = 0};
            const timespec times[2]{longAgo, longAgo};
            for (const QString &path : {lock, record}) {
                ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0); // when it is there
            }
        }
    }
}

void FaultBench::restart()
{
    m_store.reset();
    letTimePass();
    m_store = m_place == Place::DefaultFolder ? std::make_unique<LibraryStore>(m_clock)
                                              : std::make_unique<LibraryStore>(m_clock, m_folder);
}

QString FaultBench::libraryFolder() const
{
    return QuireLibraryLocation::recordedDirectory(m_folder + QStringLiteral("/Library Location.json"))
        .value_or(m_folder);
}

QStringList FaultBench::findingsOfFurtherWork()
{
    const QString word = QStringLiteral("further work");
    const auto isThere = [&] {
        const auto setting = done(m_store->setting(word));
        const auto books = done(m_store->books());
        return setting == word
            && std::any_of(books.begin(), books.end(), [&](const Book &book) { return book.notes == word; });
    };
    QStringList findings;
    try {
        open(true);
        done(m_store->setSetting(word, word));
        ManualBookDraft draft;
        draft.title = word;
        draft.shelf = QStringLiteral("read");
        draft.notes = word;
        done(m_store->addManualBook(draft, std::nullopt));
        if (!isThere()) {
            findings.append(QStringLiteral("further work was told to be done and is not there"));
        }
        close();
        restart();
        open();
        if (!isThere()) {
            findings.append(QStringLiteral("further work is not there after another start"));
        }
        close();
    } catch (const Failure &failure) {
        findings.append(QStringLiteral("no further work: ") + failure.description());
    }
    return findings;
}

} // namespace quire::testing
