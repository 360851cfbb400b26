// The serialised fields of each record, in order: the one place where their
// keys stand. Shared by the writing and the reading of records.

#pragma once

#include "records/RecordCoding.h"

#include <QLatin1StringView>

#include <tuple>

namespace quire::RecordFields {

template<typename Record, typename Value>
struct Field
{
    QLatin1StringView key;
    Value Record::*member;
};

template<typename Record, typename Value>
constexpr Field<Record, Value> field(const char *key, Value Record::*member)
{
    return {QLatin1StringView(key), member};
}

template<typename Record>
const auto &fieldsOf();

template<>
inline const auto &fieldsOf<Book>()
{
    static constexpr std::tuple fields{field("id", &Book::id), field("goodreadsID", &Book::goodreadsID),
        field("title", &Book::title), field("author", &Book::author), field("isbn", &Book::isbn),
        field("shelf", &Book::shelf), field("userRating", &Book::userRating),
        field("averageRating", &Book::averageRating), field("numberOfPages", &Book::numberOfPages),
        field("summary", &Book::summary), field("goodreadsURL", &Book::goodreadsURL),
        field("publishedYear", &Book::publishedYear), field("coverURL", &Book::coverURL),
        field("goodreadsImageURL", &Book::goodreadsImageURL), field("coverData", &Book::coverData),
        field("readAt", &Book::readAt), field("dateAdded", &Book::dateAdded), field("dateSynced", &Book::dateSynced),
        field("dateModified", &Book::dateModified), field("notes", &Book::notes), field("tags", &Book::tags),
        field("isHidden", &Book::isHidden)};
    return fields;
}

template<>
inline const auto &fieldsOf<Audiobook>()
{
    static constexpr std::tuple fields{field("id", &Audiobook::id), field("asin", &Audiobook::asin),
        field("title", &Audiobook::title), field("author", &Audiobook::author), field("narrator", &Audiobook::narrator),
        field("series", &Audiobook::series), field("bookNumber", &Audiobook::bookNumber),
        field("coverURL", &Audiobook::coverURL), field("coverData", &Audiobook::coverData),
        field("audibleURL", &Audiobook::audibleURL), field("dateAdded", &Audiobook::dateAdded),
        field("dateSynced", &Audiobook::dateSynced), field("notes", &Audiobook::notes),
        field("userRating", &Audiobook::userRating), field("finishedAt", &Audiobook::finishedAt),
        field("summary", &Audiobook::summary), field("status", &Audiobook::status),
        field("runtimeMinutes", &Audiobook::runtimeMinutes), field("releaseDate", &Audiobook::releaseDate),
        field("purchaseDate", &Audiobook::purchaseDate), field("averageRating", &Audiobook::averageRating),
        field("performanceRating", &Audiobook::performanceRating), field("storyRating", &Audiobook::storyRating),
        field("reviewCount", &Audiobook::reviewCount), field("listeningProgress", &Audiobook::listeningProgress),
        field("audibleOwned", &Audiobook::audibleOwned), field("lastAudibleSync", &Audiobook::lastAudibleSync)};
    return fields;
}

template<>
inline const auto &fieldsOf<TagCount>()
{
    static constexpr std::tuple fields{field("tag", &TagCount::tag), field("count", &TagCount::count)};
    return fields;
}

template<>
inline const auto &fieldsOf<AudibleCatalogBook>()
{
    using Record = AudibleCatalogBook;
    static constexpr std::tuple fields{field("asin", &Record::asin), field("title", &Record::title),
        field("author", &Record::author), field("narrator", &Record::narrator), field("series", &Record::series),
        field("bookNumber", &Record::bookNumber), field("coverURL", &Record::coverURL),
        field("audibleURL", &Record::audibleURL), field("year", &Record::year), field("summary", &Record::summary)};
    return fields;
}

template<>
inline const auto &fieldsOf<CustomAccentColor>()
{
    static constexpr std::tuple fields{field("red", &CustomAccentColor::red), field("green", &CustomAccentColor::green),
        field("blue", &CustomAccentColor::blue)};
    return fields;
}

} // namespace quire::RecordFields
