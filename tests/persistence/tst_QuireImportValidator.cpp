#include "persistence/QuireImportValidator.h"

#include "reliability/QuireReliabilityError.h"

#include <gmock/gmock.h>

using namespace quire;

namespace {

const QString prefix = QStringLiteral("Quire rejected imported library data before changing the database: ");

GoodreadsFeedBook book(const QString &id, const QString &title)
{
    GoodreadsFeedBook made;
    made.goodreadsID = id;
    made.title = title;
    return made;
}

AudibleLibraryItem item(const QString &asin, const QString &title)
{
    AudibleLibraryItem made;
    made.asin = asin;
    made.title = title;
    return made;
}

QString refusal(const QList<GoodreadsFeedBook> &batch)
{
    try {
        QuireImportValidator::validateGoodreads(batch);
    } catch (const QuireReliabilityError &error) {
        EXPECT_EQ(error.kind(), QuireReliabilityError::Kind::InvalidImport);
        return error.description();
    }
    return {};
}

QString refusal(const QList<AudibleLibraryItem> &batch)
{
    try {
        QuireImportValidator::validateAudible(batch);
    } catch (const QuireReliabilityError &error) {
        EXPECT_EQ(error.kind(), QuireReliabilityError::Kind::InvalidImport);
        return error.description();
    }
    return {};
}

const QString title = QStringLiteral("A Title");

} // namespace

TEST(QuireImportValidator, AnEmptyBatchPasses)
{
    EXPECT_EQ(refusal(QList<GoodreadsFeedBook>()), QString());
    EXPECT_EQ(refusal(QList<AudibleLibraryItem>()), QString());
}

TEST(QuireImportValidator, ABatchOfDistinctTitledRecordsPasses)
{
    EXPECT_EQ(refusal(QList{book(QStringLiteral("1"), title), book(QStringLiteral("2"), title)}), QString());
    EXPECT_EQ(refusal(QList{item(QStringLiteral("B1"), title), item(QStringLiteral("B2"), title)}), QString());
}

TEST(QuireImportValidator, ABlankIdentifierIsRefused)
{
    for (const QString &blank : {QString(), QStringLiteral(" \t\r\n"), QStringLiteral("\u00a0\u2003")}) {
        EXPECT_EQ(refusal(QList{book(QStringLiteral("1"), title), book(blank, title)}),
            prefix + QStringLiteral("a Goodreads record had no identifier"));
        EXPECT_EQ(refusal(QList{item(QStringLiteral("B1"), title), item(blank, title)}),
            prefix + QStringLiteral("an Audible record had no ASIN"));
    }
}

TEST(QuireImportValidator, TheSameIdentifierTwiceIsRefused)
{
    EXPECT_EQ(refusal(QList{book(QStringLiteral("1"), title), book(QStringLiteral("1"), title)}),
        prefix + QStringLiteral("Goodreads returned duplicate identifiers"));
    EXPECT_EQ(refusal(QList{item(QStringLiteral("B1"), title), item(QStringLiteral("B1"), title)}),
        prefix + QStringLiteral("Audible returned duplicate ASINs"));
}

TEST(QuireImportValidator, IdentifiersThatDifferOnlyBySurroundingBlanksAreDuplicates)
{
    EXPECT_EQ(refusal(QList{book(QStringLiteral("1"), title), book(QStringLiteral(" 1\n"), title)}),
        prefix + QStringLiteral("Goodreads returned duplicate identifiers"));
    EXPECT_EQ(refusal(QList{item(QStringLiteral("B1"), title), item(QStringLiteral("\tB1 "), title)}),
        prefix + QStringLiteral("Audible returned duplicate ASINs"));
}

TEST(QuireImportValidator, IdentifiersThatDifferByCaseAreDistinct)
{
    EXPECT_EQ(refusal(QList{book(QStringLiteral("a1"), title), book(QStringLiteral("A1"), title)}), QString());
}

TEST(QuireImportValidator, ABlankTitleIsRefused)
{
    EXPECT_EQ(refusal(QList{book(QStringLiteral("1"), QStringLiteral("  \n"))}),
        prefix + QStringLiteral("a Goodreads record had no title"));
    EXPECT_EQ(refusal(QList{item(QStringLiteral("B1"), QString())}),
        prefix + QStringLiteral("an Audible record had no title"));
}

TEST(QuireImportValidator, AMissingIdentifierIsNamedBeforeDuplicatesAndThoseBeforeAMissingTitle)
{
    const QString one = QStringLiteral("1");
    // The worst record comes last, so that the order is that of the checks.
    EXPECT_EQ(refusal(QList{book(one, QString()), book(one, title), book(QString(), title)}),
        prefix + QStringLiteral("a Goodreads record had no identifier"));
    EXPECT_EQ(refusal(QList{book(one, QString()), book(one, title)}),
        prefix + QStringLiteral("Goodreads returned duplicate identifiers"));
    EXPECT_EQ(refusal(QList{item(one, QString()), item(one, title), item(QString(), title)}),
        prefix + QStringLiteral("an Audible record had no ASIN"));
    EXPECT_EQ(refusal(QList{item(one, QString()), item(one, title)}),
        prefix + QStringLiteral("Audible returned duplicate ASINs"));
}
