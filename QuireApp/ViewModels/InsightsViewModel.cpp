#include "QuireApp/ViewModels/InsightsViewModel.h"

#include "core/AppModel.h"

#include <algorithm>

namespace quire {

QList<Book> currentlyReading(const QList<Book> &books)
{
    QList<std::pair<Instant, const Book *>> keyed; // one date parse a book
    for (const Book &book : books) {
        if (!book.isHidden && book.shelf == QLatin1String("currently-reading")) {
            keyed.append({recencyDate(book), &book});
        }
    }
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    QList<Book> current;
    current.reserve(keyed.size());
    for (const auto &[recency, book] : keyed) {
        current.append(*book);
    }
    return current;
}

InsightsViewModel::InsightsViewModel(AppModel &model, QObject *parent)
    : QObject(parent)
    , m_model(model)
{
    connect(&m_model, &AppModel::booksChanged, this, &InsightsViewModel::update);
    update();
}

void InsightsViewModel::update()
{
    QList<LibraryRow> rows;
    for (const Book &book : currentlyReading(m_model.books())) {
        rows.append(LibraryRow::of(book));
    }
    m_currentBooks.show(rows);

    const auto isFinished = [](const Book &book) { return !book.isHidden && book.shelf == QLatin1String("read"); };
    const QList<Book> &books = m_model.books();
    const bool hasFinishedBooks = std::any_of(books.begin(), books.end(), isFinished);
    if (hasFinishedBooks != m_hasFinishedBooks) {
        m_hasFinishedBooks = hasFinishedBooks;
        Q_EMIT finishedChanged();
    }
}

} // namespace quire
