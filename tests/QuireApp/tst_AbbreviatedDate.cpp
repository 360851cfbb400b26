#include "QuireApp/ViewModels/AbbreviatedDate.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

QString shown(const char *locale)
{
    return abbreviatedDate(QDate(2026, 11, 3), QLocale(QString::fromLatin1(locale)));
}

TEST(AbbreviatedDate, ThePartsStandInTheOrderOfTheLocale)
{
    EXPECT_EQ(shown("C"), QStringLiteral("3 Nov 2026"));
    EXPECT_EQ(shown("en_US"), QStringLiteral("Nov 3, 2026"));
    EXPECT_EQ(shown("en_GB"), QStringLiteral("3 Nov 2026"));
    EXPECT_EQ(shown("de_DE"), QStringLiteral("3. Nov. 2026"));
    EXPECT_EQ(shown("nb_NO"), QStringLiteral("3. nov. 2026"));
    EXPECT_EQ(shown("ja_JP"), QStringLiteral("2026年11月3日"));
}

TEST(AbbreviatedDate, NoLocaleLeavesTheWeekdayOrLosesAPart)
{
    const QDate day(2026, 11, 3);
    for (const QLocale &locale :
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        const QString text = abbreviatedDate(day, locale);
        SCOPED_TRACE(locale.name().toStdString() + ": " + text.toStdString());
        EXPECT_FALSE(text.contains(locale.dayName(day.dayOfWeek(), QLocale::LongFormat)));
        EXPECT_TRUE(text.contains(locale.toString(day, QStringLiteral("d"))));
        EXPECT_TRUE(text.contains(locale.toString(day, QStringLiteral("yyyy")))
            || text.contains(locale.toString(day, QStringLiteral("yy"))));
        EXPECT_EQ(text, text.trimmed());
    }
}

TEST(AbbreviatedDate, ADateThatIsNoneIsEmpty)
{
    EXPECT_EQ(abbreviatedDate(QDate()), QString());
}

} // namespace

} // namespace quire
