#include "QuireApp/ViewModels/AddBookViewModel.h"

#include "concurrency/Detach.h"
#include "core/AppModel.h"
#include "QuireApp/ViewModels/LibraryTexts.h"
#include "records/Text.h"

#include <QPointer>

namespace quire {

AddBookViewModel::AddBookViewModel(AppModel &model, QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_search([this](QString query, std::stop_token stop) { return lookUp(std::move(query), std::move(stop)); },
          [this] {
              m_found.clear();
              m_results.show(m_found);
          })
{
    connect(&m_model, &AppModel::isWorkingChanged, this, &AddBookViewModel::workChanged);
    m_shelves.setChoices(LibraryTexts::readingStatuses());
    m_modes.setChoices({{QStringLiteral("search"), QStringLiteral("Search Books"), QString()},
        {QStringLiteral("manual"), QStringLiteral("Enter Manually"), QString()}});
    reset();
}

bool AddBookViewModel::isWorking() const
{
    return m_model.isWorking();
}

bool AddBookViewModel::canAdd() const
{
    return !Text::trimmed(m_title).isEmpty() && !Text::trimmed(m_author).isEmpty();
}

void AddBookViewModel::reset()
{
    ++m_opening;
    m_search.clear();
    m_entersManually = false;
    for (QString *field : {&m_title, &m_author, &m_isbn, &m_pages, &m_year, &m_summary, &m_notes}) {
        field->clear();
    }
    m_shelf = QStringLiteral("read");
    m_rating = 0;
    Q_EMIT entersManuallyChanged();
    Q_EMIT draftChanged();
}

QCoro::Task<qsizetype> AddBookViewModel::lookUp(QString query, std::stop_token stop)
{
    const QPointer self(this);
    const auto searching = m_model.searchBookCatalog(query, CatalogSearch::resultLimit, stop);
    const QList<BookCatalogBook> found = co_await searching;
    if (self && !stop.stop_requested()) {
        m_found = found;
        m_results.show(m_found);
    }
    co_return found.size();
}

void AddBookViewModel::addResult(int row, const QString &shelf)
{
    if (row >= 0 && row < m_found.size()) {
        detach(finish(m_model.addCatalogBook(m_found.at(row), shelf)));
    }
}

void AddBookViewModel::addDraft()
{
    detach(finish(m_model.addBook(draft())));
}

ManualBookDraft AddBookViewModel::draft() const
{
    ManualBookDraft draft;
    draft.title = Text::trimmed(m_title);
    draft.author = Text::trimmed(m_author);
    draft.isbn = Text::nonEmptyValue(m_isbn);
    draft.shelf = m_shelf;
    draft.userRating = m_rating;
    draft.numberOfPages = Text::decimalInteger(Text::trimmed(m_pages));
    draft.summary = Text::nonEmptyValue(m_summary);
    draft.publishedYear = Text::decimalInteger(Text::trimmed(m_year));
    draft.notes = Text::trimmed(m_notes);
    return draft;
}

QCoro::Task<> AddBookViewModel::finish(QCoro::Task<bool> adding)
{
    const QPointer self(this);
    const int opening = m_opening;
    const bool isAdded = co_await adding;
    if (self && isAdded && opening == m_opening) {
        Q_EMIT added();
    }
}

} // namespace quire
