#include "QuireApp/ViewModels/CatalogSearch.h"

#include "records/Failure.h"
#include "records/Text.h"

#include <QPointer>

namespace quire {

CatalogSearch::CatalogSearch(Lookup lookup, std::function<void()> forget, QObject *parent)
    : QObject(parent)
    , m_lookup(std::move(lookup))
    , m_forget(std::move(forget))
{
}

void CatalogSearch::setQuery(const QString &query)
{
    if (query != m_query) {
        m_query = query;
        Q_EMIT queryChanged();
    }
}

void CatalogSearch::search()
{
    const QString query = Text::trimmed(m_query);
    if (Text::characterCount(query) < 2) {
        setState(m_isSearching, QStringLiteral("Enter at least two characters."));
        return;
    }
    m_searchTask.cancel();
    m_forget();
    setState(true, QString());
    m_searchTask.start([this, query](std::stop_token stop) { return run(query, std::move(stop)); });
}

QCoro::Task<> CatalogSearch::run(QString query, std::stop_token stop)
{
    const QPointer<CatalogSearch> self(this);
    QString failure;
    try {
        const auto looking = m_lookup(query, stop);
        const qsizetype found = co_await looking;
        if (found == 0) {
            failure = QStringLiteral("No matching titles were found.");
        }
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (self && !stop.stop_requested()) {
        setState(false, failure);
    }
}

void CatalogSearch::clear()
{
    m_searchTask.cancel();
    m_forget();
    setQuery(QString());
    setState(false, QString());
}

void CatalogSearch::setState(bool isSearching, const QString &errorMessage)
{
    if (isSearching != m_isSearching || errorMessage != m_errorMessage) {
        m_isSearching = isSearching;
        m_errorMessage = errorMessage;
        Q_EMIT stateChanged();
    }
}

} // namespace quire
