// The images that Audible offers for a title, as its catalogue and its
// application describe them alike.
//
// Thread: pure functions, any thread.

#pragma once

#include "records/Url.h"

#include <QMap>
#include <QString>

#include <optional>

namespace quire::AudibleImages {

// imagesBySize: URLs by their size in pixels, in decimal. The largest one's;
// entries without a number or without a URL do not count, and of two spellings of
// one number the first in the order of letters does.
std::optional<Url> largest(const QMap<QString, QString> &imagesBySize);

} // namespace quire::AudibleImages
