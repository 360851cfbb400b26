#include "persistence/database/SQLiteValue.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

using namespace quire;

namespace {

const SQLiteValue null;
const SQLiteValue blob(QByteArray("\x00\x01", 2));
const SQLiteValue emptyBlob(QByteArray{});

SQLiteValue text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

TEST(SQLiteValue, HasFiveCasesInTheOrderOfSQLitesTypes)
{
    EXPECT_EQ(SQLiteValue(7).kind(), SQLiteValue::Case(0));
    EXPECT_EQ(SQLiteValue(7.0).kind(), SQLiteValue::Case(1));
    EXPECT_EQ(text("7").kind(), SQLiteValue::Case(2));
    EXPECT_EQ(blob.kind(), SQLiteValue::Case(3));
    EXPECT_EQ(null.kind(), SQLiteValue::Case(4));
}

TEST(SQLiteValue, ValuesAreEqualWhenCaseAndPayloadAre)
{
    EXPECT_EQ(SQLiteValue(7), SQLiteValue(7));
    EXPECT_NE(SQLiteValue(7), SQLiteValue(8));
    EXPECT_NE(SQLiteValue(7), SQLiteValue(7.0));
    EXPECT_NE(SQLiteValue(7), text("7"));
    EXPECT_NE(text(""), null);
    EXPECT_NE(text(""), emptyBlob);
    EXPECT_NE(emptyBlob, null);
    EXPECT_EQ(SQLiteValue(), null);
}

TEST(SQLiteValue, AnAbsentOptionalIsNull)
{
    EXPECT_TRUE(SQLiteValue(std::optional<QString>()).isNull());
    EXPECT_EQ(SQLiteValue(std::optional<qint64>(3)), SQLiteValue(3));
}

TEST(SQLiteValue, ARealIsCutTowardZero)
{
    EXPECT_EQ(SQLiteValue(2.9).intValue(), 2);
    EXPECT_EQ(SQLiteValue(-2.9).intValue(), -2);
    EXPECT_EQ(SQLiteValue(-0.0).intValue(), 0);
    EXPECT_EQ(SQLiteValue(-9223372036854775808.0).intValue(), std::numeric_limits<qint64>::min());
    EXPECT_EQ(SQLiteValue(9223372036854774784.0).intValue(), 9223372036854774784);
}

TEST(SQLiteValueDeathTest, ARealWithoutAnIntegerEndsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(SQLiteValue(9223372036854775808.0).intValue(), "has no integer value");
    EXPECT_DEATH(SQLiteValue(-9223372036854777856.0).intValue(), "has no integer value");
    EXPECT_DEATH(SQLiteValue(std::numeric_limits<double>::infinity()).intValue(), "has no integer value");
    EXPECT_DEATH(SQLiteValue(std::nan("")).intValue(), "has no integer value");
}

TEST(SQLiteValue, ATextIsAWholeNumberInBaseTenOrNothing)
{
    EXPECT_EQ(text("+12").intValue(), 12);
    EXPECT_EQ(text("-0").intValue(), 0);
    EXPECT_EQ(text("-12").intValue(), -12);
    EXPECT_EQ(text("007").intValue(), 7);
    EXPECT_EQ(text("9223372036854775807").intValue(), std::numeric_limits<qint64>::max());
    EXPECT_EQ(text("-9223372036854775808").intValue(), std::numeric_limits<qint64>::min());
    for (const char *other : {"", "12a", " 12", "12 ", "1.0", "1e3", "+", "-", "+-1", "0x10", "9223372036854775808",
             "-9223372036854775809", "١٢"}) {
        EXPECT_EQ(text(other).intValue(), std::nullopt) << other;
    }
}

TEST(SQLiteValue, ABlobAndNullHaveNoIntegerAndNoNumber)
{
    for (const SQLiteValue &value : {blob, emptyBlob, null}) {
        EXPECT_EQ(value.intValue(), std::nullopt);
        EXPECT_EQ(value.optionalDouble(), std::nullopt);
        EXPECT_EQ(value.doubleValue(2.5), 2.5);
    }
}

TEST(SQLiteValue, ANumberReadsAsItsShortestDecimalText)
{
    EXPECT_EQ(SQLiteValue(-42).string({}), QStringLiteral("-42"));
    EXPECT_EQ(SQLiteValue(4.0).string({}), QStringLiteral("4.0"));
    EXPECT_EQ(SQLiteValue(0.1).string({}), QStringLiteral("0.1"));
    EXPECT_EQ(SQLiteValue(4.0).optionalString(), QStringLiteral("4.0"));
}

TEST(SQLiteValue, AnEmptyTextIsATextButNoOptionalText)
{
    EXPECT_EQ(text("").string(QStringLiteral("read")), QString());
    EXPECT_EQ(text("").optionalString(), std::nullopt);
    EXPECT_EQ(text(" ").optionalString(), QStringLiteral(" "));
}

TEST(SQLiteValue, ABlobAndNullReadAsTheDefaultText)
{
    for (const SQLiteValue &value : {blob, emptyBlob, null}) {
        EXPECT_EQ(value.string(QStringLiteral("read")), QStringLiteral("read"));
        EXPECT_EQ(value.optionalString(), std::nullopt);
    }
}

TEST(SQLiteValue, ATextReadsAsTheNumberItSpellsOrTheDefault)
{
    EXPECT_EQ(text("3.5").doubleValue(1), 3.5);
    EXPECT_EQ(text("+3.5").doubleValue(1), 3.5);
    EXPECT_EQ(text("-2e3").doubleValue(1), -2000);
    EXPECT_EQ(SQLiteValue(3).doubleValue(1), 3.0);
    for (const char *other : {"", "five", "3.5 ", " 3.5", "3,5", "+-1", "nan", "inf", "1e999"}) {
        EXPECT_EQ(text(other).doubleValue(1), 1) << other;
        EXPECT_EQ(text(other).optionalDouble(), std::nullopt) << other;
    }
}

TEST(SQLiteValue, OnlyABlobWithBytesIsData)
{
    EXPECT_EQ(blob.data(), QByteArray("\x00\x01", 2));
    EXPECT_EQ(emptyBlob.data(), std::nullopt);
    EXPECT_EQ(text("bytes").data(), std::nullopt);
    EXPECT_EQ(SQLiteValue(1).data(), std::nullopt);
    EXPECT_EQ(null.data(), std::nullopt);
}

TEST(SQLiteRow, AMissingColumnReadsAsItsDefault)
{
    SQLiteRow row;
    const QString missing = QStringLiteral("missing");
    EXPECT_FALSE(row.contains(missing));
    EXPECT_EQ(row.string(missing, QStringLiteral("d")), QStringLiteral("d"));
    EXPECT_EQ(row.optionalString(missing), std::nullopt);
    EXPECT_EQ(row.doubleValue(missing, 2), 2);
    EXPECT_EQ(row.optionalDouble(missing), std::nullopt);
    EXPECT_EQ(row.data(missing), std::nullopt);
    EXPECT_EQ(row.intValue(missing), std::nullopt);
}

TEST(SQLiteRow, OfTwoColumnsOfOneNameTheLaterStands)
{
    SQLiteRow row;
    row.set(QStringLiteral("a"), 1);
    row.set(QStringLiteral("a"), 2);
    EXPECT_EQ(row.size(), 1);
    EXPECT_EQ(row.intValue(QStringLiteral("a")), 2);
}
