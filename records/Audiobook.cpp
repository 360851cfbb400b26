#include "records/Audiobook.h"

#include "records/DateParser.h"
#include "records/OptionalHash.h"

namespace quire {

size_t qHash(const Audiobook &audiobook, size_t seed)
{
    return qHashMulti(seed, audiobook.id, audiobook.asin, audiobook.title, hashed(audiobook.author),
        hashed(audiobook.narrator), hashed(audiobook.series), hashed(audiobook.bookNumber), hashed(audiobook.coverURL),
        hashed(audiobook.coverData), hashed(audiobook.audibleURL), hashed(audiobook.dateAdded),
        hashed(audiobook.dateSynced), audiobook.notes, hashed(audiobook.userRating), hashed(audiobook.finishedAt),
        hashed(audiobook.summary), audiobook.status, hashed(audiobook.runtimeMinutes), hashed(audiobook.releaseDate),
        hashed(audiobook.purchaseDate), hashed(audiobook.averageRating), hashed(audiobook.performanceRating),
        hashed(audiobook.storyRating), hashed(audiobook.reviewCount), hashed(audiobook.listeningProgress),
        audiobook.audibleOwned, hashed(audiobook.lastAudibleSync));
}

Instant recencyDate(const Audiobook &audiobook)
{
    if (const auto finished = DateParser::date(audiobook.finishedAt)) {
        return *finished;
    }
    return DateParser::date(audiobook.dateAdded).value_or(distantPast);
}

} // namespace quire
