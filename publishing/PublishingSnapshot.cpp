#include "publishing/PublishingSnapshot.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quire {

namespace {

// The titles that `isPublished` picks, the most recent first. Their dates are
// text, so each is parsed once and not in the comparison.
template<typename Title, typename Predicate>
QList<Title> published(const QList<Title> &titles, const Predicate &isPublished)
{
    std::vector<std::pair<Instant, qsizetype>> places;
    for (qsizetype place = 0; place < titles.size(); ++place) {
        if (isPublished(titles[place])) {
            places.emplace_back(recencyDate(titles[place]), place);
        }
    }
    std::ranges::stable_sort(places, std::ranges::greater(), [](const auto &entry) { return entry.first; });

    QList<Title> chosen;
    chosen.reserve(qsizetype(places.size()));
    for (const auto &[recency, place] : places) {
        chosen.append(titles[place]);
    }
    return chosen;
}

} // namespace

PublishingSnapshot makePublishingSnapshot(
    const QList<Book> &books, const QList<Audiobook> &audiobooks, GoodreadsStatistics statistics, Instant now)
{
    const auto isOn
        = [](QStringView shelf) { return [shelf](const Book &book) { return !book.isHidden && book.shelf == shelf; }; };
    return {
        .statistics = std::move(statistics),
        .currentlyReading = published(books, isOn(u"currently-reading")),
        .booksRead = published(books, isOn(u"read")),
        .ratedAudiobooks
        = published(audiobooks, [](const Audiobook &audiobook) { return audiobook.userRating.value_or(0) > 0; }),
        .generatedAt = now,
    };
}

} // namespace quire
