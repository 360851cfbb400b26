// What the fuzzer drives: everything that reads what somebody else wrote. Each
// takes any bytes, holds what is promised of the result against it, and ends the
// process when that does not hold. The ordinary tests replay the corpora through
// the same functions.
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
void htmlText(const QByteArray &bytes);
void date(const QByteArray &bytes); // DateParser
void audibleRow(const QByteArray &bytes); // a row of the Audible application's database
void merge(const QByteArray &bytes); // which row an imported title is

inline constexpr Target targets[] = {
    {"feed", feed},
    {"audibleCatalogue", audibleCatalogue},
    {"bookCatalogue", bookCatalogue},
    {"htmlText", htmlText},
    {"date", date},
    {"audibleRow", audibleRow},
    {"merge", merge},
};

} // namespace quire::fuzz
