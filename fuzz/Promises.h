// What the readers of foreign bytes promise, apart from the readers: each function
// hands the bytes of an input to the reader it is given and holds the promise
// against what that makes of them. The fuzz targets give it the program's own
// readers; tests give it broken ones, which it must find out.
//
// Throws BrokenPromise, and whatever the reader throws beyond its own failures.
//
// Thread: any, one at a time.

#pragma once

#include "persistence/AudiobookIndex.h"
#include "persistence/database/SQLiteValue.h"
#include "records/AudibleLibraryItem.h"
#include "records/CatalogBooks.h"
#include "records/GoodreadsFeedBook.h"
#include "records/Instant.h"
#include "records/Url.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <optional>

namespace quire {

struct QuireLaunchPreferences;
struct QuireLibrarySnapshot;
struct QuireUpdateManifest;

namespace fuzz::promises {

// The host of every service, for readers that ask for one.
QUrl service();

// What services send. ---------------------------------------------------------------

using ReadFeed = std::function<QList<GoodreadsFeedBook>(const QByteArray &)>;
void feed(const QByteArray &bytes, const ReadFeed &read);

// The failure of both catalogues is JSONDecodingError.
using ReadAudibleCatalogue = std::function<QList<AudibleCatalogBook>(const QByteArray &)>;
void audibleCatalogue(const QByteArray &bytes, const ReadAudibleCatalogue &read);

using ReadBookCatalogue = std::function<QList<BookCatalogBook>(const QByteArray &)>;
void bookCatalogue(const QByteArray &bytes, const ReadBookCatalogue &read);

using ReadHtml = std::function<QString(const QString &, std::optional<qsizetype> maximumLength)>;
void htmlText(const QByteArray &bytes, const ReadHtml &read);

using ReadDate = std::function<std::optional<Instant>(const QString &)>;
void date(const QByteArray &bytes, const ReadDate &read);

struct NetlifyReader
{
    std::function<std::optional<QString>(const QByteArray &answer, QStringView name)> text;
    std::function<QStringList(const QByteArray &answer, QStringView name)> texts;
    std::function<std::optional<Url>(const QByteArray &answer)> siteURL;
};
void netlifyAnswer(const QByteArray &bytes, const NetlifyReader &reader);

// Reads a manifest and judges it for service(). Its failures are JSONDecodingError
// and QuireUpdateCheckError.
using ReadManifest = std::function<QuireUpdateManifest(const QByteArray &)>;
void updateManifest(const QByteArray &bytes, const ReadManifest &read);

// What another application's library holds. -----------------------------------------

using ReadAudibleRow = std::function<std::optional<AudibleLibraryItem>(const SQLiteRow &)>;
void audibleRow(const QByteArray &bytes, const ReadAudibleRow &read);

using FindAudiobook = std::function<std::optional<qint64>(const AudiobookIndex &, const AudibleLibraryItem &)>;
void merge(const QByteArray &bytes, const FindAudiobook &find);

// Files of this machine. ------------------------------------------------------------

// Both give nothing for what they refuse.
struct LaunchCacheReader
{
    std::function<std::optional<QuireLaunchPreferences>(const QByteArray &)> look;
    std::function<std::optional<QuireLibrarySnapshot>(const QByteArray &, const QString &databasePath)> library;
};
void launchCache(const QByteArray &bytes, const LaunchCacheReader &reader);

struct CredentialFile
{
    std::function<QMap<QString, QString>(const QString &path)> load;
    std::function<void(const QString &path, const QString &value, const QString &key)> set;
};
void credentials(const QByteArray &bytes, const CredentialFile &file);

using ReadLocation = std::function<std::optional<QString>(const QString &record)>;
void locationRecord(const QByteArray &bytes, const ReadLocation &read);

// The library itself. -----------------------------------------------------------------

// Opens the library in `folder`, reads all of it and closes it. False when it was
// refused with one of the program's failures.
using UseLibrary = std::function<bool(const QString &folder)>;

// bytes: a database, whole or in pieces; or "SQL" and a line feed before statements
// that make one; or "PATCH" and a line feed before groups of four bytes (where, in
// three, and by what it is changed) that damage a library of the program's own.
void databaseFile(const QByteArray &bytes, const UseLibrary &use);

} // namespace fuzz::promises
} // namespace quire
