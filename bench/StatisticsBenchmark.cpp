// What the statistics and the insights of a library cost after each load, beside
// a bare pass that reads the same fields of the same books, which they may exceed
// twice at most. With the keys of the load no date is parsed; without them each
// is parsed once.

#include "core/GoodreadsStatistics.h"
#include "core/LibraryIndex.h"
#include "core/ReadingInsights.h"

#include <benchmark/benchmark.h>

#include <QHash>

#include <map>
#include <random>

namespace quire {

namespace {

const Instant now = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21);

QList<Book> makeBooks(qint64 count)
{
    static const QStringList shelves{QStringLiteral("read"), QStringLiteral("read"), QStringLiteral("read"),
        QStringLiteral("to-read"), QStringLiteral("currently-reading")};
    std::mt19937 random(11);
    const auto oneOf = [&random](const QString &pattern, unsigned many) { return pattern.arg(random() % many); };
    QList<Book> books;
    books.reserve(count);
    for (qint64 id = 1; id <= count; ++id) {
        Book book;
        book.id = id;
        book.title = oneOf(QStringLiteral("Title %1"), 1'000'000);
        book.author = oneOf(QStringLiteral("Author of many words %1"), unsigned(count / 5 + 1));
        book.shelf = shelves[qsizetype(random() % std::size_t(shelves.size()))];
        book.userRating = double(random() % 11) / 2;
        book.numberOfPages = random() % 8 == 0 ? std::nullopt : std::optional<qint64>(100 + random() % 900);
        book.readAt = random() % 4 == 0 ? std::nullopt
                                        : std::optional(QStringLiteral("20%1-%2-%3")
                                                            .arg(10 + random() % 17, 2, 10, QLatin1Char('0'))
                                                            .arg(1 + random() % 12, 2, 10, QLatin1Char('0'))
                                                            .arg(1 + random() % 28, 2, 10, QLatin1Char('0')));
        book.dateAdded = QStringLiteral("Tue, 0%1 Mar 2024 10:15:30 +0000").arg(1 + random() % 9);
        for (auto tags = random() % 4; tags > 0; --tags) {
            book.tags.append(oneOf(QStringLiteral("tag %1"), 300));
        }
        books.append(book);
    }
    return books;
}

struct Library
{
    QList<Book> books;
    std::shared_ptr<const LibraryIndex> index;
};

const Library &libraryOf(qint64 count)
{
    static std::map<qint64, Library> libraries;
    Library &library = libraries[count];
    if (library.books.isEmpty()) {
        library.books = makeBooks(count);
        library.index = LibraryIndex::of(library.books);
    }
    return library;
}

void sizes(benchmark::internal::Benchmark *row)
{
    row->ArgNames({"titles"})->Arg(1'000)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMicrosecond);
}

// Every field that the figures are made of, looked at once: texts are read
// through, and nothing is remembered.
template<typename Recency>
void readFields(benchmark::State &state, Recency recency)
{
    const Library &library = libraryOf(state.range(0));
    for (auto _ : state) {
        double sum = 0;
        std::size_t texts = 0;
        for (qsizetype row = 0; row < library.books.size(); ++row) {
            const Book &book = library.books[row];
            if (book.isHidden || book.shelf != u"read") {
                continue;
            }
            sum += book.userRating + double(book.numberOfPages.value_or(0)) + double(book.id);
            sum += double(recency(library, row).time_since_epoch().count());
            texts ^= qHash(book.author);
            for (const QString &tag : book.tags) {
                texts ^= qHash(QStringView(tag).trimmed());
            }
        }
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(texts);
    }
}

void BarePassOverFields(benchmark::State &state)
{
    readFields(state, [](const Library &library, qsizetype row) { return library.index->recency(row); });
}
BENCHMARK(BarePassOverFields)->Apply(sizes);

void StatisticsAfterALoad(benchmark::State &state)
{
    const Library &library = libraryOf(state.range(0));
    for (auto _ : state) {
        const ReadingHistory history(library.books, *library.index, now);
        benchmark::DoNotOptimize(makeGoodreadsStatistics(history));
        benchmark::DoNotOptimize(makeReadingInsights(history));
    }
}
BENCHMARK(StatisticsAfterALoad)->Apply(sizes);

void BarePassOverFieldsAndDates(benchmark::State &state)
{
    readFields(state, [](const Library &library, qsizetype row) { return recencyDate(library.books[row]); });
}
BENCHMARK(BarePassOverFieldsAndDates)->Apply(sizes);

void StatisticsOfTextsAlone(benchmark::State &state)
{
    const Library &library = libraryOf(state.range(0));
    for (auto _ : state) {
        const ReadingHistory history(library.books, now);
        benchmark::DoNotOptimize(makeGoodreadsStatistics(history));
        benchmark::DoNotOptimize(makeReadingInsights(history));
    }
}
BENCHMARK(StatisticsOfTextsAlone)->Apply(sizes);

} // namespace

} // namespace quire
