// AppModel is the spine of the program: it owns the library, holds everything
// that the interface shows, and drives all background work. The whole state of
// the program is read on this page: first the observable fields, then what can
// be done with them.
//
// Thread: the interface thread, all of it. What may take time is awaited, and
// every operation may be left suspended when the model dies: it then ends
// without touching it.
//
// Failures: an operation reports by `notice` (the reader asked for it), by
// `toastMessage` or by the log; only those documented so throw.

#pragma once

#include "concurrency/Clock.h"
#include "concurrency/TaskSlot.h"
#include "core/AppModelDependencies.h"
#include "core/LibrarySlice.h"
#include "core/QuireLaunchCache.h"
#include "core/SettingsEdit.h"
#include "core/SettingsSnapshot.h"
#include "records/AppNotice.h"
#include "records/AudibleAppAvailability.h"
#include "records/Audiobook.h"
#include "records/Book.h"
#include "records/CatalogBooks.h"
#include "records/Enumerations.h"
#include "records/Failure.h"
#include "records/ManualBookDraft.h"
#include "records/PublishResult.h"
#include "records/Statistics.h"
#include "records/TagCount.h"
#include "reliability/QuireBackgroundJob.h"
#include "reliability/QuireSessionHealth.h"

#include <QCoroTask>

#include <QFuture>
#include <QMap>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <type_traits>

namespace quire {

class LaunchCacheWriter;
class LibraryIndex;
class LibraryStore;
class QuireBackgroundWorkCoordinator;
struct AudibleSyncResult;
struct FolderQuestion;
struct GoodreadsSyncResult;
struct LoadedLibrary;
struct PublishingSnapshot;

class AppModel : public QObject
{
    Q_OBJECT

public:
    // store: not opened yet. launchCacheDirectory: where this machine's launch
    // cache and session record live, never the possibly shared library folder;
    // absent for a model without them. Reads one small file, the look.
    AppModel(std::unique_ptr<LibraryStore> store, const std::optional<QString> &launchCacheDirectory,
        AppModelDependencies dependencies, QObject *parent = nullptr);
    ~AppModel() override;

    // Observable fields. Each is followed by a signal of its own when it
    // changes; lists are announced whenever they are assigned. ---------------

    const QList<Book> &books() const { return m_books; } // hidden ones too, in the store's order
    const QList<Audiobook> &audiobooks() const { return m_audiobooks; }
    const LibrarySlice<Book> &filteredBooks() const { return m_filteredBooks; } // what the grid pages through
    const LibrarySlice<Audiobook> &filteredAudiobooks() const { return m_filteredAudiobooks; }
    qint64 bookPage() const { return m_bookPage; } // of filteredBooks, from 1
    const QList<TagCount> &tags() const { return m_tags; }
    const SettingsSnapshot &settings() const { return m_settings; }
    const std::optional<Book> &currentBook() const { return m_currentBook; } // being read now
    const std::optional<Audiobook> &currentAudiobook() const { return m_currentAudiobook; }
    const GoodreadsStatistics &goodreadsStatistics() const { return m_goodreadsStatistics; }
    const ReadingInsightsSnapshot &readingInsights() const { return m_readingInsights; }
    const AudibleStatistics &audibleStatistics() const { return m_audibleStatistics; }
    const QString &artworkStatus() const { return m_artworkStatus; }
    const AudibleAppAvailability &audibleAvailability() const { return m_audibleAvailability; }
    bool isReady() const { return m_isReady; } // the library is open and loaded
    bool isWorking() const { return m_isWorking; } // a foreground job runs
    const QString &activityLabel() const { return m_activityLabel; } // words beside the working indicator
    std::optional<SidebarOperation> activeSidebarOperation() const { return m_activeSidebarOperation; }
    bool isSyncingAll() const { return m_isSyncingAll; }
    const std::optional<QString> &toastMessage() const { return m_toastMessage; }
    const std::optional<AppNotice> &notice() const { return m_notice; }
    LibraryTab selectedTab() const { return m_selectedTab; }
    LibraryShelf selectedShelf() const { return m_selectedShelf; }
    LibrarySort selectedSort() const { return m_selectedSort; }
    const QString &searchText() const { return m_searchText; }
    const std::optional<Book> &selectedBook() const { return m_selectedBook; } // detail view open
    const std::optional<Audiobook> &selectedAudiobook() const { return m_selectedAudiobook; }
    const QList<AudibleCatalogBook> &audibleCatalogResults() const { return m_audibleCatalogResults; }
    bool isSearchingAudible() const { return m_isSearchingAudible; }
    const std::optional<QString> &audibleSearchError() const { return m_audibleSearchError; }

