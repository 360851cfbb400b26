// QuireLaunchCache is what the window shows while the library is being opened:
// two files in the folder of this machine, never in the library's. The small one
// holds the look and is read before the first frame; the large one holds the
// titles with their covers and is read off the interface thread. Both may be lost
// at any time: what is wrong with them makes them absent, and never a failure.
//
// Thread: any; blocks on the disk. Holds no state but the folder.

#pragma once

#include "records/Audiobook.h"
#include "records/Book.h"
#include "records/CustomAccentColor.h"
#include "records/Enumerations.h"
#include "records/Failure.h"
#include "records/TagCount.h"

#include <QList>
#include <QString>

#include <optional>
#include <stop_token>

namespace quire {

struct QuireLaunchPreferences
{
    SidebarAppearance sidebarAppearance = SidebarAppearance::Snow;
    InterfaceFontChoice interfaceFont = InterfaceFontChoice::AvenirNext;
    AccentColorChoice accentColor = AccentColorChoice::Fjord;
    bool usesCustomAccentColor = false;
    std::optional<CustomAccentColor> customAccentColor;
    bool showBooksSection = true;
    bool showAudioSection = true;
    LibraryTab selectedTab = LibraryTab::Insights;

    bool operator==(const QuireLaunchPreferences &) const = default;
};

// A whole picture of the three lists of one library.
struct QuireLibrarySnapshot
{
    static constexpr qint64 currentVersion = 1;

    qint64 schemaVersion = currentVersion; // of this form, not of the database
    QString databasePath; // absolute, without dots
    QList<Book> books;
    QList<Audiobook> audiobooks;
    QList<TagCount> tags;

    bool operator==(const QuireLibrarySnapshot &) const = default;
};

// The covers of a library exceed what a start would read again.
class LibraryTooLargeError final : public Failure
{
public:
    QString description() const override
    {
        return QStringLiteral("The library is too large to be kept for the start.");
    }
};

class QuireLaunchCache
{
public:
    // Longer files are not read: a start would take as long without them, and
    // the memory twice.
    static constexpr qint64 maximumLibraryBytes = 450LL * 1024 * 1024;

    // directory: absolute; made when something is saved.
    explicit QuireLaunchCache(QString directory);

    // Replaces the small file, then the large one unless `library` is absent.
    // Covers go to the disk from where they are. Throws FileError, or
    // LibraryTooLargeError with no large file left.
    void save(const QuireLaunchPreferences &preferences, const std::optional<QuireLibrarySnapshot> &library) const;

    // Nothing when the file is missing or lacks anything.
    std::optional<QuireLaunchPreferences> preferences() const;

    // The snapshot of the library at `databasePath`, exactly that text. Nothing
    // when it is missing, of another library or another version, when anything
    // in it cannot be read, or when `stop` was requested before its end.
    std::optional<QuireLibrarySnapshot> library(const QString &databasePath, std::stop_token stop = {}) const;

private:
    QString file(const QString &name) const;

    QString m_directory;
};

} // namespace quire
