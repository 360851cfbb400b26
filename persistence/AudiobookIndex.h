// Finds the audiobook of the library that an item of Audible stands for: the
// first row with its ASIN, else the first row whose title and author match.
// The outcome is that of looking through the rows one by one; the cost of a
// look-up does not grow with their number.
//
// Thread: one at a time; owns all it holds.

#pragma once

#include "records/AudibleLibraryItem.h"

#include <QHash>
#include <QString>

#include <optional>
#include <utility>

namespace quire {

class AudiobookIndex
{
public:
    // Adds a row after those added before it.
    // id: its row id. asin, title: as stored, empty when there is none.
    void add(qint64 id, const QString &asin, const QString &title, const std::optional<QString> &author);

    // The row id of the first match.
    //
    // Titles match when their normalised forms are equal and the authors share
    // a word; when either author is unknown, the title alone decides. Every row
    // qualifies, so a title typed in by hand is adopted by its first import.
    std::optional<qint64> find(const AudibleLibraryItem &item) const;

private:
    // Where a row stands among the rows.
    struct Place
    {
        qsizetype position = 0;
        qint64 id = 0;
    };

    using TitleAndAuthorWord = std::pair<QString, QString>;

    qsizetype m_count = 0;
    // Each holds the first of the rows that share its key.
    QHash<QString, Place> m_byAsin;
    QHash<QString, Place> m_byTitle;
    QHash<TitleAndAuthorWord, Place> m_byTitleAndAuthorWord; // an empty word: no author
};

} // namespace quire
