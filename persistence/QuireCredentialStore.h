// QuireCredentialStore keeps the two secrets out of the library file, which a
// sync service may copy between machines: in a small file of their own, readable
// by the reader alone, that never moves with the library.
//
// The file holds one CBOR map of text to text. There is no cache: every
// operation reads it anew.
//
// Thread: the store's executor.

#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

namespace quire {

class QuireCredentialStore
{
public:
    // url: absolute path of the file; touches nothing on disk.
    explicit QuireCredentialStore(QString url);

    // The settings that live here and never in the library.
    static const QSet<QString> &protectedKeys();

    const QString &url() const { return m_url; }

    // What the file holds, without empty values; nothing when it is missing,
    // unreadable or damaged, since a broken file must not keep the library shut.
    QMap<QString, QString> load() const;

    // Stores the trimmed value; a blank one removes the key. Any key is taken.
    // Throws FileError, the file as it was.
    void set(const QString &value, const QString &key) const;

    // Takes over the protected ones of `rows` (of the settings table) that are
    // not blank; a value already in the file wins. The keys whose rows may now be
    // deleted. Throws FileError; then no row may be.
    QStringList migrate(const QMap<QString, QString> &rows) const;

private:
    void write(const QMap<QString, QString> &secrets) const;

    QString m_url;
};

} // namespace quire
