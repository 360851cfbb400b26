// Which machine this is, as far as the lock of a library has to know: a key that
// only this machine has, and the keys by which records of older builds, which
// carry a host name alone, are recognised.
//
// Thread: any. The values are made once and never change.

#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

#include <optional>

namespace quire {

struct QuireHostIdentity
{
    QString hostName; // as the platform gives it
    QString current; // "platform:" and a digest, or "host:" and the host name
    QSet<QString> legacyKeys; // see legacyKey(); never holds an empty one

    // This machine, asked once per process.
    static const QuireHostIdentity &ofThisMachine();

    // machineID: the platform's stable identifier, empty when it has none; only
    // its SHA-256 is kept. computerName: the name that the reader gave the
    // machine, where there is one.
    static QuireHostIdentity make(
        const QByteArray &machineID, const QString &hostName, const std::optional<QString> &computerName);

    // A host name without what differs between two ways of telling it:
    // lower-cased, a trailing ".local" cut, letters, marks and digits alone kept.
    static QString legacyKey(const QString &name);
};

} // namespace quire
