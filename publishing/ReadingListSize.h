#pragma once

#include "publishing/PublishingSnapshot.h"

namespace quire {

// About how long a document of `snapshot` becomes, in characters: its texts and
// the words round them. So that a document of many megabytes is not moved a dozen
// times while it grows.
qsizetype expectedLength(const PublishingSnapshot &snapshot);

} // namespace quire
