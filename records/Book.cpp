#include "records/Book.h"

#include "records/DateParser.h"
#include "records/OptionalHash.h"

namespace quire {

size_t qHash(const Book &book, size_t seed)
{
    return qHashMulti(seed, book.id, book.goodreadsID, book.title, book.author, hashed(book.isbn), book.shelf,
        book.userRating, hashed(book.averageRating), hashed(book.numberOfPages), hashed(book.summary),
        hashed(book.goodreadsURL), hashed(book.publishedYear), hashed(book.coverURL), hashed(book.goodreadsImageURL),
        hashed(book.coverData), hashed(book.readAt), hashed(book.dateAdded), hashed(book.dateSynced),
        hashed(book.dateModified), book.notes, book.tags, book.isHidden);
}

Instant recencyDate(const Book &book)
{
    if (const auto read = DateParser::date(book.readAt)) {
        return *read;
    }
    return DateParser::date(book.dateAdded).value_or(distantPast);
}

} // namespace quire
