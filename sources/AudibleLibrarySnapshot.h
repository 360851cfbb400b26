// A private copy of the Audible application's database with its write-ahead log.
// The original is never opened as a database, so that nothing of Audible's can
// be locked or changed.
//
// Thread: any, one at a time; blocks on the disk.

#pragma once

#include <QString>

#include <stop_token>

namespace quire {

class AudibleLibrarySnapshot
{
public:
    // Copies the database at `database` into a fresh folder below the temporary
    // directory, for this user's eyes alone. Throws FileError when there can be no
    // such folder, ServiceError message when a copy fails, and Cancelled once
    // `stop` is requested; nothing is left then.
    AudibleLibrarySnapshot(const QString &database, const std::stop_token &stop);

    // Goes away with its folder and all that is in it.
    ~AudibleLibrarySnapshot() = default;

    AudibleLibrarySnapshot(const AudibleLibrarySnapshot &) = delete;
    AudibleLibrarySnapshot &operator=(const AudibleLibrarySnapshot &) = delete;

    // Absolute path of the copy.
    const QString &database() const { return m_database; }

private:
    // Removed when the constructor fails, too.
    class Folder
    {
    public:
        Folder();
        ~Folder();
        Folder(const Folder &) = delete;
        Folder &operator=(const Folder &) = delete;

        const QString &path() const { return m_path; }

    private:
        QString m_path;
    };

    Folder m_folder;
    QString m_database;
};

} // namespace quire
