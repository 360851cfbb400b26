#pragma once

#include "records/Audiobook.h"
#include "records/Statistics.h"

#include <QList>

namespace quire {

// Counts of the audiobooks by status. One without a status counts as read; one
// that was not finished counts in the total alone. Two spellings of a series
// are two series.
//
// Thread: pure, any thread.
AudibleStatistics makeAudibleStatistics(const QList<Audiobook> &audiobooks);

} // namespace quire
