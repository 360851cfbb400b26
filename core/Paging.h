// The pages of the book grid.
//
// Thread: pure functions, any thread.

#pragma once

#include "core/LibrarySlice.h"

#include <QString>

#include <algorithm>

namespace quire::Paging {

inline constexpr qint64 booksPerPage = 36;

// Pages that `count` books fill; an empty list has one page.
constexpr qint64 pageCount(qint64 count)
{
    return std::max<qint64>(1, (count + booksPerPage - 1) / booksPerPage);
}

// `page` brought into 1 to `pageCount`.
constexpr qint64 clamped(qint64 page, qint64 pageCount)
{
    return std::clamp<qint64>(page, 1, pageCount);
}

// The books of `page`, which is first brought into range.
template<typename Record>
LibrarySlice<Record> page(const LibrarySlice<Record> &titles, qint64 page)
{
    const qint64 start = (clamped(page, pageCount(titles.size())) - 1) * booksPerPage;
    return titles.mid(start, booksPerPage);
}

// "Page 9 of 2": the page as it is asked for, even out of range.
inline QString description(qint64 page, qint64 pageCount)
{
    return QStringLiteral("Page %1 of %2").arg(page).arg(pageCount);
}

} // namespace quire::Paging
