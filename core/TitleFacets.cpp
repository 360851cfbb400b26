#include "core/TitleFacets.h"

#include <QStringList>

#include <utility>
#include <vector>

namespace quire::TitleFacets {

namespace {

// The stored words of one tab, made once and not for each title.
class ShelfWords
{
public:
    explicit ShelfWords(LibraryTab tab)
    {
        for (const LibraryShelf shelf : allLibraryShelves) {
            if (const auto word = databaseValue(shelf, tab)) {
                m_words.emplace_back(*word, only(shelf));
            }
        }
    }

    // The shelf whose word is exactly `word`; an unknown word gives none.
    ShelfSet shelves(const QString &word) const
    {
        for (const auto &[stored, shelf] : m_words) {
            if (stored == word) {
                return shelf;
            }
        }
        return 0;
    }

private:
    std::vector<std::pair<QString, ShelfSet>> m_words;
};

} // namespace

ShelfSet shelves(const Book &book)
{
    if (book.isHidden) {
        return only(LibraryShelf::Hidden);
    }
    static const ShelfWords words(LibraryTab::Books);
    return only(LibraryShelf::All) | words.shelves(book.shelf);
}

ShelfSet shelves(const Audiobook &audiobook)
{
    static const ShelfWords words(LibraryTab::Audio);
    return only(LibraryShelf::Hidden) | only(LibraryShelf::All) | words.shelves(audiobook.status);
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
