// What the reader looks at: sections, shelves, search, pages, details.

#include "core/AppModelAssign.h"
#include "core/AudibleStatistics.h"
#include "core/GoodreadsStatistics.h"
#include "core/LibraryFilter.h"
#include "core/Paging.h"
#include "core/ReadingInsights.h"
#include "persistence/AppLog.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"

#include <QCoroFuture>

#include <QPointer>

namespace quire {

namespace {

template<typename Record>
std::optional<Record> mostRecent(const QList<Record> &records, const LibraryIndex &index, LibraryShelf shelf)
{
    const auto row = mostRecentRow(index, shelf);
    return row ? std::optional(records[*row]) : std::nullopt;
}

} // namespace

LibraryTab AppModel::visibleTab(LibraryTab tab) const
{
    const bool isHidden = (tab == LibraryTab::Books && !m_settings.showBooksSection)
        || (tab == LibraryTab::Audio && !m_settings.showAudioSection);
    return isHidden ? LibraryTab::Insights : tab;
}

void AppModel::setSelectedTab(LibraryTab tab)
{
    if (m_selectedTab == tab) {
        return;
    }
    assign(m_selectedTab, tab, &AppModel::selectedTabChanged);
    m_isChangingLibraryContext = true;
    setSelectedShelf(LibraryShelf::Read);
    setSearchText(QString());
    assign(m_audibleCatalogResults, {}, &AppModel::audibleCatalogResultsChanged);
    assign(m_audibleSearchError, std::nullopt, &AppModel::audibleSearchErrorChanged);
    m_isChangingLibraryContext = false;
    rebuildFilteredLibraries(false, false);
    rememberSelectedTab();
}

void AppModel::setSelectedShelf(LibraryShelf shelf)
{
    if (m_selectedShelf == shelf) {
        return;
    }
    assign(m_selectedShelf, shelf, &AppModel::selectedShelfChanged);
    if (!m_isChangingLibraryContext) {
        rebuildFilteredLibraries(false, false);
    }
}

void AppModel::setSelectedSort(LibrarySort sort)
{
    if (m_selectedSort == sort) {
        return;
    }
    assign(m_selectedSort, sort, &AppModel::selectedSortChanged);
    if (!m_isChangingLibraryContext) {
        rebuildFilteredLibraries(false, false);
    }
}

void AppModel::setSearchText(const QString &text)
{
    if (m_searchText == text) {
        return;
    }
    assign(m_searchText, text, &AppModel::searchTextChanged);
    if (!m_isChangingLibraryContext) {
        rebuildFilteredLibraries(false, false);
        scheduleAudibleSearch();
    }
}

void AppModel::rebuildFilteredLibraries(bool force, bool includeBoth)
{
    if (includeBoth || m_selectedTab == LibraryTab::Books) {
        const auto books = makeFilteredBooks();
        if (force || !books.hasSameIds(m_filteredBooks)) {
            m_filteredBooks = books;
            Q_EMIT filteredBooksChanged();
            setBookPage(1);
        }
    }
    if (includeBoth || m_selectedTab == LibraryTab::Audio) {
        const auto audiobooks = makeFilteredAudiobooks();
        if (force || !audiobooks.hasSameIds(m_filteredAudiobooks)) {
            m_filteredAudiobooks = audiobooks;
            Q_EMIT filteredAudiobooksChanged();
        }
    }
}

LibrarySlice<Book> AppModel::makeFilteredBooks() const
{
    return {m_books, filteredRows(*m_bookIndex, {m_selectedShelf, m_selectedSort, m_searchText})};
}

LibrarySlice<Audiobook> AppModel::makeFilteredAudiobooks() const
{
    return {m_audiobooks, filteredRows(*m_audiobookIndex, {m_selectedShelf, m_selectedSort, m_searchText})};
}

void AppModel::rebuildDerivedState()
{
    const ReadingHistory history(m_books, *m_bookIndex, m_dependencies.clock.now());
    assign(m_goodreadsStatistics, makeGoodreadsStatistics(history), &AppModel::goodreadsStatisticsChanged);
    assign(m_readingInsights, makeReadingInsights(history), &AppModel::readingInsightsChanged);
    assign(m_audibleStatistics, makeAudibleStatistics(m_audiobooks), &AppModel::audibleStatisticsChanged);
    assign(m_currentBook, mostRecent(m_books, *m_bookIndex, LibraryShelf::Active), &AppModel::currentBookChanged);
    assign(m_currentAudiobook, mostRecent(m_audiobooks, *m_audiobookIndex, LibraryShelf::Active),
        &AppModel::currentAudiobookChanged);
    rebuildFilteredLibraries(true, true);
}

qint64 AppModel::totalBookPages() const
{
    return Paging::pageCount(m_filteredBooks.size());
}

LibrarySlice<Book> AppModel::paginatedBooks() const
{
    return Paging::page(m_filteredBooks, m_bookPage);
}

QString AppModel::bookPageDescription() const
{
    return Paging::description(m_bookPage, totalBookPages());
}

void AppModel::setBookPage(qint64 page)
{
    assign(m_bookPage, page, &AppModel::bookPageChanged);
}

void AppModel::showNextBookPage()
{
    setBookPage(Paging::clamped(m_bookPage + 1, totalBookPages()));
}

void AppModel::showPreviousBookPage()
{
    setBookPage(Paging::clamped(m_bookPage - 1, totalBookPages()));
}

void AppModel::setSelectedBook(const std::optional<Book> &book)
{
    assign(m_selectedBook, book, &AppModel::selectedBookChanged);
}

void AppModel::setSelectedAudiobook(const std::optional<Audiobook> &audiobook)
{
    assign(m_selectedAudiobook, audiobook, &AppModel::selectedAudiobookChanged);
}

void AppModel::setNotice(const std::optional<AppNotice> &notice)
{
    assign(m_notice, notice, &AppModel::noticeChanged);
}

void AppModel::showToast(const QString &message, std::chrono::milliseconds duration)
{
    assign(m_toastMessage, message, &AppModel::toastMessageChanged);
    m_toastTask.start([this, duration](std::stop_token stop) { return clearToast(duration, stop); });
}

QCoro::Task<> AppModel::clearToast(std::chrono::milliseconds after, std::stop_token stop)
{
    const QPointer self(this);
    const auto sleeping = m_dependencies.clock.sleep(after, stop);
    co_await sleeping;
    if (self && !stop.stop_requested()) {
        assign(m_toastMessage, std::nullopt, &AppModel::toastMessageChanged);
    }
}

void AppModel::rememberSelectedTab()
{
    if (!m_hasRestoredSelectedTab) {
        return; // the change came from the restoring itself
    }
    saveLaunchCache();
    m_selectedTabSaveTask.start(
        [this, tab = m_selectedTab](std::stop_token stop) { return saveSelectedTab(tab, stop); });
}

QCoro::Task<> AppModel::saveSelectedTab(LibraryTab tab, std::stop_token stop)
{
    const QPointer self(this);
    // Several quick switches end in one write: each cancels the one before here.
    const auto yielding = m_dependencies.clock.sleep(std::chrono::nanoseconds(0), stop);
    co_await yielding;
    if (!self || stop.stop_requested()) {
        co_return;
    }
    try {
        const auto saving = m_store->setSetting(QStringLiteral("selectedTab"), rawValue(tab));
        co_await saving;
    } catch (const std::exception &error) {
        AppLog::write(QStringLiteral("Could not remember selected tab: ") + describe(error));
    }
}

} // namespace quire
