#include "QuireApp/ViewModels/LibraryListModel.h"

#include "QuireApp/ViewModels/LibraryTexts.h"

#include <algorithm>

namespace quire {

LibraryRow LibraryRow::of(const Book &book)
{
    return {book.id, book.title, book.author, LibraryTexts::pages(book.numberOfPages),
        CoverSource::ofBook(book.id, book.coverData), book.isHidden};
}

LibraryRow LibraryRow::of(const Audiobook &audiobook)
{
    return {audiobook.id, audiobook.title, audiobook.author.value_or(QString()), QString(),
        CoverSource::ofAudiobook(audiobook.id, audiobook.coverData)};
}

LibraryListModel::LibraryListModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

void LibraryListModel::show(const QList<LibraryRow> &rows)
{
    const auto sameTitle = [](const LibraryRow &a, const LibraryRow &b) { return a.id == b.id; };
    const auto [oldDiffers, newDiffers]
        = std::mismatch(m_rows.cbegin(), m_rows.cend(), rows.cbegin(), rows.cend(), sameTitle);
    const qsizetype head = newDiffers - rows.cbegin();
    const qsizetype before = m_rows.size();
    const qsizetype shorter = std::min(before, rows.size());
    qsizetype tail = 0;
    while (tail < shorter - head && sameTitle(m_rows.at(before - 1 - tail), rows.at(rows.size() - 1 - tail))) {
        ++tail;
    }
    // Where titles of one list stand in the place of titles of the other, the cards
    // stay and show others: that is far less work than to make them anew.
    if (before > rows.size()) {
        remove(shorter - tail, before - shorter);
    } else if (before < rows.size()) {
        insert(shorter - tail, rows.mid(shorter - tail, rows.size() - shorter));
    }
    overwrite(rows);
    if (rows.size() != before) {
        Q_EMIT countChanged();
    }
}

void LibraryListModel::remove(qsizetype from, qsizetype count)
{
    beginRemoveRows({}, int(from), int(from + count) - 1);
    m_rows.remove(from, count);
    endRemoveRows();
}

void LibraryListModel::insert(qsizetype from, const QList<LibraryRow> &added)
{
    beginInsertRows({}, int(from), int(from + added.size()) - 1);
    m_rows = m_rows.mid(0, from) + added + m_rows.mid(from);
    endInsertRows();
}

void LibraryListModel::overwrite(const QList<LibraryRow> &rows)
{
    qsizetype row = 0;
    while (row < rows.size()) {
        const qsizetype first = row;
        while (row < rows.size() && m_rows.at(row) != rows.at(row)) {
            m_rows[row] = rows.at(row);
            ++row;
        }
        if (row > first) {
            Q_EMIT dataChanged(index(int(first)), index(int(row) - 1));
        } else {
            ++row;
        }
    }
}

int LibraryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant LibraryListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const LibraryRow &row = m_rows.at(index.row());
    switch (role) {
    case RowIdRole:
        return row.id;
    case Qt::DisplayRole:
    case TitleRole:
        return row.title;
    case AuthorRole:
        return row.author;
    case PagesRole:
        return row.pages;
    case CoverRole:
        return QVariant::fromValue(row.cover);
    case AccessibleNameRole:
        return LibraryTexts::viewDetails(row.title);
    case IsHiddenRole:
        return row.isHidden;
    default:
        return {};
    }
}

QHash<int, QByteArray> LibraryListModel::roleNames() const
{
    return {
        {RowIdRole, QByteArrayLiteral("rowId")},
        {TitleRole, QByteArrayLiteral("title")},
        {AuthorRole, QByteArrayLiteral("author")},
        {PagesRole, QByteArrayLiteral("pages")},
        {CoverRole, QByteArrayLiteral("cover")},
        {AccessibleNameRole, QByteArrayLiteral("accessibleName")},
        {IsHiddenRole, QByteArrayLiteral("isHidden")},
    };
}

} // namespace quire
