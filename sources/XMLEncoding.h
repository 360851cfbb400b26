// What encoding a document from outside is in, and how to get it into UTF-8.
//
// Thread: pure functions, any thread.

#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace quire {

struct XMLText
{
    QByteArray utf8;
    qsizetype start = 0; // behind byte-order mark and XML declaration
};

// `document` in UTF-8. Its own encoding is told by its byte-order mark, by the
// pattern of its first bytes, by its XML declaration, or is UTF-8; an encoding
// nobody knows gives an empty text. What claims to be UTF-8 is not checked, only
// handed back.
XMLText utf8Document(QByteArray document);

// The length of the part of `bytes` that is UTF-8, up to the first sequence that
// is not, or is not complete.
qsizetype decodablePrefix(QByteArrayView bytes);

} // namespace quire
