#include "fuzz/Readers.h"

#include "concurrency/SystemClock.h"
#include "core/LaunchCacheCoding.h"
#include "core/QuireLaunchCache.h"
#include "persistence/LibraryStore.h"
#include "persistence/QuireCredentialStore.h"
#include "persistence/QuireLibraryLocation.h"
#include "publishing/NetlifyAnswer.h"
#include "records/DateParser.h"
#include "records/RecordCoding.h"
#include "sources/AudibleLibraryRow.h"
#include "sources/AudibleProduct.h"
#include "sources/AudibleService.h"
#include "sources/BookCatalogService.h"
#include "sources/GoodreadsXMLParser.h"
#include "sources/HTMLText.h"
#include "updates/QuireUpdateManifest.h"

#include <QBuffer>

namespace quire::fuzz::readers {

promises::ReadFeed feed()
{
    return [](const QByteArray &bytes) {
        GoodreadsXMLParser parser(QStringLiteral("read"), promises::service());
        parser.parse(bytes);
        return parser.books();
    };
}

promises::ReadAudibleCatalogue audibleCatalogue()
{
    return [](const QByteArray &bytes) {
        QList<AudibleCatalogBook> books;
        for (const AudibleProduct &product : AudibleCatalogResponse::parse(bytes).products) {
            if (const auto book = AudibleService::map(product, promises::service())) {
                books.append(*book);
            }
        }
        return books;
    };
}

promises::ReadBookCatalogue bookCatalogue()
{
    return [](const QByteArray &bytes) { return BookCatalogService::parse(bytes, promises::service()); };
}

promises::ReadHtml htmlText()
{
    return &HTMLText::plainText;
}

promises::ReadDate date()
{
    return [](const QString &text) { return DateParser::date(text); };
}

promises::NetlifyReader netlifyAnswer()
{
    return {
        .text = [](const QByteArray &answer, QStringView name) { return NetlifyAnswer::parse(answer).text(name); },
        .texts = [](const QByteArray &answer, QStringView name) { return NetlifyAnswer::parse(answer).texts(name); },
        .siteURL = [](const QByteArray &answer) { return netlifySiteURL(NetlifyAnswer::parse(answer)); },
    };
}

promises::ReadManifest updateManifest()
{
    return [](const QByteArray &bytes) {
        QuireUpdateManifest manifest = QuireUpdateManifest::decode(bytes);
        manifest.validate(promises::service());
        return manifest;
    };
}

promises::ReadAudibleRow audibleRow()
{
    return [](const SQLiteRow &row) { return AudibleLibraryRow::map(row, promises::service()); };
}

promises::FindAudiobook merge()
{
    return &AudiobookIndex::find;
}

promises::LaunchCacheReader launchCache()
{
    return {
        .look = [](const QByteArray &bytes) -> std::optional<QuireLaunchPreferences> {
            try {
                return LaunchCacheCoding::decodePreferences(bytes);
            } catch (const RecordCodingError &) {
                return std::nullopt;
            }
        },
        .library = [](QByteArray bytes, const QString &databasePath) -> std::optional<QuireLibrarySnapshot> {
            QBuffer device(&bytes);
            device.open(QIODevice::ReadOnly);
            try {
                return LaunchCacheCoding::read(device, databasePath, {});
            } catch (const RecordCodingError &) {
                return std::nullopt;
            }
        },
    };
}

promises::CredentialFile credentials()
{
    return {
        .load = [](const QString &path) { return QuireCredentialStore(path).load(); },
        .set = [](const QString &path, const QString &value,
                   const QString &key) { QuireCredentialStore(path).set(value, key); },
    };
}

promises::ReadLocation locationRecord()
{
    return &QuireLibraryLocation::recordedDirectory;
}

promises::UseLibrary databaseFile()
{
    return [](const QString &folder) {
        const SystemClock clock;
        LibraryStore store(clock, folder);
        try {
            store.prepare(false).waitForFinished();
            store.books().waitForFinished();
            store.audiobooks().waitForFinished();
            store.tags().waitForFinished();
            store.settings().waitForFinished();
            store.setSetting(QStringLiteral("goodreadsUserId"), QStringLiteral("2")).waitForFinished();
            store.shutdown().waitForFinished();
        } catch (const Failure &) {
            return false;
        }
        return true;
    };
}

} // namespace quire::fuzz::readers