    // Read-only values made of them. -----------------------------------------

    qint64 totalBookPages() const; // at least 1
    LibrarySlice<Book> paginatedBooks() const; // the page of bookPage, which is first brought into range
    QString bookPageDescription() const;
    LibraryTab visibleTab(LibraryTab tab) const; // Insights stands in for a section that is switched off
    bool showsAudibleCatalog() const; // what is searched for on the audio tab is asked of the catalogue too

    // Life. --------------------------------------------------------------------

    // Opens the library, loads it, and runs the automatic syncs. Once per model;
    // a failure ends in the notice "Quire Could Not Open", with no second try.
    QCoro::Task<> start();

    // Reads everything anew and settles what is derived from it. Every change
    // of the library is followed by this. Throws the failure of the store,
    // with no field changed.
    QCoro::Task<> reload();

    // Cancels the tasks, closes the library, marks the session clean. Never
    // fails.
    QCoro::Task<> shutdown();

    // View state: each runs its change handler. --------------------------------

    void setSelectedTab(LibraryTab tab); // also empties shelf and search
    void setSelectedShelf(LibraryShelf shelf);
    void setSelectedSort(LibrarySort sort);
    void setSearchText(const QString &text);
    void setBookPage(qint64 page); // as it is, also out of range
    void showNextBookPage(); // within 1 and totalBookPages
    void showPreviousBookPage();
    void setSelectedBook(const std::optional<Book> &book);
    void setSelectedAudiobook(const std::optional<Audiobook> &audiobook);
    void setNotice(const std::optional<AppNotice> &notice);

    // Shows a passing text, replacing the one now shown.
    void showToast(const QString &message, std::chrono::milliseconds duration);

    // Jobs. ----------------------------------------------------------------------

    // The single road of every long job: the coordinator's slot, a line of job
    // history per attempt, another try for transient failures. Nothing when the
    // same job is already running or waiting; throws the final failure, or
    // Cancelled when `stop` ended the wait before another try.
    template<typename Result>
    QCoro::Task<std::optional<Result>> coordinated(QuireBackgroundJob job, bool automatic,
        std::function<QCoro::Task<Result>()> operation, std::stop_token stop = {});

    QCoro::Task<> synchronizeGoodreads(bool automatic);
    QCoro::Task<> synchronizeAudible(bool automatic);

    // Writes the reading list of this moment to the folder and the site that are
    // configured. A manual one tells how it ended; an automatic one shows nothing,
    // not even in passing, and the log has what went wrong.
    QCoro::Task<> publishReadingList(bool automatic);

    // What is published of the library as it is loaded now.
    PublishingSnapshot publishingSnapshot(Instant now) const;

    // Publishes again and again, each time the configured interval after the one
    // before, the first time after one interval; replaces the schedule that runs,
    // and is none where automatic publishing is switched off.
    void scheduleAutomaticPublishing();

    // Asks the update host whether there is a newer version, unless it has
    // answered within the last day; tells of one, and of nothing else.
    void checkForUpdatesIfNeeded();

    // Asks it now, instead of a check that is under way. manual: tells as well
    // that there is none, or why that could not be learnt.
    void checkForUpdates(bool manual);

    // One manual sync of every source that is configured, then the reading list.
    // Does nothing while a job runs.
    QCoro::Task<> synchronizeAll();

    // Catalogues. ----------------------------------------------------------------

    // Ask a catalogue, for whoever shows the answer; see AudibleService::search
    // and BookCatalogService::search. They throw the failures of the service.
    QCoro::Task<QList<BookCatalogBook>> searchBookCatalog(QString query, int limit, std::stop_token stop);
    QCoro::Task<QList<AudibleCatalogBook>> searchAudibleCatalog(QString query, int limit, std::stop_token stop);

    // Edits. ---------------------------------------------------------------------

    // Each adds one title, looks for its cover, and shows it on its shelf. True
    // when it was stored and loaded; false leaves the reason in `notice`, or none
    // when a foreground job runs. A cover that is not found never fails an add.

