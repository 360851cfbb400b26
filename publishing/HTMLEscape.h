#pragma once

#include <QString>
#include <QStringView>

namespace quire {

// Appends `text` to `page` so that it stands there as text, in an element or in an
// attribute within double quotation marks: "&", "<", ">" and the double quotation
// mark as entities. Everything else stays, apostrophes too.
//
// Thread: pure, any thread.
void appendEscapedHTML(QString &page, QStringView text);

} // namespace quire
