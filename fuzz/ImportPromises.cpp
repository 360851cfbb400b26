#include "fuzz/BrokenPromise.h"
#include "fuzz/Promises.h"

#include "persistence/NormalizedText.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <cstring>

namespace quire::fuzz::promises {

namespace {

// A value as a line spells it: its first letter tells the type of the rest.
SQLiteValue valueOf(const QByteArray &line)
{
    const QByteArray rest = line.mid(1);
    switch (line.isEmpty() ? ' ' : line.front()) {
    case 'i':
        return rest.toLongLong();
    case 'r': {
        double real = 0;
        std::memcpy(&real, rest.constData(), std::min(sizeof real, size_t(rest.size())));
        return real;
    }
    case 'b':
        return rest;
    case 't':
        return QString::fromUtf8(rest);
    default:
        return {};
    }
}

struct Title
{
    QString asin;
    QString title;
    std::optional<QString> author;
};

// "asin|title|author"; without the last, nobody wrote it.
Title titleOf(const QByteArray &line)
{
    const QStringList parts = QString::fromUtf8(line).split(u'|');
    return {parts.value(0), parts.value(1), parts.size() > 2 ? std::optional(parts[2]) : std::nullopt};
}

QSet<QString> wordsOf(const std::optional<QString> &author)
{
    const QStringList words = normalizedText(author.value_or(QString())).split(u' ', Qt::SkipEmptyParts);
    return {words.begin(), words.end()};
}

bool matchesByTitle(const Title &row, const Title &item)
{
    if (normalizedText(row.title) != normalizedText(item.title)) {
        return false;
    }
    const auto ofRow = wordsOf(row.author);
    const auto ofItem = wordsOf(item.author);
    return ofRow.isEmpty() || ofItem.isEmpty() || ofRow.intersects(ofItem);
}

// The rule as it is told: through the rows one by one.
std::optional<qint64> firstMatch(const QList<Title> &rows, const Title &item)
{
    const auto position = [&rows](auto matches) -> std::optional<qint64> {
        const auto found = std::find_if(rows.begin(), rows.end(), matches);
        return found == rows.end() ? std::nullopt : std::optional<qint64>(found - rows.begin());
    };
    const auto byAsin = position([&item](const Title &row) { return row.asin == item.asin; });
    return byAsin ? byAsin : position([&item](const Title &row) { return matchesByTitle(row, item); });
}

} // namespace

void audibleRow(const QByteArray &bytes, const ReadAudibleRow &read)
{
    constexpr std::array columns{"asin", "title", "authors", "narrators", "relationships", "productImages",
        "publisherSummary", "runtimeLength", "releaseDate", "rating", "purchaseDate", "percentComplete", "isStarted",
        "isFinished", "ownedIndefinitely"};
    const QByteArrayList lines = bytes.split('\n');
    SQLiteRow row;
    for (std::size_t at = 0; at < columns.size(); ++at) {
        row.set(QString::fromLatin1(columns[at]), valueOf(lines.value(qsizetype(at))));
    }
    const auto item = read(row);
    require(!item || (!item->asin.isEmpty() && !item->title.isEmpty()), "an item without an ASIN or a title");
    require(!item || (item->listeningProgress >= 0 && item->listeningProgress <= 100), "a progress that is none");
}

void merge(const QByteArray &bytes, const FindAudiobook &find)
{
    QList<Title> rows;
    AudiobookIndex index;
    for (const QByteArray &line : bytes.split('\n').first(std::min<qsizetype>(bytes.count('\n') + 1, 50))) {
        const Title title = titleOf(line);
        AudibleLibraryItem item;
        item.asin = title.asin;
        item.title = title.title;
        item.author = title.author;
        require(find(index, item) == firstMatch(rows, title), "another row than the first that matches");
        index.add(rows.size(), title.asin, title.title, title.author);
        rows.append(title);
    }
}

} // namespace quire::fuzz::promises
