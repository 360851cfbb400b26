// Libraries whose reading list is kept beside the tests, as it is published.
//
// Thread: pure, any thread.

#pragma once

#include "publishing/PublishingSnapshot.h"

#include <QString>

#include <random>

namespace quire::testing {

// Nothing at all.
PublishingSnapshot emptyLibrary();

// A title for each thing that a title can have or lack.
PublishingSnapshot smallLibrary();

// So many titles of every kind, always the same ones.
PublishingSnapshot largeLibrary(int titles);

// Texts that are HTML, Markdown, control characters, right to left, or 5,000
// characters long; dates in odd forms; ratings out of range.
PublishingSnapshot hostileLibrary();

// One hostile text of endlessly many: pieces of markup, of entities, of other
// scripts and of nonsense, in any order.
QString hostileText(std::mt19937 &random);

} // namespace quire::testing
