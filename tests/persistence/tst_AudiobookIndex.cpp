// The index must give what looking through the rows one by one gives. The
// oracle here is that plain scan, written from the rule and not from the index.

#include "persistence/AudiobookIndex.h"

#include "persistence/NormalizedText.h"

#include <QSet>
#include <QStringList>

#include <gmock/gmock.h>

#include <random>
#include <vector>

using namespace quire;

namespace {

struct Row
{
    qint64 id = 0;
    QString asin;
    QString title;
    std::optional<QString> author;
};

QSet<QString> words(const std::optional<QString> &author)
{
    const QStringList split = normalizedText(author.value_or(QString())).split(u' ', Qt::SkipEmptyParts);
    return {split.cbegin(), split.cend()};
}

bool titleMatches(const Row &row, const AudibleLibraryItem &item)
{
    if (normalizedText(row.title) != normalizedText(item.title)) {
        return false;
    }
    const QSet<QString> ofRow = words(row.author);
    const QSet<QString> ofItem = words(item.author);
    return ofRow.isEmpty() || ofItem.isEmpty() || ofRow.intersects(ofItem);
}

std::optional<qint64> plainScan(const std::vector<Row> &rows, const AudibleLibraryItem &item)
{
    for (const Row &row : rows) {
        if (row.asin == item.asin) {
            return row.id;
        }
    }
    for (const Row &row : rows) {
        if (titleMatches(row, item)) {
            return row.id;
        }
    }
    return std::nullopt;
}

AudibleLibraryItem item(const QString &asin, const QString &title, const std::optional<QString> &author = {})
{
    AudibleLibraryItem made;
    made.asin = asin;
    made.title = title;
    made.author = author;
    return made;
}

const QString dune = QStringLiteral("Dune");

} // namespace

TEST(AudiobookIndex, AnAsinWinsOverAnEarlierRowWithTheSameTitle)
{
    AudiobookIndex index;
    index.add(7, QStringLiteral("manual:X"), dune, std::nullopt);
    index.add(3, QStringLiteral("B01"), QStringLiteral("Other"), std::nullopt);
    EXPECT_EQ(index.find(item(QStringLiteral("B01"), dune)), 3);
}

TEST(AudiobookIndex, TheFirstRowWithTheTitleWins)
{
    AudiobookIndex index;
    index.add(9, QStringLiteral("B01"), dune, QStringLiteral("Frank Herbert"));
    index.add(2, QStringLiteral("B02"), dune, QStringLiteral("Frank Herbert"));
    EXPECT_EQ(index.find(item(QStringLiteral("B03"), QStringLiteral("DUNE."), QStringLiteral("F. Herbert"))), 9);
}

TEST(AudiobookIndex, ASharedSurnameIsEnough)
{
    AudiobookIndex index;
    index.add(1, QStringLiteral("manual:X"), QStringLiteral("The Hobbit"), QStringLiteral("J. R. R. Tolkien"));
    EXPECT_EQ(index.find(
                  item(QStringLiteral("B"), QStringLiteral("The Hobbit"), QStringLiteral("John Ronald Reuel Tolkien"))),
        1);
    EXPECT_EQ(index.find(item(QStringLiteral("B"), QStringLiteral("The Hobbit"), QStringLiteral("Someone Else"))),
        std::nullopt);
}

TEST(AudiobookIndex, AnUnknownAuthorOnEitherSideMatchesOnTheTitleAlone)
{
    AudiobookIndex index;
    index.add(1, QStringLiteral("manual:X"), dune, QStringLiteral("Frank Herbert"));
    index.add(2, QStringLiteral("manual:Y"), QStringLiteral("Emma"), std::nullopt);
    index.add(3, QStringLiteral("manual:Z"), QStringLiteral("Ulysses"), QStringLiteral("?!"));
    EXPECT_EQ(index.find(item(QStringLiteral("B"), dune)), 1);
    EXPECT_EQ(index.find(item(QStringLiteral("B"), QStringLiteral("Emma"), QStringLiteral("Jane Austen"))), 2);
    EXPECT_EQ(index.find(item(QStringLiteral("B"), QStringLiteral("Ulysses"), QStringLiteral("James Joyce"))), 3);
}

TEST(AudiobookIndex, TwoTitlesWithoutAnyLetterMatch)
{
    AudiobookIndex index;
    index.add(1, QStringLiteral("manual:X"), QStringLiteral("..."), std::nullopt);
    EXPECT_EQ(index.find(item(QStringLiteral("B"), QStringLiteral("?!"))), 1);
}

TEST(AudiobookIndex, AnEmptyLibraryHasNoMatch)
{
    EXPECT_EQ(AudiobookIndex().find(item(QStringLiteral("B"), dune)), std::nullopt);
}

TEST(AudiobookIndex, FindsWhatAScanOfTheRowsFinds)
{
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto anyOf = [&random](const QStringList &choices) { return choices[qsizetype(random() % choices.size())]; };

    // Few choices, so that every kind of collision happens often.
    const QStringList titles{dune, QStringLiteral("D\u00fcne!"), QStringLiteral("dune & emma"),
        QStringLiteral("Dune and Emma"), QStringLiteral("..."), QString(), QStringLiteral("Emma")};
    const QStringList authors{QString(), QStringLiteral("-"), QStringLiteral("Frank Herbert"),
        QStringLiteral("F. HERBERT"), QStringLiteral("Jane Austen"), QStringLiteral("Jane Frank"),
        QStringLiteral("Brian Herbert & Kevin Anderson")};
    const auto anyAuthor
        = [&]() -> std::optional<QString> { return random() % 5 == 0 ? std::nullopt : std::optional(anyOf(authors)); };
    const auto anyAsin = [&] { return QStringLiteral("B%1").arg(random() % 12); };

    int found = 0;
    int missed = 0;
    for (int round = 0; round < 500; ++round) {
        AudiobookIndex index;
        std::vector<Row> rows;
        for (int step = 0; step < 15; ++step) {
            const AudibleLibraryItem wanted = item(anyAsin(), anyOf(titles), anyAuthor());
            const std::optional<qint64> expected = plainScan(rows, wanted);
            ASSERT_EQ(index.find(wanted), expected) << "round " << round << ", step " << step;
            (expected ? found : missed) += 1;
            if (random() % 2 == 0) {
                // Ids in no order: the place in the list decides, not the id.
                const Row row{qint64(random() % 1000), anyAsin(), anyOf(titles), anyAuthor()};
                rows.push_back(row);
                index.add(row.id, row.asin, row.title, row.author);
            }
        }
    }
    EXPECT_GT(found, 1000);
    EXPECT_GT(missed, 500);
}
