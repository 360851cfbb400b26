// The controls of the fuzz targets: readers that are broken in one way each. The
// corpus of their target leads each of them into a broken promise; a promise or a
// corpus that could not is worth nothing.

#include "Corpus.h"
#include "fuzz/BrokenPromise.h"
#include "fuzz/Promises.h"
#include "fuzz/Readers.h"

#include "core/QuireLaunchCache.h"
#include "files/DurableFile.h"
#include "persistence/database/SQLiteDatabase.h"
#include "testing/OwnDataDirectory.h"
#include "updates/QuireUpdateCheckError.h"
#include "updates/QuireUpdateManifest.h"

#include <QCborMap>
#include <QCborValue>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace quire;
using namespace quire::fuzz;
using namespace quire::testing;

namespace {

// What half a map holds may not even be asked for.
QCborMap wholeMap(const QByteArray &bytes)
{
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(bytes, &error);
    return error.error == QCborError::NoError ? value.toMap() : QCborMap();
}

class BrokenReader : public ::testing::Test
{
protected:
    // Whether `promise` says `complaint` of a broken reader in the corpus of `target`.
    template<typename Reader>
    static ::testing::AssertionResult isCaught(const char *target, void (*promise)(const QByteArray &, const Reader &),
        const Reader &broken, const std::string &complaint)
    {
        std::set<std::string> others;
        const QDir folder = corpusOf(target);
        for (const QString &input : folder.entryList(QDir::Files)) {
            for (const QByteArray &bytes : wholeAndCut(bytesOf(folder.filePath(input)))) {
                try {
                    promise(bytes, broken);
                } catch (const BrokenPromise &promised) {
                    if (promised.what() == complaint) {
                        return ::testing::AssertionSuccess();
                    }
                    others.insert(promised.what());
                }
            }
        }
        return ::testing::AssertionFailure() << "but of " << ::testing::PrintToString(others);
    }

private:
    OwnDataDirectory m_data; // for what is logged
};

} // namespace

TEST_F(BrokenReader, ThatTakesItemsWithoutAnIdForBooksIsCaught)
{
    const promises::ReadFeed broken = [](const QByteArray &bytes) {
        QList<GoodreadsFeedBook> books;
        QXmlStreamReader reader(bytes);
        while (!reader.atEnd()) {
            if (reader.readNextStartElement() && reader.name() == u"title") {
                books.append({.title = reader.readElementText(QXmlStreamReader::SkipChildElements)});
            }
        }
        return books;
    };
    EXPECT_TRUE(isCaught("feed", promises::feed, broken, "a book without an id"));
}

TEST_F(BrokenReader, ThatTakesProductsWithoutATitleIsCaught)
{
    const promises::ReadAudibleCatalogue broken = [](const QByteArray &bytes) {
        QList<AudibleCatalogBook> books;
        const QJsonObject answer = QJsonDocument::fromJson(bytes).object();
        for (const QJsonValue product : answer.value(u"products").toArray()) {
            books.append({.asin = product[u"asin"].toString(), .title = product[u"title"].toString()});
        }
        return books;
    };
    EXPECT_TRUE(isCaught("audibleCatalogue", promises::audibleCatalogue, broken, "a result without a title"));
}

TEST_F(BrokenReader, ThatForgetsWhichWorksItHasIsCaught)
{
    const promises::ReadBookCatalogue broken = [](const QByteArray &bytes) {
        QList<BookCatalogBook> books;
        const QJsonObject answer = QJsonDocument::fromJson(bytes).object();
        for (const QJsonValue item : answer.value(u"docs").toArray()) {
            const BookCatalogBook book{.workID = item[u"key"].toString(), .title = item[u"title"].toString()};
            if (!book.workID.isEmpty() && !book.title.isEmpty()) {
                books.append(book);
            }
        }
        return books;
    };
    EXPECT_TRUE(isCaught("bookCatalogue", promises::bookCatalogue, broken, "a work twice"));
}

TEST_F(BrokenReader, ThatKeepsNoLimitIsCaught)
{
    const promises::ReadHtml broken
        = [](const QString &text, std::optional<qsizetype>) { return readers::htmlText()(text, std::nullopt); };
    EXPECT_TRUE(isCaught("htmlText", promises::htmlText, broken, "a text beyond its limit"));
}

TEST_F(BrokenReader, ThatTakesEveryTimeForLocalTimeIsCaught)
{
    const promises::ReadDate broken
        = [](const QString &text) { return readers::date()(text.endsWith(u'Z') ? text.chopped(1) : text); };
    EXPECT_TRUE(isCaught("date", promises::date, broken, "a date that is another when it is read back"));
}

TEST_F(BrokenReader, ThatTakesNumbersForTextsIsCaught)
{
    promises::NetlifyReader broken = readers::netlifyAnswer();
    broken.text = [](const QByteArray &answer, QStringView name) -> std::optional<QString> {
        const QJsonValue member = QJsonDocument::fromJson(answer).object().value(name);
        return member.isUndefined() ? std::nullopt : std::optional(member.toVariant().toString());
    };
    EXPECT_TRUE(isCaught("netlifyAnswer", promises::netlifyAnswer, broken, "a text that the answer does not hold"));
}

TEST_F(BrokenReader, ThatLeavesOutEntriesIsCaught)
{
    promises::NetlifyReader broken = readers::netlifyAnswer();
    broken.texts = [](const QByteArray &answer, QStringView name) {
        QStringList texts;
        for (const QJsonValue entry : QJsonDocument::fromJson(answer).object().value(name).toArray()) {
            if (entry.isString()) {
                texts.append(entry.toString());
            }
        }
        return texts;
    };
    EXPECT_TRUE(isCaught("netlifyAnswer", promises::netlifyAnswer, broken, "a list with entries left out"));
}

