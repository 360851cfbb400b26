// Opening, loading and closing the library.

#include "concurrency/InBackground.h"
#include "core/AppModelAssign.h"
#include "core/LoadedLibrary.h"
#include "persistence/AppLog.h"
#include "persistence/LibraryStore.h"
#include "records/DateParser.h"
#include "records/Failure.h"

#include <QCoroFuture>

#include <QPointer>

#include <algorithm>

namespace quire {

namespace {

// Tells whether the last run crashed, and begins the record of this one.
QFuture<bool> beginSessionRecord(const QuireSessionHealth &health, Instant now)
{
    return inBackground([health, now] {
        const auto before = health.read();
        health.write({QUuid::createUuid(), DateParser::iso8601(now), std::nullopt, false});
        return before && !before->clean;
    });
}

QFuture<void> endSessionRecord(const QuireSessionHealth &health, Instant now)
{
    return inBackground([health, now] { health.markClean(now); });
}

template<typename Record>
QFuture<std::shared_ptr<const LibraryIndex>> indexInBackground(
    const QList<Record> &records, const QList<Record> &recordsBefore, const std::shared_ptr<const LibraryIndex> &before)
{
    return inBackground([=] { return LibraryIndex::of(records, recordsBefore, before); });
}

// The record of the same title as it is now; the old one stays when it is gone.
template<typename Record>
std::optional<Record> refreshed(const std::optional<Record> &selected, const QList<Record> &records)
{
    if (!selected) {
        return std::nullopt;
    }
    const auto found = std::find_if(
        records.begin(), records.end(), [&selected](const Record &record) { return record.id == selected->id; });
    return found == records.end() ? selected : *found;
}

} // namespace

QCoro::Task<> AppModel::start()
{
    if (m_didStart) {
        co_return;
    }
    m_didStart = true;
    const QPointer self(this);
    beginLoadingLaunchCache();
    try {
        const auto beginning = beginSession();
        const bool recoveringFromCrash = co_await beginning;
        if (!self || m_isShuttingDown) {
            co_return; // or the library would be open again after its end
        }
        const auto preparing = m_store->prepare(recoveringFromCrash);
        co_await preparing;
        if (!self || m_isShuttingDown) {
            co_return;
        }
        const auto loading = reload();
        co_await loading;
        if (!self || m_isShuttingDown) {
            co_return;
        }
    } catch (const std::exception &error) {
        if (self) {
            reportFailedStart(describe(error));
        }
        co_return;
    }
    assign(m_isReady, true, &AppModel::isReadyChanged);
    scheduleAutomaticPublishing();
    scheduleAutomaticBackups();

    if (m_settings.showBooksSection && m_settings.automaticGoodreadsSync && m_settings.goodreadsRSSKeySet
        && !m_settings.goodreadsUserID.isEmpty()) {
        const auto synchronizing = synchronizeGoodreads(true);
        co_await synchronizing;
        if (!self || m_isShuttingDown) {
            co_return;
        }
    }
    if (m_settings.showAudioSection && m_settings.automaticAudibleSync && canReadAudible()) {
        const auto synchronizing = synchronizeAudible(true);
        co_await synchronizing;
        if (!self || m_isShuttingDown) {
            co_return;
        }
    }
    scheduleArtworkCaching();
}

QCoro::Task<bool> AppModel::beginSession()
{
    if (!m_sessionHealth) {
        co_return false;
    }
    const auto beginning = beginSessionRecord(*m_sessionHealth, m_dependencies.clock.now());
    m_session = beginning;
    co_return co_await beginning;
}

QCoro::Task<> AppModel::endSession()
{
    if (!m_session) {
        co_return;
    }
    const QPointer self(this);
    try {
        const auto beginning = *m_session; // its record may still be on the way to the disk
        m_session.reset();
        co_await beginning;
        if (!self || !m_sessionHealth) {
            co_return;
        }
        const auto ending = endSessionRecord(*m_sessionHealth, m_dependencies.clock.now());
        co_await ending;
    } catch (const std::exception &) {
        // There was none, or the next start checks the library without need.
    }
}

void AppModel::reportFailedStart(const QString &description)
{
    AppLog::write(QStringLiteral("Startup failed: ") + description);
    setNotice(AppNotice::error(QStringLiteral("Quire Could Not Open"), description));
}

QCoro::Task<> AppModel::reload()
{
    const QPointer self(this);
    const auto store = m_store; // the reads end even if the model does not live to see it
    const auto booksRead = store->books();
    const auto audiobooksRead = store->audiobooks();
    const auto tagsRead = store->tags();
    const auto settingsRead = store->settings();
    const auto locationRead = store->databaseURL();

    QList<Book> books;
    QList<Audiobook> audiobooks;
    QList<TagCount> tags;
    SettingsMap values;
    AudibleAppAvailability audibleAvailability;
    std::shared_ptr<const LibraryIndex> bookIndex;
    std::shared_ptr<const LibraryIndex> audiobookIndex;
    std::exception_ptr failure;
    try {
        books = co_await booksRead;
        if (!self) {
            co_return;
        }
        const auto booksIndexed = indexInBackground(books, m_books, m_bookIndex);
        audiobooks = co_await audiobooksRead;
        if (!self) {
            co_return;
        }
        const auto audiobooksIndexed = indexInBackground(audiobooks, m_audiobooks, m_audiobookIndex);
        tags = co_await tagsRead;
        values = co_await settingsRead;
        const auto audibleLookedFor = audibleAvailabilityIn(values);
        audibleAvailability = co_await audibleLookedFor;
        bookIndex = co_await booksIndexed;
        audiobookIndex = co_await audiobooksIndexed;
    } catch (...) {
        failure = std::current_exception();
    }
    const QString location = co_await locationRead; // the last of the five: none is under way any more
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (!self) {
        co_return;
    }

    assignLists({books, bookIndex, audiobooks, audiobookIndex, tags});
    assign(m_settings, makeSettingsSnapshot(values, location), &AppModel::settingsChanged);
    assign(m_audibleAvailability, audibleAvailability, &AppModel::audibleAvailabilityChanged);
    settleTab(values.value(QStringLiteral("selectedTab")));
    rebuildDerivedState();
    saveLaunchCache(location);
    refreshSelection();
}

void AppModel::assignLists(const LoadedLibrary &library)
{
    m_bookIndex = library.bookIndex;
    m_books = library.books;
    Q_EMIT booksChanged();
    m_audiobookIndex = library.audiobookIndex;
    m_audiobooks = library.audiobooks;
    Q_EMIT audiobooksChanged();
    m_tags = library.tags;
    Q_EMIT tagsChanged();
}

void AppModel::settleTab(const QString &storedWord)
{
    LibraryTab tab = m_selectedTab;
    if (!m_hasRestoredSelectedTab) {
        m_hasRestoredSelectedTab = true;
        tab = fromRawValue<LibraryTab>(storedWord).value_or(LibraryTab::Insights);
    }
    setSelectedTab(visibleTab(tab));
}

void AppModel::refreshSelection()
{
    setSelectedBook(refreshed(m_selectedBook, m_books));
    setSelectedAudiobook(refreshed(m_selectedAudiobook, m_audiobooks));
}

QCoro::Task<> AppModel::shutdown()
{
    const QPointer self(this);
    m_isShuttingDown = true;
    m_ending.request_stop();
    m_toastTask.cancel();
    m_audibleSearchTask.cancel();
    m_automaticPublishingTask.cancel();
    m_automaticBackupTask.cancel();
    m_artworkTask.cancel();
    m_selectedTabSaveTask.cancel();
    m_launchCacheReadTask.cancel();

    const auto closing = m_store->shutdown();
    co_await closing;
    if (self) {
        const auto ending = endSession();
        co_await ending;
    }
}

} // namespace quire
