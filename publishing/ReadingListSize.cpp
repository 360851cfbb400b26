#include "publishing/ReadingListSize.h"

namespace quire {

namespace {

constexpr qsizetype wordsOfADocument = 8'000;
constexpr qsizetype wordsOfATitle = 480;

qsizetype lengthOf(const std::optional<QString> &text)
{
    return text ? text->size() : 0;
}

qsizetype lengthOf(const QList<Book> &books)
{
    qsizetype length = 0;
    for (const Book &book : books) {
        length += wordsOfATitle + book.title.size() + book.author.size() + lengthOf(book.summary);
    }
    return length;
}

} // namespace

qsizetype expectedLength(const PublishingSnapshot &snapshot)
{
    qsizetype length = wordsOfADocument + lengthOf(snapshot.currentlyReading) + lengthOf(snapshot.booksRead);
    for (const Audiobook &audiobook : snapshot.ratedAudiobooks) {
        length += wordsOfATitle + audiobook.title.size() + lengthOf(audiobook.author) + lengthOf(audiobook.narrator)
            + lengthOf(audiobook.series) + lengthOf(audiobook.summary);
    }
    return length;
}

} // namespace quire
