// The reading list as the two documents that are published. Their words are the
// reader's own and differ on purpose between the two: the scale of the page is
// the shorter one, and only the page calls itself public.
//
// Rendering cannot fail: what is absent or cannot be read leaves out its line.
// Every text of the library is escaped for the document that it stands in, but
// summaries and addresses stand in the Markdown as they are. Only addresses of
// http and https become links, so that no library can put a script into a page.
//
// Thread: pure functions, any thread. Days are told in the machine's zone; the
// moment of publication in New York's, wherever the machine stands.

#pragma once

#include "publishing/PublishingSnapshot.h"

#include <QLocale>
#include <QString>

namespace quire::ReadingListRenderer {

// The language of numbers and dates: the system's, and English where the system
// names none.
QLocale presentLocale();

// Ends in exactly one line feed.
QString markdown(const PublishingSnapshot &snapshot, const QLocale &locale = presentLocale());

// One page that needs no other file; ends in its closing tag.
QString html(const PublishingSnapshot &snapshot, const QLocale &locale = presentLocale());

} // namespace quire::ReadingListRenderer
