#include "sources/AudibleLibraryRow.h"

#include "records/Text.h"
#include "sources/AudibleImages.h"
#include "sources/HTMLText.h"
#include "sources/ServiceURL.h"

#include <QStringList>

#include <algorithm>

namespace quire::AudibleLibraryRow {

namespace {

constexpr double wholeProgress = 100; // percent

struct Relationship
{
    std::optional<QString> relationshipType;
    std::optional<qint64> sort;
    std::optional<QString> title;
};

struct RatingGroup
{
    std::optional<double> averageRating;
};

struct Rating
{
    std::optional<qint64> numberOfReviews;
    std::optional<RatingGroup> overall;
    std::optional<RatingGroup> performance;
    std::optional<RatingGroup> story;
};

Contributor contributor(const JSONValue &value)
{
    return {.name = value.optional(u"name", &JSONValue::text)};
}

Relationship relationship(const JSONValue &value)
{
    return {
        .relationshipType = value.optional(u"relationshipType", &JSONValue::text),
        .sort = value.optional(u"sort", &JSONValue::integer),
        .title = value.optional(u"title", &JSONValue::text),
    };
}

RatingGroup ratingGroup(const JSONValue &value)
{
    return {.averageRating = value.optional(u"averageRating", &JSONValue::real)};
}

Rating rating(const JSONValue &value)
{
    return {
        .numberOfReviews = value.optional(u"numberOfReviews", &JSONValue::integer),
        .overall = value.optional(u"overall", ratingGroup),
        .performance = value.optional(u"performance", ratingGroup),
        .story = value.optional(u"story", ratingGroup),
    };
}

std::optional<double> average(const std::optional<RatingGroup> &group)
{
    return group ? group->averageRating : std::nullopt;
}

std::optional<QString> namesIn(const SQLiteRow &row, const QString &column)
{
    return joinedNames(
        decode(row.optionalString(column), JSONValue::listOf(contributor)).value_or(QList<Contributor>()));
}

std::optional<Relationship> seriesIn(const SQLiteRow &row)
{
    const auto relationships
        = decode(row.optionalString(QStringLiteral("relationships")), JSONValue::listOf(relationship))
              .value_or(QList<Relationship>());
    const auto found = std::find_if(relationships.begin(), relationships.end(), [](const Relationship &candidate) {
        return candidate.relationshipType
            && candidate.relationshipType->compare(QStringLiteral("series"), Qt::CaseInsensitive) == 0;
    });
    return found == relationships.end() ? std::nullopt : std::optional(*found);
}

std::optional<QString> summaryIn(const SQLiteRow &row)
{
    return Text::nonEmptyValue(HTMLText::plainText(row.string(QStringLiteral("publisherSummary"), {})));
}

// A real that no integer comes near has none, which SQLiteValue takes for granted.
std::optional<qint64> integerIn(const SQLiteRow &row, const QString &column)
{
    constexpr double limit = 0x1p63;
    const SQLiteValue value = row.value(column);
    if (value.kind() == SQLiteValue::Case::Real) {
        const double real = value.doubleValue(0);
        const bool fits = real >= -limit && real < limit;
        if (!fits) {
            return std::nullopt;
        }
    }
    return value.intValue();
}

double progressIn(const SQLiteRow &row)
{
    const double percent = row.doubleValue(QStringLiteral("percentComplete"), 0);
    return percent > 0 ? std::min(percent, wholeProgress) : 0; // what is no number gives 0
}

} // namespace

std::optional<AudibleLibraryItem> map(const SQLiteRow &row, const QUrl &audibleWeb)
{
    AudibleLibraryItem item;
    item.asin = row.string(QStringLiteral("asin"), {});
    item.title = row.string(QStringLiteral("title"), {});
    if (item.asin.isEmpty() || item.title.isEmpty()) {
        return std::nullopt;
    }
    item.author = namesIn(row, QStringLiteral("authors"));
    item.narrator = namesIn(row, QStringLiteral("narrators"));
    if (const auto series = seriesIn(row)) {
        item.series = series->title;
        item.bookNumber = series->sort;
    }
    if (const auto images
        = decode(row.optionalString(QStringLiteral("productImages")), JSONValue::mapOf(&JSONValue::text))) {
        item.coverURL = AudibleImages::largest(*images);
    }
    item.audibleURL = ServiceURL::address(audibleWeb, QStringLiteral("/pd/") + item.asin);
    item.summary = summaryIn(row);
    item.runtimeMinutes = integerIn(row, QStringLiteral("runtimeLength"));
    item.releaseDate = row.optionalString(QStringLiteral("releaseDate"));
    item.purchaseDate = row.optionalString(QStringLiteral("purchaseDate"));
    if (const auto ratings = decode(row.optionalString(QStringLiteral("rating")), rating)) {
        item.averageRating = average(ratings->overall);
        item.performanceRating = average(ratings->performance);
        item.storyRating = average(ratings->story);
        item.reviewCount = ratings->numberOfReviews;
    }
    item.listeningProgress = progressIn(row);
    item.isStarted = integerIn(row, QStringLiteral("isStarted")) == 1;
    item.isFinished = integerIn(row, QStringLiteral("isFinished")) == 1;
    item.ownedIndefinitely = integerIn(row, QStringLiteral("ownedIndefinitely")) == 1;
    return item;
}

std::optional<QString> joinedNames(const QList<Contributor> &contributors)
{
    QStringList names;
    for (const Contributor &contributor : contributors) {
        if (contributor.name && !contributor.name->isEmpty()) {
            names.append(*contributor.name);
        }
    }
    return names.isEmpty() ? std::nullopt : std::optional(names.join(QStringLiteral(", ")));
}

} // namespace quire::AudibleLibraryRow
