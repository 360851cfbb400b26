#include "sources/Redaction.h"

#include <gtest/gtest.h>

using namespace quire;

namespace {

QString without(const char *text, const char *secret)
{
    return Redaction::without(QString::fromUtf8(text), QString::fromUtf8(secret));
}

} // namespace

TEST(Redaction, ASecretIsTakenOutWhereverItStands)
{
    EXPECT_EQ(without("The key k3y/Ab is wrong: k3y/Ab", "k3y/Ab"), QStringLiteral("The key … is wrong: …"));
    EXPECT_EQ(without("k3y/Ab", "k3y/Ab"), QStringLiteral("…"));
}

TEST(Redaction, AnEncodedSecretIsTakenOutToo)
{
    EXPECT_EQ(without("GET /list?key=a%2Fb%20c%3D&x=1", "a/b c="), QStringLiteral("GET /list?key=…&x=1"));
    EXPECT_EQ(without("GET /list?key=a%2fb+c%3d&x=1", "a/b c="), QStringLiteral("GET /list?key=…&x=1"));
}

TEST(Redaction, TheCaseOfTheLettersDoesNotMatter)
{
    EXPECT_EQ(without("NO SUCH KEY: ABCDEF", "abcdef"), QStringLiteral("NO SUCH KEY: …"));
}

TEST(Redaction, OtherTextStaysWordForWord)
{
    EXPECT_EQ(without("No such reader.\n  “42”", "abcdef"), QStringLiteral("No such reader.\n  “42”"));
    EXPECT_EQ(without("", "abcdef"), QString());
}

TEST(Redaction, WithoutASecretNothingIsTakenOut)
{
    EXPECT_EQ(without("Not found", ""), QStringLiteral("Not found"));
    EXPECT_EQ(without("Not found", "o"), QStringLiteral("Not found"));
}
