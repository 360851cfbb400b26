#include "persistence/AudiobookIndex.h"

#include "persistence/NormalizedText.h"

#include <QStringList>

namespace quire {

namespace {

QStringList authorWords(const std::optional<QString> &author)
{
    return normalizedText(author.value_or(QString())).split(u' ', Qt::SkipEmptyParts);
}

template<typename Key, typename Value>
void insertIfAbsent(QHash<Key, Value> &hash, const Key &key, const Value &value)
{
    if (!hash.contains(key)) {
        hash.insert(key, value);
    }
}

} // namespace

void AudiobookIndex::add(qint64 id, const QString &asin, const QString &title, const std::optional<QString> &author)
{
    const Place place{.position = m_count++, .id = id};
    insertIfAbsent(m_byAsin, asin, place);

    const QString normalizedTitle = normalizedText(title);
    insertIfAbsent(m_byTitle, normalizedTitle, place);
    const QStringList words = authorWords(author);
    if (words.isEmpty()) {
        insertIfAbsent(m_byTitleAndAuthorWord, {normalizedTitle, QString()}, place);
    }
    for (const QString &word : words) {
        insertIfAbsent(m_byTitleAndAuthorWord, {normalizedTitle, word}, place);
    }
}

std::optional<qint64> AudiobookIndex::find(const AudibleLibraryItem &item) const
{
    if (const auto found = m_byAsin.constFind(item.asin); found != m_byAsin.cend()) {
        return found->id;
    }

    const QString normalizedTitle = normalizedText(item.title);
    QStringList words = authorWords(item.author);
    if (words.isEmpty()) {
        const auto found = m_byTitle.constFind(normalizedTitle);
        return found == m_byTitle.cend() ? std::nullopt : std::optional(found->id);
    }

    words.append(QString()); // a row without an author matches any
    std::optional<Place> first;
    for (const QString &word : words) {
        const auto found = m_byTitleAndAuthorWord.constFind({normalizedTitle, word});
        if (found != m_byTitleAndAuthorWord.cend() && (!first || found->position < first->position)) {
            first = *found;
        }
    }
    return first ? std::optional(first->id) : std::nullopt;
}

} // namespace quire
