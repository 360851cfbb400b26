#include "persistence/QuireImportValidator.h"

#include "records/Text.h"
#include "reliability/QuireReliabilityError.h"

#include <QSet>

#include <algorithm>

namespace quire::QuireImportValidator {

namespace {

struct Details
{
    QString noIdentifier;
    QString duplicates;
    QString noTitle;
};

template<typename Record>
void validate(const QList<Record> &batch, QString Record::*identifier, const Details &details)
{
    QSet<QString> identifiers;
    identifiers.reserve(batch.size());
    for (const Record &record : batch) {
        const QString trimmed = Text::trimmed(record.*identifier);
        if (trimmed.isEmpty()) {
            throw QuireReliabilityError::invalidImport(details.noIdentifier);
        }
        identifiers.insert(trimmed);
    }
    if (identifiers.size() < batch.size()) {
        throw QuireReliabilityError::invalidImport(details.duplicates);
    }
    const auto hasNoTitle = [](const Record &record) { return Text::trimmed(record.title).isEmpty(); };
    if (std::any_of(batch.cbegin(), batch.cend(), hasNoTitle)) {
        throw QuireReliabilityError::invalidImport(details.noTitle);
    }
}

} // namespace

void validateGoodreads(const QList<GoodreadsFeedBook> &batch)
{
    validate(batch, &GoodreadsFeedBook::goodreadsID,
        {
            .noIdentifier = QStringLiteral("a Goodreads record had no identifier"),
            .duplicates = QStringLiteral("Goodreads returned duplicate identifiers"),
            .noTitle = QStringLiteral("a Goodreads record had no title"),
        });
}

void validateAudible(const QList<AudibleLibraryItem> &batch)
{
    validate(batch, &AudibleLibraryItem::asin,
        {
            .noIdentifier = QStringLiteral("an Audible record had no ASIN"),
            .duplicates = QStringLiteral("Audible returned duplicate ASINs"),
            .noTitle = QStringLiteral("an Audible record had no title"),
        });
}

} // namespace quire::QuireImportValidator
