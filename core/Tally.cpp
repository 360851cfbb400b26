#include "core/Tally.h"

#include "records/TitleCollator.h"

#include <algorithm>
#include <functional>

namespace quire {

QList<Tally::Entry> Tally::mostFrequent(qsizetype count) const
{
    QList<qint64> counts = m_counts.values();
    const qsizetype wanted = std::min(count, counts.size());
    if (wanted <= 0) {
        return {};
    }
    // Asking the collator is slow: only those that are frequent enough to be
    // among the wanted ones are compared by it.
    std::nth_element(counts.begin(), counts.begin() + wanted - 1, counts.end(), std::greater<>());
    const qint64 least = counts[wanted - 1];
    QList<Entry> frequent;
    for (auto at = m_counts.begin(); at != m_counts.end(); ++at) {
        if (at.value() >= least) {
            frequent.append({at.key(), at.value()});
        }
    }
    const QCollator collator = titleCollator();
    const auto isBefore = [&collator](const Entry &a, const Entry &b) {
        if (a.second != b.second) {
            return a.second > b.second;
        }
        const int order = collator.compare(a.first, b.first);
        return order < 0 || (order == 0 && a.first < b.first); // case alone tells them apart
    };
    std::partial_sort(frequent.begin(), frequent.begin() + wanted, frequent.end(), isBefore);
    return frequent.first(wanted);
}

} // namespace quire
