#pragma once

#include <QString>
#include <QStringView>

namespace quire {

// Appends `text` to `document` on one line, with a backslash before each of \ ` *
// _ [ and ]; white space becomes single blanks, none at the ends.
//
// Thread: pure, any thread.
void appendEscapedMarkdown(QString &document, QStringView text);

// Appends `text` as a quotation: each line behind "> ", empty ones too, without
// carriage returns and without white space around the whole.
//
// Thread: pure, any thread.
void appendQuotedMarkdown(QString &document, QStringView text);

} // namespace quire
