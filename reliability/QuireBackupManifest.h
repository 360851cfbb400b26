// The manifest beside a backup: what was found in the file when it was verified,
// and the fingerprint by which it is recognised ever after. It lies in a folder
// that the reader and sync services reach, and is distrusted when it is read.
//
// Thread: any; read() and write() block on the disk.

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quire {

struct QuireBackupManifest
{
    qint64 formatVersion = 1;
    QString createdAt; // the moment of verification, ISO-8601 with fractional seconds
    QString databaseSHA256; // of the whole backup file, 64 lower-case hexadecimal digits
    qint64 schemaVersion = 2;
    QString libraryUUID;
    qint64 generation = 0;
    qint64 bookCount = 0;
    qint64 audiobookCount = 0;
    QString integrityCheck = QStringLiteral("ok");

    bool operator==(const QuireBackupManifest &) const = default;

    // As it is written: indented JSON, keys sorted.
    QByteArray encoded() const;

    // Nothing unless every field is there, of its type and within its range;
    // further keys are passed over, another format version is not.
    static std::optional<QuireBackupManifest> decoded(const QByteArray &bytes);

    // Nothing when there is no such file, or none that is a manifest.
    static std::optional<QuireBackupManifest> read(const QString &path);

    // Durably, over what is there. Throws FileError.
    void write(const QString &path) const;
};

} // namespace quire
