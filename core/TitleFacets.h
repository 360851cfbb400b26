// What each kind of title is searched, sorted and shelved by: the one place
// where books and audiobooks differ in the grids.
//
// Thread: pure functions, any thread.

#pragma once

#include "records/Audiobook.h"
#include "records/Book.h"
#include "records/Enumerations.h"

#include <QString>

namespace quire::TitleFacets {

// Some of the shelves, one bit for each case.
using ShelfSet = quint8;

constexpr ShelfSet only(LibraryShelf shelf)
{
    return ShelfSet(1u << unsigned(shelf));
}

// The shelves that show the title while nothing is searched. A hidden book
// shows under Hidden and nowhere else; an audiobook cannot be hidden.
ShelfSet shelves(const Book &book);
ShelfSet shelves(const Audiobook &audiobook);

// The text that a search looks through, not folded.
QString searchableText(const Book &book);
QString searchableText(const Audiobook &audiobook);

// Whether both have the same searchableText(), without making it.
bool haveSameText(const Book &a, const Book &b);
bool haveSameText(const Audiobook &a, const Audiobook &b);

// Whether both have the same recencyDate() for certain, without parsing it.
bool haveSameDates(const Book &a, const Book &b);
bool haveSameDates(const Audiobook &a, const Audiobook &b);

// The rating to sort by; 0 when not rated.
double rating(const Book &book);
double rating(const Audiobook &audiobook);

} // namespace quire::TitleFacets
