// What the fuzzer drives: everything that reads what somebody else wrote. Each
// takes any bytes, gives them to the program's own reader and throws BrokenPromise
// where that does not keep its promises (Promises.h). The ordinary tests replay the
// corpora through the same functions.
//
// Thread: any, one at a time.

#pragma once

#include <QByteArray>

namespace quire::fuzz {

struct Target
{
    const char *name; // of its corpus, too
    void (*run)(const QByteArray &bytes);
};

void feed(const QByteArray &bytes); // GoodreadsXMLParser
void audibleCatalogue(const QByteArray &bytes); // the answer to AudibleService::search
void bookCatalogue(const QByteArray &bytes); // BookCatalogService::parse
void netlifyAnswer(const QByteArray &bytes); // the answers to NetlifyAPI
void updateManifest(const QByteArray &bytes); // QuireUpdateManifest
void htmlText(const QByteArray &bytes);
void date(const QByteArray &bytes); // DateParser
void audibleRow(const QByteArray &bytes); // a row of the Audible application's database
void merge(const QByteArray &bytes); // which row an imported title is
void launchCache(const QByteArray &bytes); // both files of QuireLaunchCache
void credentials(const QByteArray &bytes); // the file of QuireCredentialStore
void locationRecord(const QByteArray &bytes); // the record of QuireLibraryLocation
void databaseFile(const QByteArray &bytes); // the library file, as LibraryStore opens it

inline constexpr Target targets[] = {
    {"feed", feed},
    {"audibleCatalogue", audibleCatalogue},
    {"bookCatalogue", bookCatalogue},
    {"netlifyAnswer", netlifyAnswer},
    {"updateManifest", updateManifest},
    {"htmlText", htmlText},
    {"date", date},
    {"audibleRow", audibleRow},
    {"merge", merge},
    {"launchCache", launchCache},
    {"credentials", credentials},
    {"locationRecord", locationRecord},
    {"databaseFile", databaseFile},
};

} // namespace quire::fuzz
