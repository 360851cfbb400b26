#include "QuireApp/ViewModels/AddAudiobookViewModel.h"

#include "concurrency/Detach.h"
#include "core/AppModel.h"
#include "QuireApp/ViewModels/LibraryTexts.h"
#include "records/Text.h"

#include <QPointer>

namespace quire {

AddAudiobookViewModel::AddAudiobookViewModel(AppModel &model, QObject *parent)
    : AddTitleViewModel(model, QStringLiteral("Search Audible"), parent)
    , m_search([this](QString query, std::stop_token stop) { return lookUp(std::move(query), std::move(stop)); },
          [this] {
              m_found.clear();
              m_results.show(m_found);
          })
{
    m_statuses.setChoices(LibraryTexts::listeningStatuses());
    reset();
}

bool AddAudiobookViewModel::canAdd() const
{
    return !Text::trimmed(m_manualTitle).isEmpty();
}

void AddAudiobookViewModel::reset()
{
    m_search.clear();
    for (QString *field :
        {&m_manualTitle, &m_manualAuthor, &m_manualNarrator, &m_manualSeries, &m_manualBookNumber, &m_manualSummary}) {
        field->clear();
    }
    m_manualStatus = QStringLiteral("read");
    beginAnew();
    Q_EMIT draftChanged();
}

QCoro::Task<qsizetype> AddAudiobookViewModel::lookUp(QString query, std::stop_token stop)
{
    const QPointer self(this);
    const auto searching = m_model.searchAudibleCatalog(query, CatalogSearch::resultLimit, stop);
    const QList<AudibleCatalogBook> found = co_await searching;
    if (self && !stop.stop_requested()) {
        m_found = found;
        m_results.show(m_found);
    }
    co_return found.size();
}

void AddAudiobookViewModel::addResult(int row, const QString &status)
{
    if (row >= 0 && row < m_found.size()) {
        detach(finish(m_model.addAudiobook(m_found.at(row), status)));
    }
}

void AddAudiobookViewModel::addDraft()
{
    detach(finish(m_model.addAudiobook(draft(), m_manualStatus)));
}

AudibleCatalogBook AddAudiobookViewModel::draft() const
{
    AudibleCatalogBook book; // without an ASIN: the library gives it an identifier of its own
    book.title = Text::trimmed(m_manualTitle);
    book.author = Text::nonEmptyValue(m_manualAuthor);
    book.narrator = Text::nonEmptyValue(m_manualNarrator);
    book.series = Text::nonEmptyValue(m_manualSeries);
    book.bookNumber = Text::decimalInteger(Text::trimmed(m_manualBookNumber));
    book.summary = Text::nonEmptyValue(m_manualSummary);
    return book;
}

} // namespace quire