TEST_F(BrokenReader, ThatComparesTheBeginningOfAnAddressIsCaught)
{
    const promises::ReadManifest broken = [](const QByteArray &bytes) {
        QuireUpdateManifest manifest = QuireUpdateManifest::decode(bytes);
        if (!manifest.downloadPage.text().startsWith(promises::service().toString())) {
            throw QuireUpdateCheckError::invalidDownloadAddress();
        }
        return manifest;
    };
    EXPECT_TRUE(isCaught("updateManifest", promises::updateManifest, broken, "a page of another host"));
}

TEST_F(BrokenReader, ThatJudgesNoManifestIsCaught)
{
    EXPECT_TRUE(isCaught<promises::ReadManifest>(
        "updateManifest", promises::updateManifest, &QuireUpdateManifest::decode, "a page that is not encrypted"));
}

TEST_F(BrokenReader, ThatTakesAnyProgressIsCaught)
{
    const promises::ReadAudibleRow broken = [](const SQLiteRow &row) {
        auto item = readers::audibleRow()(row);
        if (item) {
            item->listeningProgress = row.doubleValue(QStringLiteral("percentComplete"), 0);
        }
        return item;
    };
    EXPECT_TRUE(isCaught("audibleRow", promises::audibleRow, broken, "a progress that is none"));
}

TEST_F(BrokenReader, ThatAsksForNoAuthorIsCaught)
{
    const promises::FindAudiobook broken = [](const AudiobookIndex &index, AudibleLibraryItem item) {
        item.author = std::nullopt;
        return index.find(item);
    };
    EXPECT_TRUE(isCaught("merge", promises::merge, broken, "another row than the first that matches"));
}

TEST_F(BrokenReader, ThatTakesAnotherLibraryFromTheCacheIsCaught)
{
    promises::LaunchCacheReader broken = readers::launchCache();
    broken.library = [](const QByteArray &bytes, const QString &) {
        const QString path = wholeMap(bytes).value(QStringLiteral("databasePath")).toString();
        return readers::launchCache().library(bytes, path);
    };
    EXPECT_TRUE(isCaught("launchCache", promises::launchCache, broken, "another library"));
}

TEST_F(BrokenReader, ThatStopsWhereALibraryEndsIsCaught)
{
    promises::LaunchCacheReader broken = readers::launchCache();
    broken.library = [](const QByteArray &bytes, const QString &databasePath) {
        QCborParserError error;
        QCborValue::fromCbor(bytes, &error);
        return readers::launchCache().library(bytes.first(error.offset), databasePath);
    };
    EXPECT_TRUE(isCaught("launchCache", promises::launchCache, broken, "a library with something after it"));
}

TEST_F(BrokenReader, ThatForgetsTheOtherSecretIsCaught)
{
    promises::CredentialFile broken = readers::credentials();
    broken.set = [](const QString &path, const QString &value, const QString &key) {
        QFile::remove(path);
        readers::credentials().set(path, value, key);
    };
    EXPECT_TRUE(
        isCaught("credentials", promises::credentials, broken, "other secrets than were there and were entered"));
}

TEST_F(BrokenReader, ThatLetsOthersReadSecretsIsCaught)
{
    promises::CredentialFile broken = readers::credentials();
    broken.set = [](const QString &path, const QString &value, const QString &key) {
        readers::credentials().set(path, value, key);
        DurableFile::write(path, bytesOf(path));
    };
    EXPECT_TRUE(isCaught("credentials", promises::credentials, broken, "a file that others may read"));
}

TEST_F(BrokenReader, ThatKeepsEmptySecretsIsCaught)
{
    promises::CredentialFile broken = readers::credentials();
    broken.load = [](const QString &path) {
        QMap<QString, QString> secrets;
        const QCborMap map = wholeMap(bytesOf(path));
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            secrets.insert(entry.key().toString(), entry.value().toString());
        }
        return secrets;
    };
    EXPECT_TRUE(isCaught("credentials", promises::credentials, broken, "a secret that is empty"));
}

TEST_F(BrokenReader, ThatTakesAnyTextForAFolderIsCaught)
{
    const promises::ReadLocation broken = [](const QString &record) -> std::optional<QString> {
        const QJsonValue path = QJsonDocument::fromJson(bytesOf(record)).object().value(u"path");
        return path.isString() ? std::optional(path.toString()) : std::nullopt;
    };
    EXPECT_TRUE(isCaught("locationRecord", promises::locationRecord, broken, "a folder that is not absolute"));
}

TEST_F(BrokenReader, ThatMakesRoomForALibraryOfItsOwnIsCaught)
{
    const promises::UseLibrary broken = [](const QString &folder) {
        if (readers::databaseFile()(folder)) {
            return true;
        }
        QFile::remove(folder + QStringLiteral("/quire.db"));
        return readers::databaseFile()(folder);
    };
    EXPECT_TRUE(isCaught("databaseFile", promises::databaseFile, broken, "a library in what is no database"));
}

TEST_F(BrokenReader, ThatLeavesOutTheTitlesOfALibraryIsCaught)
{
    const promises::UseLibrary broken = [](const QString &folder) {
        const bool wasOpened = readers::databaseFile()(folder);
        if (wasOpened) {
            SQLiteDatabase(folder + QStringLiteral("/quire.db")).execute("DELETE FROM audible_books");
        }
        return wasOpened;
    };
    EXPECT_TRUE(isCaught("databaseFile", promises::databaseFile, broken, "a library without its titles"));
}
