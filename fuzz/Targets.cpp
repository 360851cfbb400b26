#include "fuzz/Targets.h"

#include "fuzz/Readers.h"

namespace quire::fuzz {

void feed(const QByteArray &bytes)
{
    promises::feed(bytes, readers::feed());
}

void audibleCatalogue(const QByteArray &bytes)
{
    promises::audibleCatalogue(bytes, readers::audibleCatalogue());
}

void bookCatalogue(const QByteArray &bytes)
{
    promises::bookCatalogue(bytes, readers::bookCatalogue());
}

void htmlText(const QByteArray &bytes)
{
    promises::htmlText(bytes, readers::htmlText());
}

void date(const QByteArray &bytes)
{
    promises::date(bytes, readers::date());
}

void netlifyAnswer(const QByteArray &bytes)
{
    promises::netlifyAnswer(bytes, readers::netlifyAnswer());
}

void updateManifest(const QByteArray &bytes)
{
    promises::updateManifest(bytes, readers::updateManifest());
}

void audibleRow(const QByteArray &bytes)
{
    promises::audibleRow(bytes, readers::audibleRow());
}

void merge(const QByteArray &bytes)
{
    promises::merge(bytes, readers::merge());
}

void launchCache(const QByteArray &bytes)
{
    promises::launchCache(bytes, readers::launchCache());
}

void credentials(const QByteArray &bytes)
{
    promises::credentials(bytes, readers::credentials());
}

void locationRecord(const QByteArray &bytes)
{
    promises::locationRecord(bytes, readers::locationRecord());
}

void databaseFile(const QByteArray &bytes)
{
    promises::databaseFile(bytes, readers::databaseFile());
}

} // namespace quire::fuzz
