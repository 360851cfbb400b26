// A day as short as it can be read without doubt: the month as a word, no
// weekday. Qt has a long form, with both, and a short one of digits alone.
//
// Thread: pure function, any thread.

#pragma once

#include <QDate>
#include <QLocale>
#include <QString>

namespace quire {

// "3 Nov 2026", "Nov 3, 2026", "3. Nov 2026": the parts in the order of the
// locale's long form. Empty for a date that is none.
QString abbreviatedDate(QDate date, const QLocale &locale = QLocale::system());

} // namespace quire
