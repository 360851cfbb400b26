#include "core/TitleFacets.h"

#include <QStringList>

namespace quire::TitleFacets {

namespace {

// The shelves whose stored word is exactly `word`; an unknown word gives none.
ShelfSet shelvesOfWord(const QString &word, LibraryTab tab)
{
    ShelfSet shelves = 0;
    for (const LibraryShelf shelf : allLibraryShelves) {
        if (databaseValue(shelf, tab) == word) {
            shelves |= only(shelf);
        }
    }
    return shelves;
}

} // namespace

ShelfSet shelves(const Book &book)
{
    if (book.isHidden) {
        return only(LibraryShelf::Hidden);
    }
    return only(LibraryShelf::All) | shelvesOfWord(book.shelf, LibraryTab::Books);
}

ShelfSet shelves(const Audiobook &audiobook)
{
    return only(LibraryShelf::Hidden) | only(LibraryShelf::All) | shelvesOfWord(audiobook.status, LibraryTab::Audio);
}

QString searchableText(const Book &book)
{
    return (QStringList{book.title, book.author, book.notes} + book.tags).join(u' ');
}

QString searchableText(const Audiobook &audiobook)
{
    const QStringList texts{audiobook.title, audiobook.author.value_or(QString()),
        audiobook.narrator.value_or(QString()), audiobook.series.value_or(QString()), audiobook.notes};
    return texts.join(u' ');
}

bool haveSameText(const Book &a, const Book &b)
{
    return a.title == b.title && a.author == b.author && a.notes == b.notes && a.tags == b.tags;
}

bool haveSameText(const Audiobook &a, const Audiobook &b)
{
    return a.title == b.title && a.author == b.author && a.narrator == b.narrator && a.series == b.series
        && a.notes == b.notes;
}

bool haveSameDates(const Book &a, const Book &b)
{
    return a.readAt == b.readAt && a.dateAdded == b.dateAdded;
}

bool haveSameDates(const Audiobook &a, const Audiobook &b)
{
    return a.finishedAt == b.finishedAt && a.dateAdded == b.dateAdded;
}

double rating(const Book &book)
{
    return book.userRating;
}

double rating(const Audiobook &audiobook)
{
    return audiobook.userRating.value_or(0);
}

} // namespace quire::TitleFacets
