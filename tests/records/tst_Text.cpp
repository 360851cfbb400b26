#include "records/Text.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace quire {

namespace {

TEST(TextTrimmed, BlanksTabsAndNewlinesGoAtBothEndsAndStayInside)
{
    EXPECT_EQ(Text::trimmed(QStringLiteral(" \t\r\n a  b\n \u00a0\u2003")), QStringLiteral("a  b"));
}

TEST(TextNonEmptyValue, AbsentEmptyAndBlankTextsGiveNothing)
{
    EXPECT_FALSE(Text::nonEmptyValue(std::nullopt));
    EXPECT_FALSE(Text::nonEmptyValue(QString()));
    EXPECT_FALSE(Text::nonEmptyValue(QStringLiteral("   ")));
    EXPECT_FALSE(Text::nonEmptyValue(QStringLiteral("\n\t\u00a0")));
}

TEST(TextNonEmptyValue, AnyOtherTextComesBackTrimmed)
{
    EXPECT_EQ(Text::nonEmptyValue(QStringLiteral(" x y\n")), QStringLiteral("x y"));
}

TEST(TextFolded, CaseAndAccentsMakeNoDifference)
{
    EXPECT_EQ(Text::folded(QStringLiteral("Élan")), QStringLiteral("elan"));
    EXPECT_EQ(Text::folded(QStringLiteral("ÅNGSTRÖM")), Text::folded(QStringLiteral("a\u030angstro\u0308m")));
    EXPECT_EQ(Text::folded(QStringLiteral("ΆΛΦΑ")), Text::folded(QStringLiteral("αλφα")));
    EXPECT_EQ(Text::folded(QStringLiteral("Ёлка")), Text::folded(QStringLiteral("елка")));
    EXPECT_EQ(Text::folded(QStringLiteral("STRASSE")), Text::folded(QStringLiteral("straße")));
    EXPECT_EQ(Text::folded(QStringLiteral("İstanbul")), QStringLiteral("istanbul"));
}

TEST(TextFolded, LettersThatAreNotMarksStay)
{
    EXPECT_EQ(Text::folded(QStringLiteral("Øl & Æ")), QStringLiteral("øl & æ"));
    EXPECT_EQ(Text::folded(QStringLiteral("百年の孤独")), QStringLiteral("百年の孤独"));
}

TEST(TextCharacterCount, CountsWhatAReaderSeesAsOne)
{
    EXPECT_EQ(Text::characterCount(QString()), 0);
    EXPECT_EQ(Text::characterCount(QStringLiteral("plain\ntext")), 10);
    EXPECT_EQ(Text::characterCount(QStringLiteral("a\r\nb")), 3);
    EXPECT_EQ(Text::characterCount(QStringLiteral("e\u0301le\u0300ve")), 5);
    EXPECT_EQ(Text::characterCount(QStringLiteral("\U0001F1F3\U0001F1F4")), 1) << "a flag";
    EXPECT_EQ(Text::characterCount(QStringLiteral("\U0001F4DA\U0001F4D6")), 2) << "two books";
}

TEST(TextFirstCharacters, NeverCutsThroughACharacter)
{
    const QString accents = QStringLiteral("e\u0301le\u0300ve");
    EXPECT_EQ(Text::firstCharacters(accents, 1), QStringLiteral("e\u0301"));
    EXPECT_EQ(Text::firstCharacters(accents, 3), QStringLiteral("e\u0301le\u0300"));
    EXPECT_EQ(Text::firstCharacters(accents, 5), accents);
    EXPECT_EQ(Text::firstCharacters(accents, 6), accents);
    EXPECT_EQ(Text::firstCharacters(QStringLiteral("a\r\nb"), 2), QStringLiteral("a\r\n"));
}

TEST(TextFirstCharacters, ZeroOrLessGivesNothingAndMoreThanThereAreGivesAll)
{
    EXPECT_TRUE(Text::firstCharacters(QStringLiteral("abc"), 0).isEmpty());
    EXPECT_TRUE(Text::firstCharacters(QStringLiteral("abc"), -1).isEmpty());
    EXPECT_EQ(Text::firstCharacters(QStringLiteral("abc"), 2), QStringLiteral("ab"));
    EXPECT_EQ(Text::firstCharacters(QStringLiteral("abc"), 3), QStringLiteral("abc"));
    EXPECT_EQ(Text::firstCharacters(QStringLiteral("abc"), 400), QStringLiteral("abc"));
}

TEST(TextDecimalInteger, TakesASignAndDigitsAndNothingElse)
{
    EXPECT_EQ(Text::decimalInteger(u"0"), 0);
    EXPECT_EQ(Text::decimalInteger(u"007"), 7);
    EXPECT_EQ(Text::decimalInteger(u"+12"), 12);
    EXPECT_EQ(Text::decimalInteger(u"-12"), -12);
    for (const QStringView text :
        {u"", u"+", u"-", u" 1", u"1 ", u"1.0", u"1e3", u"0x10", u"12a", u"--1", u"+-1", u"\u0661"}) {
        EXPECT_FALSE(Text::decimalInteger(text)) << text.toString().toStdString();
    }
}

TEST(TextDecimalInteger, TakesTheWholeRangeOf64BitsAndNothingBeyond)
{
    EXPECT_EQ(Text::decimalInteger(u"9223372036854775807"), std::numeric_limits<qint64>::max());
    EXPECT_EQ(Text::decimalInteger(u"-9223372036854775808"), std::numeric_limits<qint64>::min());
    EXPECT_FALSE(Text::decimalInteger(u"9223372036854775808"));
    EXPECT_FALSE(Text::decimalInteger(u"-9223372036854775809"));
    EXPECT_FALSE(Text::decimalInteger(u"18446744073709551617"));
    EXPECT_FALSE(Text::decimalInteger(u"99999999999999999999999"));
}

TEST(TextShortestDecimal, AlwaysShowsAFractionOrAnExponent)
{
    EXPECT_EQ(Text::shortestDecimal(4), QStringLiteral("4.0"));
    EXPECT_EQ(Text::shortestDecimal(0), QStringLiteral("0.0"));
    EXPECT_EQ(Text::shortestDecimal(-3.5), QStringLiteral("-3.5"));
    EXPECT_EQ(Text::shortestDecimal(0.1), QStringLiteral("0.1"));
    EXPECT_EQ(Text::shortestDecimal(100'000), QStringLiteral("100000.0"));
    EXPECT_EQ(Text::shortestDecimal(1e22), QStringLiteral("1e+22"));
    EXPECT_EQ(Text::shortestDecimal(1e-7), QStringLiteral("1e-07"));
}

TEST(TextShortestDecimal, ReadsBackAsTheSameDouble)
{
    const auto seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (int i = 0; i < 20'000; ++i) {
        const quint64 bits = random();
        double value = 0;
        memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value)) {
            ASSERT_EQ(Text::shortestDecimal(value).toDouble(), value);
        }
    }
}

} // namespace

} // namespace quire
