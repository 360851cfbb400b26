#include "sources/HTMLText.h"

#include "records/Text.h"

#include <QRandomGenerator>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <algorithm>
#include <ctime>

using namespace quire;

namespace {

QRegularExpression expression(const char *pattern)
{
    return QRegularExpression(QString::fromLatin1(pattern),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
}

// The same rules written as whole-text replacements, too slow for hostile text.
QString decodeByReplacing(QString text)
{
    while (text.contains(QStringLiteral("&amp;"))) {
        text.replace(QStringLiteral("&amp;"), QStringLiteral("&"));
    }
    return text.replace(QStringLiteral("&lt;"), QStringLiteral("<"))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"))
        .replace(QStringLiteral("&quot;"), QStringLiteral("\""))
        .replace(QStringLiteral("&#39;"), QStringLiteral("'"))
        .replace(QStringLiteral("&nbsp;"), QStringLiteral(" "));
}

QString plainTextByExpressions(QString text, std::optional<qsizetype> maximumLength)
{
    static const QRegularExpression lineBreak = expression(R"(<\s*br\s*/?>)");
    static const QRegularExpression blockEnd = expression("</(p|div)>");
    static const QRegularExpression tag = expression("<[^>]+>");
    static const QRegularExpression blanks = expression("[ \\t]+");
    static const QRegularExpression lineFeeds = expression("\\n{3,}");
    text.replace(lineBreak, QStringLiteral("\n"))
        .replace(blockEnd, QStringLiteral("\n"))
        .replace(tag, QStringLiteral(" "));
    text = decodeByReplacing(text).remove(u'\r');
    text.replace(blanks, QStringLiteral(" ")).replace(lineFeeds, QStringLiteral("\n\n"));
    text = Text::trimmed(text);
    if (maximumLength && Text::characterCount(text) > *maximumLength) {
        text = Text::firstCharacters(text, *maximumLength) + QStringLiteral("...");
    }
    return text;
}

// Texts in which everything that the rules look at meets everything else.
QString randomText(QRandomGenerator &random)
{
    static const QStringList pieces{QStringLiteral("<"), QStringLiteral("<"), QStringLiteral(">"), QStringLiteral(">"),
        QStringLiteral("/"), QStringLiteral("br"), QStringLiteral("BR"), QStringLiteral("bR"), QStringLiteral("p"),
        QStringLiteral("P"), QStringLiteral("div"), QStringLiteral("DiV"), QStringLiteral("</p>"),
        QStringLiteral("<br/>"), QStringLiteral(" "), QStringLiteral(" "), QStringLiteral("\t"), QStringLiteral("\n"),
        QStringLiteral("\n\n"), QStringLiteral("\r"), QStringLiteral("\r\n"), QStringLiteral("\u00a0"),
        QStringLiteral("\u0085"), QStringLiteral("\u2028"), QStringLiteral("&"), QStringLiteral("&amp;"),
        QStringLiteral("&amp;"), QStringLiteral("&lt;"), QStringLiteral("&gt;"), QStringLiteral("lt;"),
        QStringLiteral("amp;"), QStringLiteral("&quot;"), QStringLiteral("&#39;"), QStringLiteral("#39;"),
        QStringLiteral("&nbsp;"), QStringLiteral("&NBSP;"), QStringLiteral("a"), QStringLiteral("e\u0301"),
        QStringLiteral("\u0301"), QStringLiteral("\U0001f469\u200d\U0001f680"), QStringLiteral("Å")};
    QString text;
    const int length = random.bounded(24);
    for (int i = 0; i < length; ++i) {
        text += pieces.at(random.bounded(static_cast<int>(pieces.size())));
    }
    return text;
}

} // namespace

TEST(HTMLTextDecode, ReplacesItsSixEntities)
{
    EXPECT_EQ(HTMLText::decode(QStringLiteral("a &amp; b &lt;c&gt; &quot;d&quot; &#39;e&#39;&nbsp;f")),
        QStringLiteral("a & b <c> \"d\" 'e' f"));
}

TEST(HTMLTextDecode, AnAmpersandEscapedTwiceIsOnePlainAmpersand)
{
    EXPECT_EQ(HTMLText::decode(QStringLiteral("a &amp;amp; b")), QStringLiteral("a & b"));
}

TEST(HTMLTextDecode, WhatWasEscapedTwiceIsDecodedTwice)
{
    EXPECT_EQ(HTMLText::decode(QStringLiteral("&amp;lt;b&amp;gt; &amp;quot;&amp;#39;&amp;nbsp;")),
        QStringLiteral("<b> \"' "));
}

TEST(HTMLTextDecode, WhatTheLaterReplacementsBringTogetherStays)
{
    EXPECT_EQ(HTMLText::decode(QStringLiteral("&&lt;gt; &am&#39;p;")), QStringLiteral("&<gt; &am'p;"));
}

TEST(HTMLTextDecode, LeavesEveryOtherEntity)
{
    const QString others = QStringLiteral("&eacute; &#233; &#x27; &apos; &AMP; &Lt; &amp &;");
    EXPECT_EQ(HTMLText::decode(others), others);
}

TEST(HTMLTextPlainText, LineBreaksAndBlockEndsBecomeLineFeedsAndOtherTagsOneSpace)
{
    EXPECT_EQ(
        HTMLText::plainText(QStringLiteral("One<BR>two</P>three <b>bold</b>")), QStringLiteral("One\ntwo\nthree bold"));
    EXPECT_EQ(HTMLText::plainText(QStringLiteral("a<b>b</b>c")), QStringLiteral("a b c"));
    EXPECT_EQ(HTMLText::plainText(QStringLiteral("a< br />b<br/>c<br >d</DIV>e")), QStringLiteral("a\nb\nc\nd\ne"));
}

TEST(HTMLTextPlainText, ATagThatArrivedEscapedIsText)
{
    EXPECT_EQ(HTMLText::plainText(QStringLiteral("&lt;b&gt;x&lt;/b&gt;")), QStringLiteral("<b>x</b>"));
}

TEST(HTMLTextPlainText, WhatIsNoTagStays)
{
    EXPECT_EQ(HTMLText::plainText(QStringLiteral("2 > 1, <> and 1 < 2")), QStringLiteral("2 > 1, <> and 1 < 2"));
}

TEST(HTMLTextPlainText, ShortensRunsOfBlanksAndOfLineFeeds)
{
    EXPECT_EQ(HTMLText::plainText(QStringLiteral("a \t b\r\n\r\n\r\n\r\nc\n\nd")), QStringLiteral("a b\n\nc\n\nd"));
}

TEST(HTMLTextPlainText, TrimsBothEnds)
{
    EXPECT_EQ(HTMLText::plainText(QStringLiteral("<p> \n text&nbsp;</p>")), QStringLiteral("text"));
    EXPECT_EQ(HTMLText::plainText(QStringLiteral(" <br> ")), QString());
}

TEST(HTMLTextPlainText, ATextOfExactlyTheLimitIsWhole)
{
    const QString text(500, u'x');
    EXPECT_EQ(HTMLText::plainText(text, 500), text);
}

TEST(HTMLTextPlainText, ATextOfOneMoreIsCutAndMarked)
{
    EXPECT_EQ(HTMLText::plainText(QString(501, u'x'), 500), QString(500, u'x') + QStringLiteral("..."));
}

TEST(HTMLTextPlainText, TheLimitCountsWhatAReaderCallsCharacters)
{
    const QString astronaut = QStringLiteral("\U0001f469\u200d\U0001f680");
    EXPECT_EQ(HTMLText::plainText(astronaut.repeated(500), 500), astronaut.repeated(500));
    EXPECT_EQ(HTMLText::plainText(astronaut.repeated(501), 500), astronaut.repeated(500) + QStringLiteral("..."));
}

TEST(HTMLTextPlainText, NothingIsTrimmedAfterTheCut)
{
    EXPECT_EQ(HTMLText::plainText(QStringLiteral("one two"), 4), QStringLiteral("one ..."));
}

TEST(HTMLText, GivesWhatTheExpressionsGive)
{
    QRandomGenerator random(20261121);
    for (int round = 0; round < 100'000; ++round) {
        const QString text = randomText(random);
        ASSERT_EQ(HTMLText::decode(text), decodeByReplacing(text)) << qUtf8Printable(text);
        ASSERT_EQ(HTMLText::plainText(text), plainTextByExpressions(text, std::nullopt)) << qUtf8Printable(text);
        ASSERT_EQ(HTMLText::plainText(text, 5), plainTextByExpressions(text, 5)) << qUtf8Printable(text);
    }
}

class HostileText : public ::testing::TestWithParam<const char *>
{
protected:
    // Processor time, which a busy machine does not stretch.
    static std::clock_t timeFor(qsizetype length)
    {
        const QString piece = QString::fromLatin1(GetParam());
        const QString text = piece.repeated(length / piece.size());
        const std::clock_t before = std::clock();
        HTMLText::plainText(text, 500);
        return std::clock() - before;
    }
};

TEST_P(HostileText, TakesTimeInProportionToItsLength)
{
    // Four times the text; were the time quadratic, it would be sixteenfold.
    const std::clock_t least = CLOCKS_PER_SEC / 20;
    EXPECT_LT(timeFor(4'000'000), 8 * std::max(timeFor(1'000'000), least));
}

INSTANTIATE_TEST_SUITE_P(Pieces, HostileText,
    ::testing::Values(
        "<", "<>", "< ", "< br", "&amp;", "&amp;lt;", "<br>", "a<b>", "\r\n", " \n", "&nbsp;", "\n\n\n \t"));
