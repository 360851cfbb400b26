#include "persistence/NormalizedText.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

using namespace quire;

namespace {

void expectSame(const QString &a, const QString &b)
{
    EXPECT_EQ(normalizedText(a), normalizedText(b)) << qPrintable(a) << " and " << qPrintable(b);
}

} // namespace

TEST(NormalizedText, AccentsAmpersandAndFullStopMakeNoDifference)
{
    EXPECT_EQ(normalizedText(QStringLiteral("Caf\u00e9 & Co.")), QStringLiteral("cafe and co"));
    expectSame(QStringLiteral("Caf\u00e9 & Co."), QStringLiteral("cafe and co"));
}

TEST(NormalizedText, AnAmpersandIsAWordAlsoWithoutBlanks)
{
    EXPECT_EQ(normalizedText(QStringLiteral("Q&A")), QStringLiteral("q and a"));
    EXPECT_EQ(normalizedText(QStringLiteral("&")), QStringLiteral("and"));
}

TEST(NormalizedText, ComposedAndDecomposedAccentsAreOne)
{
    expectSame(QStringLiteral("\u00c9lan"), QStringLiteral("E\u0301lan"));
}

TEST(NormalizedText, CaseMakesNoDifference)
{
    EXPECT_EQ(normalizedText(QStringLiteral("THE Long Way")), QStringLiteral("the long way"));
    expectSame(QStringLiteral("\u03a3\u0391\u03a3"), QStringLiteral("\u03c3\u03b1\u03c2"));
    expectSame(QStringLiteral("STRASSE"), QStringLiteral("Stra\u00dfe"));
}

TEST(NormalizedText, RunsOfPunctuationAreOneBlankAndNoneAtTheEnds)
{
    EXPECT_EQ(normalizedText(QStringLiteral("  ...Who\u2019s -- there?!\n")), QStringLiteral("who s there"));
}

TEST(NormalizedText, DigitsCountAsPartsOfWords)
{
    EXPECT_EQ(normalizedText(QStringLiteral("Catch-22")), QStringLiteral("catch 22"));
}

TEST(NormalizedText, ATextWithoutAnyAlphanumericCharacterIsEmpty)
{
    for (const QString &text :
        {QString(), QStringLiteral(" "), QStringLiteral("?!..."), QStringLiteral("\u2014\u3002")}) {
        EXPECT_EQ(normalizedText(text), QString());
    }
}

TEST(NormalizedText, OtherScriptsStay)
{
    EXPECT_EQ(
        normalizedText(QStringLiteral("\u6751\u4e0a, \u6625\u6a39")), QStringLiteral("\u6751\u4e0a \u6625\u6a39"));
    EXPECT_EQ(normalizedText(QStringLiteral("\u0414\u043e\u043c!")), QStringLiteral("\u0434\u043e\u043c"));
}

TEST(NormalizedText, LettersOutsideTheFirstPlaneAreKeptWhole)
{
    // Deseret, which has case: capital long I and its small letter.
    const QString capital = QString::fromUcs4(U"\U00010400");
    const QString small = QString::fromUcs4(U"\U00010428");
    EXPECT_EQ(normalizedText(capital), small);
}

TEST(NormalizedText, BrokenTextDividesWords)
{
    const QString lone(QChar(0xd800));
    EXPECT_EQ(normalizedText(QStringLiteral("a") + lone + QStringLiteral("b")), QStringLiteral("a b"));
    EXPECT_EQ(normalizedText(lone), QString());
    EXPECT_EQ(normalizedText(QStringLiteral("a") + QChar(u'\0') + QStringLiteral("b")), QStringLiteral("a b"));
}

TEST(NormalizedText, ATextOfAMillionAccentedLettersTakesNoLongerThanItsLengthAsks)
{
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(normalizedText(QString(1 << 20, u'\u00c9')), QString(1 << 20, u'e'));
    EXPECT_LT(clock.elapsed(), 5000); // half a minute when the time grows with the square
}

TEST(NormalizedText, ALongTextIsTheSameWhereverItsLettersFall)
{
    // Each letter takes two or three code units, so that over the lengths every
    // place within one falls on every place of the text.
    const QString accented = QStringLiteral("e\u0301");
    const QString pair = QString::fromUcs4(U"\U00010400\u0301");
    const QString smallPair = QString::fromUcs4(U"\U00010428");
    for (int before = 500; before < 520; ++before) {
        const QString start(before, u'a');
        EXPECT_EQ(normalizedText(start + accented + pair), start + QStringLiteral("e") + smallPair) << before;
    }
}
