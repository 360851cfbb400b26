#pragma once

#include <QHash>
#include <QString>

namespace quire {

// A tag with the number of titles that carry it.
struct TagCount
{
    QString tag;
    qint64 count = 0;

    bool operator==(const TagCount &) const = default;
};

inline size_t qHash(const TagCount &tagCount, size_t seed = 0)
{
    return qHashMulti(seed, tagCount.tag, tagCount.count);
}

} // namespace quire
