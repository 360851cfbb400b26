// How often each text occurs among many. The texts are counted where they lie
// and not copied.
//
// Thread: one at a time.

#pragma once

#include <QCollator>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringView>

#include <utility>

namespace quire {

class Tally
{
public:
    using Entry = std::pair<QStringView, qint64>;

    // text: lies somewhere that outlives the tally; two that differ in case are two.
    void add(QStringView text) { ++m_counts[text]; }

    // Leaves out every text of which `isDropped` says so.
    template<typename Predicate>
    void drop(Predicate isDropped)
    {
        m_counts.removeIf([&isDropped](auto at) { return isDropped(at.key()); });
    }

    // At most `count` texts: the most frequent first, those as frequent as each
    // other in the reader's order. Does not depend on the order of adding.
    QList<Entry> mostFrequent(qsizetype count) const;

private:
    QHash<QStringView, qint64> m_counts;
};

} // namespace quire