    QCoro::Task<bool> addBook(ManualBookDraft draft); // a draft without a title is refused
    // shelf: a word as that of Book::shelf. A work that is in the library is refused.
    QCoro::Task<bool> addCatalogBook(BookCatalogBook book, QString shelf);
    // status: a word as that of Audiobook::status.
    QCoro::Task<bool> addAudiobook(AudibleCatalogBook book, QString status);

    // Each stores what the reader may change of a title and closes its detail
    // view. True when done; false leaves the reason in `notice`, and the view open.
    // id: database row. rating: 0 to 5 in halves, 0 for none. shelf, status: words
    // as those of Book and Audiobook; one that is unknown is stored as it stands.
    QCoro::Task<bool> saveBook(qint64 id, double rating, QString shelf, QString notes);
    QCoro::Task<bool> saveAudiobook(qint64 id, double rating, QString status, QString notes);

    // Hides a book or restores it, and closes its detail view. True when done.
    QCoro::Task<bool> setBookHidden(Book book, bool hidden);

    // Appearance: the preview changes `settings` alone, for every move of the
    // mouse in a colour panel; the others store as well.
    void previewAccentAppearance(
        AccentColorChoice accentColor, bool usesCustomAccentColor, CustomAccentColor customAccentColor);
    QCoro::Task<> saveAccentAppearance(
        AccentColorChoice accentColor, bool usesCustomAccentColor, CustomAccentColor customAccentColor);
    QCoro::Task<> saveSidebarAppearance(SidebarAppearance appearance);

    // Backups. -------------------------------------------------------------------

    // A verified backup at the reader's command, behind the interface: nothing
    // tells that it runs, and a notice tells how it ended. path: the folder as
    // typed; absent for the configured one.
    QCoro::Task<> backUpDatabase(std::optional<QString> path = std::nullopt);

    // Tests whether a backup is due, now and then whenever the configured
    // interval has passed; replaces the schedule that runs, if any.
    void scheduleAutomaticBackups();

    // One such test, with the backup if it is due. Tells the log alone, and
    // nothing of a failure once `stop` is requested.
    QCoro::Task<> performScheduledBackupIfDue(std::stop_token stop = {});

    // Covers. --------------------------------------------------------------------

    // Gives every title without a cover one, in the background, and tells of it
    // in artworkStatus; replaces the pass that runs, if any.
    void scheduleArtworkCaching();

    // Looks for a better cover of every audiobook. Does nothing while a job runs.
    // A notice tells how it ended.
    QCoro::Task<> refreshAudiobookCovers();

    // Settings. ------------------------------------------------------------------

    // Validates and stores what the settings window holds, takes the library to
    // another folder if that was chosen, then reloads. True when all of it is
    // done; false leaves the reason in `notice`, and what was stored before it. A
    // program that is ending goes no further, and gives no reason.
    QCoro::Task<bool> saveSettings(SettingsEdit edit);

    // Folders. -------------------------------------------------------------------

    // Asks the reader for a folder, beginning at `startingAt` if that is one.
    // The absolute path chosen, or nothing; the settings stay as they are.
    QCoro::Task<std::optional<QString>> chooseLocalPublishFolder(QString startingAt);
    QCoro::Task<std::optional<QString>> chooseBackupFolder(QString startingAt);
    QCoro::Task<std::optional<QString>> chooseDatabaseFolder(QString startingAt);

    // Shows the folder of the library in the desktop, and makes it if need be.
    QCoro::Task<> openDataFolder();
    // path: the folder to show; blank or absent for the configured one.
    QCoro::Task<> openBackupFolder(std::optional<QString> path);

    // Asks the reader where the Audible application keeps its library, and
    // remembers it if there is one.
    QCoro::Task<> grantAudibleLibraryAccess();

Q_SIGNALS:
    void booksChanged();
    void audiobooksChanged();
    void filteredBooksChanged();
    void filteredAudiobooksChanged();
    void bookPageChanged();
    void tagsChanged();
    void settingsChanged();
    void currentBookChanged();
    void currentAudiobookChanged();
    void goodreadsStatisticsChanged();
    void readingInsightsChanged();
    void audibleStatisticsChanged();
    void artworkStatusChanged();
    void audibleAvailabilityChanged();
    void isReadyChanged();
    void isWorkingChanged();
    void activityLabelChanged();
    void activeSidebarOperationChanged();
    void isSyncingAllChanged();
    void toastMessageChanged();
    void noticeChanged();
    void selectedTabChanged();
    void selectedShelfChanged();
    void selectedSortChanged();
    void searchTextChanged();
    void selectedBookChanged();
    void selectedAudiobookChanged();
    void audibleCatalogResultsChanged();
    void isSearchingAudibleChanged();
    void audibleSearchErrorChanged();

private:
    // Announces a change; nothing happens when the value stays the same.
    template<typename Value>
    void assign(Value &field, std::type_identity_t<Value> value, void (AppModel::*changed)());

