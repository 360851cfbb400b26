// The form in which titles and authors of different sources are compared:
// without case, accents and punctuation, "&" spelled out.
//
// Thread: pure functions, any thread.

#pragma once

#include <QString>

namespace quire {

// "Café & Co." gives "cafe and co". Words of letters, digits and surviving
// marks, one blank between them; empty when `text` has none.
QString normalizedText(const QString &text);

} // namespace quire
