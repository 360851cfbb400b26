#include "QuireApp/ViewModels/AddBookViewModel.h"

#include "concurrency/Detach.h"
#include "core/AppModel.h"
#include "QuireApp/ViewModels/LibraryTexts.h"
#include "records/Text.h"

#include <QPointer>

namespace quire {

AddBookViewModel::AddBookViewModel(AppModel &model, QObject *parent)
    : AddTitleViewModel(model, QStringLiteral("Search Books"), parent)
    , m_search([this](QString query, std::stop_token stop) { return lookUp(std::move(query), std::move(stop)); },
          [this] {
              m_found.clear();
              m_results.show(m_found);
          })
{
    m_shelves.setChoices(LibraryTexts::readingStatuses());
    reset();
}

bool AddBookViewModel::canAdd() const
{
    return !Text::trimmed(m_title).isEmpty() && !Text::trimmed(m_author).isEmpty();
}

void AddBookViewModel::reset()
{
    m_search.clear();
    for (QString *field : {&m_title, &m_author, &m_isbn, &m_pages, &m_year, &m_summary, &m_notes}) {
        field->clear();
    }
    m_shelf = QStringLiteral("read");
    m_rating = 0;
    beginAnew();
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

} // namespace quire
