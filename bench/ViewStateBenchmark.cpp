// What a keystroke in the search field costs at three sizes of library, beside
// a plain substring scan of the same folded texts, which it may exceed three
// times at most; what a change of the sort costs beside a walk over the rows;
// and what it costs to make the keys for both, once a load.

#include "core/LibraryFilter.h"
#include "core/LibrarySlice.h"
#include "core/TitleFacets.h"
#include "records/Text.h"

#include <benchmark/benchmark.h>

#include <map>
#include <random>

namespace quire {

namespace {

QString word(std::mt19937 &random)
{
    static const QStringList syllables{QStringLiteral("an"), QStringLiteral("be"), QStringLiteral("cor"),
        QStringLiteral("dé"), QStringLiteral("en"), QStringLiteral("fal"), QStringLiteral("gra"), QStringLiteral("hi"),
        QStringLiteral("in"), QStringLiteral("ja"), QStringLiteral("lo"), QStringLiteral("mär"), QStringLiteral("no"),
        QStringLiteral("or"), QStringLiteral("per"), QStringLiteral("sol"), QStringLiteral("ta"), QStringLiteral("um")};
    QString text;
    for (auto count = 1 + random() % 3; count > 0; --count) {
        text += syllables[qsizetype(random() % std::size_t(syllables.size()))];
    }
    text[0] = text[0].toUpper();
    return text;
}

QString words(std::mt19937 &random, std::size_t count)
{
    QStringList list;
    for (; count > 0; --count) {
        list.append(word(random));
    }
    return list.join(u' ');
}

QList<Book> makeBooks(qint64 count)
{
    static const QStringList shelves{QStringLiteral("read"), QStringLiteral("read"), QStringLiteral("to-read"),
        QStringLiteral("currently-reading"), QStringLiteral("did-not-finish")};
    std::mt19937 random(7);
    QList<Book> books;
    books.reserve(count);
    for (qint64 id = 1; id <= count; ++id) {
        Book book;
        book.id = id;
        book.title = words(random, 2 + random() % 4);
        book.author = words(random, 2);
        book.shelf = shelves[qsizetype(random() % std::size_t(shelves.size()))];
        book.notes = random() % 4 == 0 ? words(random, 30) : QString();
        book.tags = random() % 3 == 0 ? QStringList{word(random), word(random)} : QStringList();
        book.userRating = double(random() % 6);
        book.dateAdded = QStringLiteral("20%1-%2-%3T10:15:30Z")
                             .arg(random() % 25, 2, 10, QLatin1Char('0'))
                             .arg(1 + random() % 12, 2, 10, QLatin1Char('0'))
                             .arg(1 + random() % 28, 2, 10, QLatin1Char('0'));
        books.append(book);
    }
    return books;
}

struct Library
{
    QList<Book> books;
    std::shared_ptr<const LibraryIndex> index;
    QStringList folded;
};

const Library &libraryOf(qint64 count)
{
    static std::map<qint64, Library> libraries;
    Library &library = libraries[count];
    if (library.books.isEmpty()) {
        library.books = makeBooks(count);
        library.index = LibraryIndex::of(library.books);
        for (const Book &book : std::as_const(library.books)) {
            library.folded.append(Text::folded(TitleFacets::searchableText(book)));
        }
    }
    return library;
}

QString queryOf(int64_t which)
{
    static const QStringList queries{QStringLiteral("a"), QStringLiteral("solta"), QStringLiteral("Dégra Loper xyz")};
    return queries[which];
}

// The arguments of every row: titles, and which query: one that most titles
// match, one that some do, one that none does.
void sizesAndQueries(benchmark::internal::Benchmark *row)
{
    row->ArgNames({"titles", "query"})->ArgsProduct({{1'000, 10'000, 50'000}, {0, 1, 2}});
    row->Unit(benchmark::kMicrosecond);
}

void sizes(benchmark::internal::Benchmark *row)
{
    row->ArgNames({"titles"})->Arg(1'000)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMicrosecond);
}

void PlainSubstringScan(benchmark::State &state)
{
    const Library &library = libraryOf(state.range(0));
    const QString query = Text::folded(queryOf(state.range(1)));
    for (auto _ : state) {
        qsizetype found = 0;
        for (const QString &text : library.folded) {
            found += text.contains(query) ? 1 : 0;
        }
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(PlainSubstringScan)->Apply(sizesAndQueries);

void Keystroke(benchmark::State &state)
{
    const Library &library = libraryOf(state.range(0));
    const LibrarySelection selection{LibraryShelf::All, LibrarySort::Recent, queryOf(state.range(1))};
    const LibrarySlice<Book> shown(library.books, filteredRows(*library.index, selection));
    for (auto _ : state) {
        const LibrarySlice<Book> fresh(library.books, filteredRows(*library.index, selection));
        benchmark::DoNotOptimize(fresh.hasSameIds(shown));
    }
}
BENCHMARK(Keystroke)->Apply(sizesAndQueries);

void WalkOverRows(benchmark::State &state)
{
    const Library &library = libraryOf(state.range(0));
    for (auto _ : state) {
        QList<int> rows;
        for (int row = 0; row < library.books.size(); ++row) {
            if (!library.books[row].isHidden) {
                rows.append(row);
            }
        }
        benchmark::DoNotOptimize(rows);
    }
}
BENCHMARK(WalkOverRows)->Apply(sizes);

template<LibrarySort Sort>
void SortChange(benchmark::State &state)
{
    const Library &library = libraryOf(state.range(0));
    for (auto _ : state) {
        const auto rows = filteredRows(*library.index, {LibraryShelf::All, Sort, QString()});
        benchmark::DoNotOptimize(rows);
    }
}
BENCHMARK(SortChange<LibrarySort::Recent>)->Apply(sizes);
BENCHMARK(SortChange<LibrarySort::Title>)->Apply(sizes);
BENCHMARK(SortChange<LibrarySort::Rating>)->Apply(sizes);

void IndexOfAFirstLoad(benchmark::State &state)
{
    const Library &library = libraryOf(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(LibraryIndex::of(library.books));
    }
}
BENCHMARK(IndexOfAFirstLoad)->Apply(sizes);

void IndexAfterAnEdit(benchmark::State &state)
{
    const Library &library = libraryOf(state.range(0));
    QList<Book> edited = makeBooks(state.range(0)); // texts of their own, as a reload reads them
    edited[edited.size() / 2].notes = QStringLiteral("Edited.");
    for (auto _ : state) {
        benchmark::DoNotOptimize(LibraryIndex::of(edited, library.books, library.index));
    }
}
BENCHMARK(IndexAfterAnEdit)->Apply(sizes);

} // namespace

} // namespace quire
