// The words around the facts of one title, as its detail view shows them.
//
// Thread: pure functions, any thread.

#pragma once

#include "QuireApp/ViewModels/ChoiceListModel.h"
#include "records/Audiobook.h"
#include "records/Book.h"

#include <QList>
#include <QLocale>
#include <QString>

namespace quire::DetailTexts {

// "3 Nov 2026 · 320 pages · 1998": when it was read, its length, its year; those
// that are known. Empty when none is.
QString bookMetadata(const Book &book, const QLocale &locale = QLocale::system());

// "59 min", "1 hr", "1 hr 1 min".
QString runtime(qint64 minutes);

// What stands in small pills, each with its symbol: the average rating and the
// tags of a book; runtime, average rating and progress of an audiobook, of which
// progress is shown while there is some left.
QList<Choice> bookPills(const Book &book, const QLocale &locale = QLocale::system());
QList<Choice> audiobookPills(const Audiobook &audiobook, const QLocale &locale = QLocale::system());

} // namespace quire::DetailTexts
