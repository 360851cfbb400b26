// Keeps a secret out of what is said about a request that carried it. A service
// that explains a refusal is shown word for word, and some repeat the request,
// key and all.
//
// Thread: pure, any thread.

#pragma once

#include <QString>

namespace quire::Redaction {

// `text` with “…” in every place of `secret`, in plain and in percent-encoded
// form, in upper or lower case. A secret of less than four characters cannot be
// told from the words around it and stays.
QString without(QString text, const QString &secret);

} // namespace quire::Redaction
