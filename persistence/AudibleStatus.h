// The status that an item of the Audible application has by its own account.
//
// Thread: pure function, any thread.

#pragma once

#include "records/AudibleLibraryItem.h"

namespace quire {

// "read", "reading" or "to-read"; Audible knows no unfinished titles.
QString derivedStatus(const AudibleLibraryItem &item);

} // namespace quire
