// The order in which a reader expects titles and names.
//
// Thread: any; a collator is used by one thread at a time.

#pragma once

#include <QCollator>

namespace quire {

// That of the reader's language, numbers by their value, whatever the case.
QCollator titleCollator();

} // namespace quire
