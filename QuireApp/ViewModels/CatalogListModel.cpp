#include "QuireApp/ViewModels/CatalogListModel.h"

#include "QuireApp/ViewModels/LibraryTexts.h"

namespace quire {

namespace {

QUrl addressOf(const std::optional<Url> &url)
{
    return url ? url->toQUrl() : QUrl();
}

} // namespace

CatalogRow CatalogRow::of(const BookCatalogBook &book)
{
    CatalogRow row;
    row.title = book.title;
    row.author = book.author.isEmpty() ? QStringLiteral("Unknown author") : book.author;
    if (book.publishedYear) {
        row.details.append(QString::number(*book.publishedYear));
    }
    if (book.numberOfPages) {
        row.details.append(LibraryTexts::pages(book.numberOfPages));
    }
    if (book.isbn) {
        row.details.append(QStringLiteral("ISBN ") + *book.isbn);
    }
    row.coverUrl = addressOf(book.coverURL);
    return row;
}

CatalogRow CatalogRow::of(const AudibleCatalogBook &book)
{
    CatalogRow row;
    row.title = book.title;
    row.author = book.author.value_or(QString());
    row.narrator = book.narrator.value_or(QString());
    row.series = LibraryTexts::series(book.series, book.bookNumber);
    if (book.year) {
        row.details.append(*book.year);
    }
    row.coverUrl = addressOf(book.coverURL);
    return row;
}

CatalogListModel::CatalogListModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

void CatalogListModel::showRows(QList<CatalogRow> rows)
{
    if (rows == m_rows) {
        return;
    }
    const bool sameCount = rows.size() == m_rows.size();
    beginResetModel(); // another search, other results
    m_rows = std::move(rows);
    endResetModel();
    if (!sameCount) {
        Q_EMIT countChanged();
    }
}

int CatalogListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant CatalogListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const CatalogRow &row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
        return row.title;
    case AuthorRole:
        return row.author;
    case NarratorRole:
        return row.narrator;
    case SeriesRole:
        return row.series;
    case DetailsRole:
        return row.details;
    case CoverUrlRole:
        return row.coverUrl;
    default:
        return {};
    }
}

QHash<int, QByteArray> CatalogListModel::roleNames() const
{
    return {
        {TitleRole, QByteArrayLiteral("title")},
        {AuthorRole, QByteArrayLiteral("author")},
        {NarratorRole, QByteArrayLiteral("narrator")},
        {SeriesRole, QByteArrayLiteral("series")},
        {DetailsRole, QByteArrayLiteral("details")},
        {CoverUrlRole, QByteArrayLiteral("coverUrl")},
    };
}

} // namespace quire