    // Life.
    QCoro::Task<bool> beginSession();
    QCoro::Task<> endSession();
    void reportFailedStart(const QString &description);
    void assignLists(const LoadedLibrary &library);
    void settleTab(const QString &storedWord);
    void refreshSelection();

    // Launch cache.
    void restoreAppearance();
    void beginLoadingLaunchCache();
    QCoro::Task<> showLaunchCache(std::stop_token stop);
    // databaseLocation: absent when only the look has changed.
    void saveLaunchCache(const std::optional<QString> &databaseLocation = std::nullopt);

    // View state.
    void rebuildFilteredLibraries(bool force, bool includeBoth);
    void rebuildDerivedState();
    LibrarySlice<Book> makeFilteredBooks() const;
    LibrarySlice<Audiobook> makeFilteredAudiobooks() const;
    void rememberSelectedTab();
    QCoro::Task<> saveSelectedTab(LibraryTab tab, std::stop_token stop);
    QCoro::Task<> clearToast(std::chrono::milliseconds after, std::stop_token stop);
    void scheduleAudibleSearch();
    QCoro::Task<> searchAudible(QString query, std::stop_token stop);

    // Edits.
    QCoro::Task<bool> finishSaving(QFuture<void> storing, LibraryTab tab);
    bool beginAdding(const QString &title);
    void endAdding();
    QCoro::Task<bool> finishAdding(QFuture<qint64> storing, LibraryTab tab, LibraryShelf shelf);
    QCoro::Task<> saveAppearance(SettingsMap values);

    // Backups.
    QCoro::Task<> backUpOnSchedule(std::chrono::days interval, std::stop_token stop);

    // Covers.
    QCoro::Task<> cacheArtwork(std::stop_token stop);

    // Jobs.
    class HeldSlot;
    QCoro::Task<bool> runCoordinated(
        QuireBackgroundJob job, bool automatic, std::function<QCoro::Task<>()> operation, std::stop_token stop);
    QCoro::Task<> record(QuireJobEvent event);
    // A sync: the job, the library as it is then, and the report. Why it failed;
    // nothing when it did not.
    template<typename Result>
    QCoro::Task<std::optional<QString>> runSync(QuireBackgroundJob job, bool automatic,
        std::function<QCoro::Task<Result>()> operation, std::function<void(const Result &)> report);
    void beginWork(SidebarOperation operation, const QString &label);
    void endWork();
    std::function<QCoro::Task<GoodreadsSyncResult>()> goodreadsSync() const;
    void reportGoodreadsSync(const GoodreadsSyncResult &result, bool automatic);
    void reportGoodreadsFailure(const QString &description, bool automatic);

    // Publishing.
    void reportPublishing(const PublishResult &result, bool automatic);
    void reportPublishingFailure(const QString &message, bool automatic);
    QCoro::Task<> publishOnSchedule(std::chrono::minutes interval, std::stop_token stop);

    // Updates.
    QCoro::Task<> askForUpdate(bool manual, std::stop_token stop);
    QCoro::Task<> offerUpdate(QuireUpdateManifest manifest);

    // Audible.
    static QFuture<AudibleAppAvailability> audibleAvailabilityIn(const QMap<QString, QString> &settings);
    bool canReadAudible() const;
    std::function<QCoro::Task<AudibleSyncResult>()> audibleSync() const;
    void reportAudibleSync(const AudibleSyncResult &result, bool automatic);
    void reportAudibleFailure(const QString &description, bool automatic);
    QCoro::Task<> refreshAudibleAvailability();

    // Folders.
    QCoro::Task<std::optional<QString>> chooseFolder(FolderQuestion question, QString startingAt);
    QCoro::Task<> showFolder(QString folder);

