#include "core/LibraryFilter.h"

#include "records/Text.h"

#include <gtest/gtest.h>

#include <QCollator>
#include <QLocale>
#include <QRandomGenerator>

#include <algorithm>

namespace quire {

namespace {

Book book(qint64 id, const QString &title, const QString &shelf = QStringLiteral("read"))
{
    Book made;
    made.id = id;
    made.title = title;
    made.shelf = shelf;
    return made;
}

Audiobook audiobook(qint64 id, const QString &title, const QString &status)
{
    Audiobook made;
    made.id = id;
    made.title = title;
    made.status = status;
    return made;
}

template<typename Record>
QList<qint64> shown(const QList<Record> &records, const LibrarySelection &selection)
{
    QList<qint64> ids;
    for (const int row : filteredRows(*LibraryIndex::of(records), selection)) {
        ids.append(records[row].id);
    }
    return ids;
}

using Ids = QList<qint64>;

TEST(LibraryFilter, AHiddenBookShowsUnderHiddenAndNowhereElse)
{
    Book hidden = book(1, QStringLiteral("Secret"));
    hidden.isHidden = true;
    const QList books{hidden, book(2, QStringLiteral("Open"))};

    for (const LibraryShelf shelf : allLibraryShelves) {
        const Ids ids = shown(books, {shelf, LibrarySort::Title, {}});
        EXPECT_EQ(ids.contains(1), shelf == LibraryShelf::Hidden) << qPrintable(rawValue(shelf));
    }
    EXPECT_EQ(shown(books, {LibraryShelf::All, LibrarySort::Title, {}}), Ids{2});
    EXPECT_EQ(shown(books, {LibraryShelf::Hidden, LibrarySort::Title, QStringLiteral("open")}), Ids{});
}

TEST(LibraryFilter, AShelfShowsBooksOfExactlyItsWord)
{
    const QList books{book(1, QStringLiteral("a"), QStringLiteral("read")),
        book(2, QStringLiteral("b"), QStringLiteral("currently-reading")),
        book(3, QStringLiteral("c"), QStringLiteral("to-read")),
        book(4, QStringLiteral("d"), QStringLiteral("did-not-finish")),
        book(5, QStringLiteral("e"), QStringLiteral("reading")), book(6, QStringLiteral("f"), QStringLiteral("Read")),
        book(7, QStringLiteral("g"), QString())};
    const auto under = [&books](LibraryShelf shelf) { return shown(books, {shelf, LibrarySort::Title, {}}); };

    EXPECT_EQ(under(LibraryShelf::Read), Ids{1});
    EXPECT_EQ(under(LibraryShelf::Active), Ids{2});
    EXPECT_EQ(under(LibraryShelf::ToRead), Ids{3});
    EXPECT_EQ(under(LibraryShelf::DidNotFinish), Ids{4});
    EXPECT_EQ(under(LibraryShelf::All), (Ids{1, 2, 3, 4, 5, 6, 7}));
}

TEST(LibraryFilter, AudiobooksCannotBeHiddenAndUseTheirOwnWords)
{
    const QList audiobooks{audiobook(1, QStringLiteral("a"), QStringLiteral("reading")),
        audiobook(2, QStringLiteral("b"), QStringLiteral("did-not-finish")),
        audiobook(3, QStringLiteral("c"), QStringLiteral("currently-reading")),
        audiobook(4, QStringLiteral("d"), QString())};
    const auto under = [&audiobooks](LibraryShelf shelf) { return shown(audiobooks, {shelf, LibrarySort::Title, {}}); };

    EXPECT_EQ(under(LibraryShelf::Active), Ids{1});
    EXPECT_EQ(under(LibraryShelf::DidNotFinish), Ids{2});
    EXPECT_EQ(under(LibraryShelf::Hidden), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(under(LibraryShelf::All), (Ids{1, 2, 3, 4}));
}

TEST(LibraryFilter, ASearchWithoutAccentsFindsATitleStoredWithThem)
{
    const QList books{book(1, QStringLiteral("Les Misérables")), book(2, QStringLiteral("Emma"))};
    const auto found = [&books](const QString &text) {
        return shown(books, {LibraryShelf::All, LibrarySort::Title, text});
    };

    EXPECT_EQ(found(QStringLiteral("miserables")), Ids{1});
    EXPECT_EQ(found(QStringLiteral("  MISÉRABLES\n")), Ids{1});
    EXPECT_EQ(found(QStringLiteral("mise\u0301r")), Ids{1});
    EXPECT_EQ(found(QStringLiteral(" \n")), (Ids{2, 1}));
}

TEST(LibraryFilter, TheQueryIsOneStringAndNotASetOfWords)
{
    const QList books{book(1, QStringLiteral("War and Peace"))};

    EXPECT_EQ(shown(books, {LibraryShelf::All, LibrarySort::Title, QStringLiteral("war and")}), Ids{1});
    EXPECT_EQ(shown(books, {LibraryShelf::All, LibrarySort::Title, QStringLiteral("peace war")}), Ids{});
}

TEST(LibraryFilter, EveryFieldOfABookIsSearchedAndTheyMeetAtOneBlank)
{
    Book one = book(1, QStringLiteral("Title"));
    one.author = QStringLiteral("Author");
    one.notes = QStringLiteral("Notes");
    one.tags = {QStringLiteral("first tag"), QStringLiteral("second")};
    const QList books{one, book(2, QStringLiteral("first"))};
    const auto found = [&books](const QString &text) {
        return shown(books, {LibraryShelf::All, LibrarySort::Recent, text}).contains(1);
    };

    EXPECT_TRUE(found(QStringLiteral("title author notes first tag second")));
    EXPECT_FALSE(found(QStringLiteral("second first"))); // the next title begins there
    EXPECT_FALSE(found(QStringLiteral("tags")));
}

TEST(LibraryFilter, EveryFieldOfAnAudiobookIsSearchedAndAbsentOnesCountAsEmpty)
{
    Audiobook full = audiobook(1, QStringLiteral("Title"), QStringLiteral("read"));
    full.author = QStringLiteral("Author");
    full.narrator = QStringLiteral("Narrator");
    full.series = QStringLiteral("Series");
    full.notes = QStringLiteral("Notes");
    Audiobook bare = audiobook(2, QStringLiteral("Title"), QStringLiteral("read"));
    bare.notes = QStringLiteral("Notes");
    const auto found = [&](const QString &text) {
        return shown(QList{full, bare}, {LibraryShelf::All, LibrarySort::Recent, text});
    };

    EXPECT_EQ(found(QStringLiteral("title author narrator series notes")), Ids{1});
    EXPECT_EQ(found(QStringLiteral("title    notes")), Ids{2});
}

TEST(LibraryFilter, TitlesCompareByNumbersAndWithoutCase)
{
    const QList books{book(1, QStringLiteral("Volume 10")), book(2, QStringLiteral("volume 9")),
        book(3, QStringLiteral("Éclair")), book(4, QStringLiteral("eagle")), book(5, QStringLiteral("Edge"))};

    EXPECT_EQ(shown(books, {LibraryShelf::All, LibrarySort::Title, {}}), (Ids{4, 3, 5, 2, 1}));
}

TEST(LibraryFilter, EqualRatingsOrderByTitleAndEqualTitlesKeepStoreOrder)
{
    QList books{book(1, QStringLiteral("b")), book(2, QStringLiteral("A")), book(3, QStringLiteral("a")),
        book(4, QStringLiteral("z"))};
    books[3].userRating = 4.5;

    EXPECT_EQ(shown(books, {LibraryShelf::All, LibrarySort::Rating, {}}), (Ids{4, 2, 3, 1}));
    EXPECT_EQ(shown(books, {LibraryShelf::All, LibrarySort::Title, {}}), (Ids{2, 3, 1, 4}));
}

TEST(LibraryFilter, TheMostRecentGoesFirstAndDatesThatDoNotParseGoLast)
{
    QList books{book(1, QStringLiteral("d")), book(2, QStringLiteral("c")), book(3, QStringLiteral("b")),
        book(4, QStringLiteral("a"))};
    books[0].readAt = QStringLiteral("2024-01-01");
    books[1].dateAdded = QStringLiteral("Tue, 05 Mar 2024 10:15:30 +0000");
    books[2].readAt = QStringLiteral("some day");
    books[2].dateAdded = QStringLiteral("2024-02-01");
    books[3].readAt = QStringLiteral("some day");

    EXPECT_EQ(shown(books, {LibraryShelf::All, LibrarySort::Recent, {}}), (Ids{2, 3, 1, 4}));
}

TEST(LibraryFilter, AnUnratedAudiobookRanksWithOneRatedZero)
{
    QList audiobooks{audiobook(1, QStringLiteral("b"), QStringLiteral("read")),
        audiobook(2, QStringLiteral("a"), QStringLiteral("read")),
        audiobook(3, QStringLiteral("c"), QStringLiteral("read"))};
    audiobooks[0].userRating = 0;
    audiobooks[2].userRating = 3;

    EXPECT_EQ(shown(audiobooks, {LibraryShelf::All, LibrarySort::Rating, {}}), (Ids{3, 2, 1}));
}

TEST(MostRecentRow, IsTheEarliestInTheListOnATie)
{
    QList books{book(1, QStringLiteral("z"), QStringLiteral("currently-reading")),
        book(2, QStringLiteral("a"), QStringLiteral("currently-reading")), book(3, QStringLiteral("b"))};
    books[2].readAt = QStringLiteral("2025-01-01");

    EXPECT_EQ(mostRecentRow(*LibraryIndex::of(books), LibraryShelf::Active), 0);
    EXPECT_EQ(mostRecentRow(*LibraryIndex::of(books), LibraryShelf::ToRead), std::nullopt);
    books[1].dateAdded = QStringLiteral("2020-01-01");
    EXPECT_EQ(mostRecentRow(*LibraryIndex::of(books), LibraryShelf::Active), 1);
    books[1].isHidden = true;
    EXPECT_EQ(mostRecentRow(*LibraryIndex::of(books), LibraryShelf::Active), 0);
}

TEST(ShelfSelection, FollowsTheStoredWord)
{
    EXPECT_EQ(shelfSelection(u"read"), LibraryShelf::Read);
    EXPECT_EQ(shelfSelection(u"did-not-finish"), LibraryShelf::DidNotFinish);
    EXPECT_EQ(shelfSelection(u"to-read"), LibraryShelf::ToRead);
    EXPECT_EQ(shelfSelection(u"currently-reading"), LibraryShelf::Active);
    EXPECT_EQ(shelfSelection(u"reading"), LibraryShelf::Active);
    EXPECT_EQ(shelfSelection(u"hidden"), LibraryShelf::Hidden);
    EXPECT_EQ(shelfSelection(u"active"), LibraryShelf::All);
    EXPECT_EQ(shelfSelection(u"shelved"), LibraryShelf::All);
    EXPECT_EQ(shelfSelection(u""), LibraryShelf::All);
}

// Against the plain definition: fold every title for every query, sort with a
// comparator that asks the collator and the date parser. ----------------------

class RandomLibrary
{
public:
    explicit RandomLibrary(quint32 seed)
        : m_random(seed)
    {
    }

    int below(int limit) { return int(m_random.bounded(limit)); }
    bool oneIn(int times) { return below(times) == 0; }

    QString word()
    {
        static const QStringList pieces{QStringLiteral("a"), QStringLiteral("E"), QStringLiteral("é"),
            QStringLiteral("e\u0301"), QStringLiteral("ß"), QStringLiteral("İ"), QStringLiteral("å"),
            QStringLiteral("Ø"), QStringLiteral("ж"), QStringLiteral("Й"), QStringLiteral("本"), QStringLiteral("が"),
            QStringLiteral("ﬁ"), QStringLiteral("Σ"), QStringLiteral("ς"), QStringLiteral("😀"), QStringLiteral("2"),
            QStringLiteral("10"), QStringLiteral("007"), QStringLiteral("-"), QStringLiteral(" "),
            QStringLiteral("的")};
        QString text;
        for (int count = below(5); count >= 0; --count) {
            text += pieces[below(int(pieces.size()))];
        }
        return text;
    }

    std::optional<QString> date()
    {
        static const QStringList dates{QStringLiteral("2024-03-05"), QStringLiteral("2024-03-05 10:15:30"),
            QStringLiteral("Tue, 05 Mar 2024 10:15:30 +0000"), QStringLiteral("2019-01-01T00:00:00Z"),
            QStringLiteral("Mar 05, 2024"), QStringLiteral("never"), QString()};
        const int which = below(int(dates.size()) + 2);
        return which < dates.size() ? std::optional(dates[which]) : std::nullopt;
    }

    QString status(LibraryTab tab)
    {
        const LibraryShelf shelf = allLibraryShelves[std::size_t(below(int(allLibraryShelves.size())))];
        return databaseValue(shelf, tab).value_or(QStringLiteral("elsewhere"));
    }

    Book book(qint64 id)
    {
        Book made = quire::book(id, word(), status(LibraryTab::Books));
        made.author = word();
        made.notes = oneIn(3) ? word() : QString();
        made.tags = oneIn(3) ? QStringList{word(), word()} : QStringList();
        made.userRating = below(4);
        made.readAt = date();
        made.dateAdded = date();
        made.isHidden = oneIn(5);
        return made;
    }

    Audiobook audiobook(qint64 id)
    {
        Audiobook made = quire::audiobook(id, word(), status(LibraryTab::Audio));
        made.author = oneIn(2) ? std::optional(word()) : std::nullopt;
        made.narrator = oneIn(2) ? std::optional(word()) : std::nullopt;
        made.series = oneIn(2) ? std::optional(word()) : std::nullopt;
        made.userRating = oneIn(2) ? std::optional<double>(below(3)) : std::nullopt;
        made.finishedAt = date();
        made.dateAdded = date();
        return made;
    }

    LibrarySelection selection()
    {
        LibrarySelection made;
        made.shelf = allLibraryShelves[std::size_t(below(int(allLibraryShelves.size())))];
        made.sort = allLibrarySorts[std::size_t(below(int(allLibrarySorts.size())))];
        made.searchText = oneIn(3) ? QString() : Text::firstCharacters(word(), 1 + below(2));
        return made;
    }

private:
    QRandomGenerator m_random;
};

bool naiveShelf(const Book &book, LibraryShelf shelf)
{
    const auto word = databaseValue(shelf, LibraryTab::Books);
    return book.isHidden == (shelf == LibraryShelf::Hidden) && (!word || book.shelf == *word);
}

bool naiveShelf(const Audiobook &audiobook, LibraryShelf shelf)
{
    const auto word = databaseValue(shelf, LibraryTab::Audio);
    return !word || audiobook.status == *word;
}

QString naiveText(const Book &book)
{
    QString text = book.title + u' ' + book.author + u' ' + book.notes;
    for (const QString &tag : book.tags) {
        text += u' ' + tag;
    }
    return text;
}

QString naiveText(const Audiobook &audiobook)
{
    return audiobook.title + u' ' + audiobook.author.value_or(QString()) + u' ' + audiobook.narrator.value_or(QString())
        + u' ' + audiobook.series.value_or(QString()) + u' ' + audiobook.notes;
}

double naiveRating(const Book &book)
{
    return book.userRating;
}

double naiveRating(const Audiobook &audiobook)
{
    return audiobook.userRating.value_or(0);
}

template<typename Record>
QList<qint64> naivelyShown(const QList<Record> &records, const LibrarySelection &selection)
{
    QCollator collator{QLocale(QLocale::English)};
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const QString query = Text::folded(Text::trimmed(selection.searchText));

    QList<Record> left;
    for (const Record &record : records) {
        if (naiveShelf(record, selection.shelf)
            && (query.isEmpty() || Text::folded(naiveText(record)).contains(query))) {
            left.append(record);
        }
    }
    std::stable_sort(left.begin(), left.end(), [&](const Record &a, const Record &b) {
        if (selection.sort == LibrarySort::Recent && recencyDate(a) != recencyDate(b)) {
            return recencyDate(a) > recencyDate(b);
        }
        if (selection.sort == LibrarySort::Rating && naiveRating(a) != naiveRating(b)) {
            return naiveRating(a) > naiveRating(b);
        }
        return collator.compare(a.title, b.title) < 0;
    });
    QList<qint64> ids;
    for (const Record &record : left) {
        ids.append(record.id);
    }
    return ids;
}

TEST(LibraryFilterProperty, BooksComeOutAsThePlainDefinitionGivesThem)
{
    for (quint32 seed = 1; seed <= 60; ++seed) {
        RandomLibrary random(seed);
        QList<Book> books;
        for (int row = random.below(80); row > 0; --row) {
            books.append(random.book(row));
        }
        for (int query = 0; query < 40; ++query) {
            const LibrarySelection selection = random.selection();
            ASSERT_EQ(shown(books, selection), naivelyShown(books, selection))
                << "seed " << seed << ", query \"" << qPrintable(selection.searchText) << '"';
        }
    }
}

TEST(LibraryFilterProperty, AudiobooksComeOutAsThePlainDefinitionGivesThem)
{
    for (quint32 seed = 1; seed <= 60; ++seed) {
        RandomLibrary random(seed);
        QList<Audiobook> audiobooks;
        for (int row = random.below(80); row > 0; --row) {
            audiobooks.append(random.audiobook(row));
        }
        for (int query = 0; query < 40; ++query) {
            const LibrarySelection selection = random.selection();
            ASSERT_EQ(shown(audiobooks, selection), naivelyShown(audiobooks, selection))
                << "seed " << seed << ", query \"" << qPrintable(selection.searchText) << '"';
        }
    }
}

TEST(LibraryIndexProperty, AnIndexMadeFromTheOneBeforeIsTheSameAsAFreshOne)
{
    for (quint32 seed = 1; seed <= 60; ++seed) {
        RandomLibrary random(seed);
        QList<Book> before;
        for (int row = 60; row > 0; --row) {
            before.append(random.book(row));
        }
        // Some change, some go, some come, and the order is another.
        QList<Book> after;
        for (const Book &old : std::as_const(before)) {
            if (random.oneIn(4)) {
                after.append(random.book(old.id));
            } else if (!random.oneIn(6)) {
                after.insert(random.below(int(after.size()) + 1), old);
            }
        }
        after.append(random.book(1000));

        const auto fresh = LibraryIndex::of(after);
        const auto reused = LibraryIndex::of(after, before, LibraryIndex::of(before));

        for (const LibrarySort sort : allLibrarySorts) {
            ASSERT_EQ(reused->order(sort), fresh->order(sort));
        }
        for (int query = 0; query < 20; ++query) {
            const LibrarySelection selection = random.selection();
            ASSERT_EQ(filteredRows(*reused, selection), filteredRows(*fresh, selection)) << "seed " << seed;
        }
        for (qsizetype row = 0; row < after.size(); ++row) {
            ASSERT_EQ(reused->recency(row), recencyDate(after[row]));
        }
    }
}

} // namespace

} // namespace quire
