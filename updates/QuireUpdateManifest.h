// What the update host tells of the newest version.
//
// Thread: a value and pure functions, any thread.

#pragma once

#include "records/Url.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace quire {

struct QuireUpdateManifest
{
    QString version; // as readers name it: "1.2.3"
    qint64 build = 0;
    Url downloadPage; // a web page to open; nothing is ever downloaded from it

    // The manifest that `json` spells, not judged yet. Throws JSONDecodingError.
    static QuireUpdateManifest decode(const QByteArray &json);

    // JSON that decode() reads.
    QByteArray encode() const;

    // Throws QuireUpdateCheckError unless this is a version of two to four dotted
    // numbers with a build of at least 1, whose page lies below "/quire" on the
    // host of `endpoint`, over https. A stand-in of the host that is asked over
    // plain http may name a page of its own.
    void validate(const QUrl &endpoint) const;

    bool operator==(const QuireUpdateManifest &) const = default;
};

} // namespace quire
