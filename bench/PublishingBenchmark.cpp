// What rendering the reading list costs at three sizes, beside copying the same
// bytes into one text in as many pieces.

#include "publishing/ReadingListRenderer.h"

#include <benchmark/benchmark.h>

#include <QDate>
#include <QStringList>

#include <algorithm>

namespace quire {

namespace {

// Of the lengths that real feeds have, and nine in ten of them books.
PublishingSnapshot library(qsizetype titles)
{
    const QString sentence = QStringLiteral(
        "The “winter” is long & so is the book, which tells of it with care and little else; one reads on. ");
    PublishingSnapshot snapshot;
    for (qsizetype i = 0; i < titles; ++i) {
        const QString day = QDate(2026, 11, 20).addDays(-i % 7'000).toString(Qt::ISODate);
        const QString number = QString::number(10'000'000 + i);
        if (i % 10 == 9) {
            Audiobook audiobook;
            audiobook.title = QStringLiteral("The %1th Night: A Novel").arg(i);
            audiobook.author = QStringLiteral("Author & Other");
            audiobook.narrator = QStringLiteral("A Narrator");
            audiobook.series = QStringLiteral("The Long Winter");
            audiobook.bookNumber = i % 12;
            audiobook.userRating = 0.5 * double(1 + i % 10);
            audiobook.finishedAt = day;
            audiobook.summary = sentence.repeated(i % 12);
            audiobook.audibleURL = Url::parse(QStringLiteral("https://www.audible.com/pd/B0") + number);
            snapshot.ratedAudiobooks.append(audiobook);
            continue;
        }
        Book book;
        book.title = QStringLiteral("The %1th Night (The Long Winter, #3)").arg(i);
        book.author = QStringLiteral("Author & Other");
        book.userRating = 0.5 * double(i % 11);
        book.averageRating = 3 + 0.01 * double(i % 150);
        book.numberOfPages = 120 + i % 900;
        book.publishedYear = 1850 + i % 170;
        book.readAt = day + QStringLiteral("T12:02:40-08:00");
        book.summary = sentence.repeated(i % 12);
        book.goodreadsURL = Url::parse(QStringLiteral("https://www.goodreads.com/book/show/") + number);
        snapshot.booksRead.append(book);
    }
    return snapshot;
}

using Renderer = QString (*)(const PublishingSnapshot &snapshot, const QLocale &locale);

const QLocale english(QLocale::English, QLocale::UnitedStates);

template<Renderer render>
void rendering(benchmark::State &state)
{
    const PublishingSnapshot snapshot = library(state.range(0));
    qsizetype bytes = 0;
    for (auto _ : state) {
        const QString text = render(snapshot, english);
        bytes = text.size() * qsizetype(sizeof(QChar));
        benchmark::DoNotOptimize(text.constData());
    }
    state.SetBytesProcessed(state.iterations() * bytes);
}

// A book is so many pieces, fixed words and values together; each entity of the
// page makes two more.
constexpr qsizetype piecesOfATitle = 28;

template<Renderer render>
void copying(benchmark::State &state)
{
    const QString text = render(library(state.range(0)), english);
    const qsizetype entities = text.contains(u"<html") ? text.count(u'&') : 0;
    const qsizetype pieces = state.range(0) * piecesOfATitle + 2 * entities;
    const qsizetype piece = std::max<qsizetype>(1, text.size() / pieces);
    const qsizetype ofATitle = text.size() / state.range(0) + 1;
    QStringList texts; // each in a place of its own, as a library's are
    for (qsizetype at = 0; at < text.size(); at += ofATitle) {
        texts.append(text.mid(at, ofATitle));
    }
    for (auto _ : state) {
        QString copy;
        copy.reserve(text.size());
        for (const QString &title : texts) {
            const QStringView all(title);
            for (qsizetype at = 0; at < all.size(); at += piece) {
                copy += all.sliced(at, std::min(piece, all.size() - at));
            }
        }
        benchmark::DoNotOptimize(copy.constData());
    }
    state.SetBytesProcessed(state.iterations() * text.size() * qsizetype(sizeof(QChar)));
    state.counters["pieces"] = double(pieces);
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(1'000)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(rendering<ReadingListRenderer::html>)->Name("readingListPage")->Apply(sizes);
BENCHMARK(copying<ReadingListRenderer::html>)->Name("readingListPageCopied")->Apply(sizes);
BENCHMARK(rendering<ReadingListRenderer::markdown>)->Name("readingListMarkdown")->Apply(sizes);
BENCHMARK(copying<ReadingListRenderer::markdown>)->Name("readingListMarkdownCopied")->Apply(sizes);

} // namespace

} // namespace quire
