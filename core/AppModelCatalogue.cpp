// The catalogues: searched at the reader's command, and as the search field is typed in.

#include "core/AppModelAssign.h"
#include "records/Failure.h"
#include "records/Text.h"
#include "sources/AudibleService.h"
#include "sources/BookCatalogService.h"

#include <QPointer>

namespace quire {

namespace {

using namespace std::chrono_literals;

constexpr auto pauseInTyping = 350ms;
constexpr int resultLimit = 8;
constexpr qsizetype shortestQuery = 2; // in characters as the reader sees them

} // namespace

QCoro::Task<QList<BookCatalogBook>> AppModel::searchBookCatalog(QString query, int limit, std::stop_token stop)
{
    return BookCatalogService::search(m_dependencies.network, m_dependencies.endpoints, query, limit, stop);
}

QCoro::Task<QList<AudibleCatalogBook>> AppModel::searchAudibleCatalog(QString query, int limit, std::stop_token stop)
{
    return AudibleService::search(m_dependencies.network, m_dependencies.endpoints, query, limit, stop);
}

bool AppModel::showsAudibleCatalog() const
{
    return m_selectedTab == LibraryTab::Audio && Text::characterCount(Text::trimmed(m_searchText)) >= shortestQuery;
}

void AppModel::scheduleAudibleSearch()
{
    m_audibleSearchTask.cancel();
    const bool isSearching = showsAudibleCatalog();
    assign(m_isSearchingAudible, isSearching, &AppModel::isSearchingAudibleChanged);
    assign(m_audibleSearchError, std::nullopt, &AppModel::audibleSearchErrorChanged);
    assign(m_audibleCatalogResults, {}, &AppModel::audibleCatalogResultsChanged);
    if (isSearching) {
        m_audibleSearchTask.start([this, query = Text::trimmed(m_searchText)](
                                      std::stop_token stop) { return searchAudible(query, std::move(stop)); });
    }
}

QCoro::Task<> AppModel::searchAudible(QString query, std::stop_token stop)
{
    const QPointer self(this);
    const auto waiting = m_dependencies.clock.sleep(pauseInTyping, stop);
    co_await waiting; // a key pressed meanwhile ends it here
    if (!self || stop.stop_requested()) {
        co_return;
    }
    QList<AudibleCatalogBook> results;
    std::optional<QString> failure;
    try {
        const auto searching = searchAudibleCatalog(query, resultLimit, stop);
        results = co_await searching;
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (!self || stop.stop_requested()) {
        co_return; // whoever stopped it has settled the fields
    }
    if (failure) {
        assign(m_audibleSearchError, failure, &AppModel::audibleSearchErrorChanged);
    } else {
        assign(m_audibleCatalogResults, results, &AppModel::audibleCatalogResultsChanged);
    }
    assign(m_isSearchingAudible, false, &AppModel::isSearchingAudibleChanged);
}

} // namespace quire