    QList<Book> m_books;
    QList<Audiobook> m_audiobooks;
    LibrarySlice<Book> m_filteredBooks;
    LibrarySlice<Audiobook> m_filteredAudiobooks;
    qint64 m_bookPage = 1;
    QList<TagCount> m_tags;
    SettingsSnapshot m_settings;
    std::optional<Book> m_currentBook;
    std::optional<Audiobook> m_currentAudiobook;
    GoodreadsStatistics m_goodreadsStatistics;
    ReadingInsightsSnapshot m_readingInsights;
    AudibleStatistics m_audibleStatistics;
    QString m_artworkStatus = QStringLiteral("Artwork is stored locally as it becomes available.");
    AudibleAppAvailability m_audibleAvailability;
    bool m_isReady = false;
    bool m_isWorking = false;
    QString m_activityLabel;
    std::optional<SidebarOperation> m_activeSidebarOperation;
    bool m_isSyncingAll = false;
    std::optional<QString> m_toastMessage;
    std::optional<AppNotice> m_notice;
    LibraryTab m_selectedTab = LibraryTab::Insights;
    LibraryShelf m_selectedShelf = LibraryShelf::Read;
    LibrarySort m_selectedSort = LibrarySort::Recent;
    QString m_searchText;
    std::optional<Book> m_selectedBook;
    std::optional<Audiobook> m_selectedAudiobook;
    QList<AudibleCatalogBook> m_audibleCatalogResults;
    bool m_isSearchingAudible = false;
    std::optional<QString> m_audibleSearchError;

    AppModelDependencies m_dependencies;
    QuireUpdateService m_updateService;
    std::shared_ptr<LibraryStore> m_store; // shared with the jobs under way, which outlive the model
    // These three are absent without a launch cache directory.
    std::optional<QuireLaunchCache> m_launchCache;
    std::unique_ptr<LaunchCacheWriter> m_launchCacheWriter;
    std::optional<QuireSessionHealth> m_sessionHealth;
    std::unique_ptr<QuireBackgroundWorkCoordinator> m_workCoordinator;
    std::shared_ptr<const LibraryIndex> m_bookIndex; // keys of m_books, row by row
    std::shared_ptr<const LibraryIndex> m_audiobookIndex;
    bool m_didStart = false;
    TaskSlot m_toastTask;
    TaskSlot m_audibleSearchTask;
    TaskSlot m_automaticPublishingTask;
    TaskSlot m_automaticBackupTask;
    TaskSlot m_artworkTask;
    TaskSlot m_selectedTabSaveTask;
    TaskSlot m_updateCheckTask;
    TaskSlot m_launchCacheReadTask;
    bool m_hasRestoredSelectedTab = false; // only then is a tab change remembered
    bool m_isChangingLibraryContext = false; // a tab switch is resetting shelf and search
    bool m_isShuttingDown = false; // what is left of start() ends at its next step
    std::stop_source m_ending; // asked to stop then, for work that nobody else could end
    std::optional<QFuture<bool>> m_session; // its beginning, while its record awaits its end
};

template<typename Result>
QCoro::Task<std::optional<Result>> AppModel::coordinated(
    QuireBackgroundJob job, bool automatic, std::function<QCoro::Task<Result>()> operation, std::stop_token stop)
{
    struct Attempt
    {
        static QCoro::Task<> run(QCoro::Task<Result> task, std::optional<Result> &result) { result = co_await task; }
    };
    std::optional<Result> result;
    std::function<QCoro::Task<>()> attempt = [&] { return Attempt::run(operation(), result); };
    const auto running = runCoordinated(job, automatic, std::move(attempt), stop);
    co_await running;
    co_return result; // absent when turned away
}

template<typename Result>
QCoro::Task<std::optional<QString>> AppModel::runSync(QuireBackgroundJob job, bool automatic,
    std::function<QCoro::Task<Result>()> operation, std::function<void(const Result &)> report)
{
    const QPointer self(this);
    try {
        const auto running = coordinated<Result>(job, automatic, std::move(operation));
        const auto result = co_await running;
        if (!self || !result) {
            co_return std::nullopt;
        }
        const auto loading = reload();
        co_await loading;
        if (!self) {
            co_return std::nullopt;
        }
        if (!automatic) {
            scheduleArtworkCaching();
        }
        report(*result);
    } catch (const std::exception &error) {
        co_return describe(error);
    }
    co_return std::nullopt;
}

} // namespace quire
