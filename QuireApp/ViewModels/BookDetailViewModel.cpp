#include "QuireApp/ViewModels/BookDetailViewModel.h"

#include "concurrency/Detach.h"
#include "core/AppModel.h"
#include "QuireApp/ViewModels/DetailTexts.h"
#include "QuireApp/ViewModels/LibraryTexts.h"
#include "records/Text.h"

#include <utility>

namespace quire {

namespace {

QCoro::Task<> finished(QCoro::Task<bool> work)
{
    co_await work; // the model has told the reader how it ended
}

} // namespace

BookDetailViewModel::BookDetailViewModel(AppModel &model, QObject *parent)
    : TitleDetailViewModel(model, LibraryTexts::readingStatuses(), parent)
{
    connect(&model, &AppModel::selectedBookChanged, this, &BookDetailViewModel::follow);
    follow();
}

bool BookDetailViewModel::isOpen() const
{
    return m_model.selectedBook().has_value();
}

// A library read anew brings fresh facts to the open view, and leaves what the
// reader has typed.
void BookDetailViewModel::follow()
{
    const auto &selected = m_model.selectedBook();
    const bool wasOpen = std::exchange(m_wasOpen, selected.has_value());
    if (selected) {
        const bool isAnother = !wasOpen || selected->id != m_book.id;
        m_book = *selected;
        setPills(DetailTexts::bookPills(m_book));
        Q_EMIT factsChanged();
        if (isAnother) {
            beginEdits(m_book.userRating, m_book.shelf, m_book.notes);
        }
    }
    if (wasOpen != m_wasOpen) {
        Q_EMIT isOpenChanged();
    }
}

QString BookDetailViewModel::summary() const
{
    return Text::trimmed(m_book.summary.value_or(QString()));
}

CoverSource BookDetailViewModel::cover() const
{
    return CoverSource::ofBook(m_book.id, m_book.coverData);
}

QUrl BookDetailViewModel::link() const
{
    return page(m_book.goodreadsURL);
}

QString BookDetailViewModel::metadata() const
{
    return DetailTexts::bookMetadata(m_book);
}

void BookDetailViewModel::close()
{
    m_model.setSelectedBook(std::nullopt);
}

void BookDetailViewModel::toggleHidden()
{
    detach(finished(m_model.setBookHidden(m_book, !m_book.isHidden)));
}

QCoro::Task<bool> BookDetailViewModel::store(double rating, QString state, QString notes)
{
    return m_model.saveBook(m_book.id, rating, std::move(state), std::move(notes));
}

} // namespace quire
