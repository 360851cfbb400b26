// Answers as the catalogues really send them, and what a reader sees of them.
// Built only when a folder of such answers is named.

#include "sources/AudibleService.h"
#include "sources/BookCatalogService.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <algorithm>

using namespace quire;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

QByteArray sample(const QString &name)
{
    QFile file(QStringLiteral(QUIRE_SAMPLE_DATA "/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qUtf8Printable(file.fileName());
    return file.readAll();
}

QList<BookCatalogBook> books(const QString &name)
{
    return BookCatalogService::parse(
        sample(QStringLiteral("open-library/") + name), QUrl(QStringLiteral("https://covers.openlibrary.org")));
}

// What a search whose only product is the one of the file gives.
std::optional<AudibleCatalogBook> audiobook(const QString &name)
{
    const QJsonObject file = QJsonDocument::fromJson(sample(QStringLiteral("audible/") + name)).object();
    const QJsonArray products = file.contains(QStringLiteral("products"))
        ? file.value(QStringLiteral("products")).toArray()
        : QJsonArray{file.value(QStringLiteral("product")).toObject(file)};
    const QByteArray body = QJsonDocument(QJsonObject{{QStringLiteral("products"), products}}).toJson();
    return AudibleService::map(
        AudibleCatalogResponse::parse(body).products.first(), QUrl(QStringLiteral("https://www.audible.com")));
}

} // namespace

// Audible. ------------------------------------------------------------------------

TEST(SampleAudible, AWholeProduct)
{
    const auto book = audiobook(QStringLiteral("product_B002V5H6F4_animal-farm.json"));
    ASSERT_TRUE(book);
    EXPECT_EQ(book->title, QStringLiteral("Animal Farm"));
    EXPECT_EQ(book->author, QStringLiteral("George Orwell"));
    EXPECT_EQ(book->narrator, QStringLiteral("Ralph Cosham"));
    EXPECT_EQ(book->series, std::nullopt);
    EXPECT_EQ(textOf(book->coverURL), QStringLiteral("https://m.media-amazon.com/images/I/51Q-CnFS8pL._SL2000_.jpg"));
    EXPECT_EQ(textOf(book->audibleURL), QStringLiteral("https://www.audible.com/pd/B002V5H6F4"));
    EXPECT_EQ(book->year, QStringLiteral("1999"));
    EXPECT_TRUE(book->summary->startsWith(QStringLiteral("George Orwell's classic satire of the Russian Revolution ")));
    EXPECT_FALSE(book->summary->contains(u'<'));
}

TEST(SampleAudible, OfTwoSeriesTheFirst)
{
    const auto potter = audiobook(QStringLiteral("product_B017V4IM1G_two-series_2026.json"));
    EXPECT_EQ(potter->title, QStringLiteral("Harry Potter and the Sorcerer's Stone, Book 1"));
    EXPECT_EQ(potter->series, QStringLiteral("Harry Potter"));
    EXPECT_EQ(potter->bookNumber, 1);

    const auto kings = audiobook(QStringLiteral("product_B003ZWFO7E_way-of-kings_trimmed_2026.json"));
    EXPECT_EQ(kings->series, QStringLiteral("The Stormlight Archive"));
    EXPECT_EQ(kings->bookNumber, 1);
    EXPECT_EQ(kings->narrator, QStringLiteral("Kate Reading, Michael Kramer"));
    EXPECT_EQ(kings->summary,
        QStringLiteral("From #1 New York Times bestselling author Brandon Sanderson. \n\nRoshar is a world of stone & "
                       "storms."));
}

TEST(SampleAudible, ASequenceOfAHalfIsNoNumber)
{
    const auto book = audiobook(QStringLiteral("product_B08C6YJ1LS_sequence-0.5_2022.json"));
    EXPECT_EQ(book->series, QStringLiteral("A Billy Harney Thriller"));
    EXPECT_EQ(book->bookNumber, std::nullopt);
    EXPECT_EQ(book->author, QStringLiteral("James Patterson, Aaron Tracy, Ryan Silbert"));
    EXPECT_EQ(book->narrator, QStringLiteral("Aaron Paul, Krysten Ritter, Nathalie Emmanuel, Beau Bridges, full cast"));
}

TEST(SampleAudible, ATitleWithoutASeries)
{
    const auto book = audiobook(QStringLiteral("product_B08G9PRS1K_project-hail-mary_2026.json"));
    EXPECT_EQ(book->title, QStringLiteral("Project Hail Mary"));
    EXPECT_EQ(book->series, std::nullopt);
    EXPECT_EQ(textOf(book->coverURL), QStringLiteral("https://m.media-amazon.com/images/I/81wvR09gLRL._SL1024_.jpg"));
    EXPECT_EQ(book->year, QStringLiteral("2021"));
}

TEST(SampleAudible, AnUnknownAsinIsAProductWithoutATitleAndNoResult)
{
    EXPECT_EQ(audiobook(QStringLiteral("product-inner_B0DFKPXBWQ_unknown-asin-stub.json")), std::nullopt);
}

TEST(SampleAudible, AnotherLanguagesTranslatorIsAnAuthorLikeAnyOther)
{
    const auto book = audiobook(QStringLiteral("products_search_german-translator-as-author_trimmed.json"));
    EXPECT_EQ(book->title, QStringLiteral("Eragon - Der Auftrag des Ältesten"));
    EXPECT_EQ(book->author, QStringLiteral("Christopher Paolini, Joannis Stefanidis - Übersetzer"));
    EXPECT_EQ(book->bookNumber, 2);
    EXPECT_EQ(book->summary, QStringLiteral("Geschunden, aber siegreich war Eragon..."));
}

// Open Library. -------------------------------------------------------------------

TEST(SampleOpenLibrary, BooksOfToday)
{
    const auto found = books(QStringLiteral("search_dune_3-docs_2026.json"));
    ASSERT_THAT(found, SizeIs(3));
    EXPECT_EQ(found[0].workID, QStringLiteral("OL893414W"));
    EXPECT_EQ(found[0].title, QStringLiteral("Dune"));
    EXPECT_EQ(found[0].author, QStringLiteral("Frank Herbert, Френк Герберт"));
    EXPECT_EQ(found[0].isbn, QStringLiteral("9780425043769"));
    EXPECT_EQ(found[0].publishedYear, 1965);
    EXPECT_EQ(found[0].numberOfPages, 605);
    EXPECT_EQ(
        textOf(found[0].coverURL), QStringLiteral("https://covers.openlibrary.org/b/id/11481354-L.jpg?default=false"));
    EXPECT_EQ(found[1].isbn, QStringLiteral("9782266027229")); // the first of 13, behind one of 10
}

TEST(SampleOpenLibrary, BooksWithoutACoverOrAYear)
{
    const auto found = books(QStringLiteral("search_time-war_2-docs_2020.json"));
    ASSERT_THAT(found, SizeIs(2));
    EXPECT_EQ(found[0].coverURL, std::nullopt);
    EXPECT_EQ(found[0].publishedYear, 2019);
    EXPECT_EQ(found[1].isbn, std::nullopt);
    EXPECT_EQ(found[1].publishedYear, std::nullopt);
    EXPECT_EQ(found[1].author, QStringLiteral("Amal El-Mohtar, Max Gladstone"));
}

TEST(SampleOpenLibrary, EightyOneBooksOfTheOlderForm)
{
    const auto found = books(QStringLiteral("search_lord-of-the-rings_81-docs_2013.json"));
    ASSERT_THAT(found, SizeIs(81));
    EXPECT_EQ(found[0].workID, QStringLiteral("OL27448W"));
    const auto lacking = [&found](const auto &field) {
        return std::count_if(found.begin(), found.end(), [&field](const auto &book) { return !(book.*field); });
    };
    EXPECT_EQ(lacking(&BookCatalogBook::coverURL), 46);
    EXPECT_EQ(lacking(&BookCatalogBook::isbn), 8);
    EXPECT_EQ(lacking(&BookCatalogBook::publishedYear), 12);
    EXPECT_EQ(lacking(&BookCatalogBook::numberOfPages), 81);
    for (const BookCatalogBook &book : found) {
        EXPECT_FALSE(book.title.isEmpty()) << qUtf8Printable(book.workID);
        if (book.isbn && book.isbn->size() != 13 && book.isbn->size() != 10) {
            EXPECT_GT(book.isbn->size(), 8) << qUtf8Printable(*book.isbn); // no better one in its list
        }
    }
}

TEST(SampleOpenLibrary, NothingFound)
{
    EXPECT_THAT(books(QStringLiteral("search_no-result_handwritten.json")), IsEmpty());
}
