// The gate in front of every import. It looks at a whole batch before the
// database is touched; one bad record refuses all of them, so that an import
// is never half of what its source said.
//
// Thread: pure functions, any thread.

#pragma once

#include "records/AudibleLibraryItem.h"
#include "records/GoodreadsFeedBook.h"

#include <QList>

namespace quire::QuireImportValidator {

// Throws QuireReliabilityError (invalid import) when, in this order, an
// identifier is blank, two identifiers are the same but for the white space
// around them, or a title is blank. An empty batch passes.
void validateGoodreads(const QList<GoodreadsFeedBook> &batch);
void validateAudible(const QList<AudibleLibraryItem> &batch);

} // namespace quire::QuireImportValidator
