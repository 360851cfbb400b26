#include "QuireApp/ViewModels/LibraryTexts.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

QStringList titles(const QList<Choice> &choices)
{
    QStringList titles;
    for (const Choice &choice : choices) {
        titles.append(choice.title);
    }
    return titles;
}

const QLocale english(QLocale::English, QLocale::UnitedStates);

TEST(LibraryTexts, OneTitleTwoTitlesAndDigitsGroupedAsTheLocaleGroups)
{
    EXPECT_EQ(LibraryTexts::titleCount(0, english), QStringLiteral("0 titles"));
    EXPECT_EQ(LibraryTexts::titleCount(1, english), QStringLiteral("1 title"));
    EXPECT_EQ(LibraryTexts::titleCount(2, english), QStringLiteral("2 titles"));
    EXPECT_EQ(LibraryTexts::titleCount(1234, english), QStringLiteral("1,234 titles"));
    EXPECT_EQ(LibraryTexts::titleCount(1234, QLocale(QLocale::German)), QStringLiteral("1.234 titles"));
}

TEST(LibraryTexts, TheSidebarOffersInsightsTogetherWithBooksAndTheMenuAlways)
{
    SettingsSnapshot settings;
    EXPECT_EQ(titles(LibraryTexts::sidebarTabs(settings)),
        (QStringList{QStringLiteral("Books"), QStringLiteral("Insights"), QStringLiteral("Audio")}));
    settings.showBooksSection = false;
    EXPECT_EQ(titles(LibraryTexts::sidebarTabs(settings)), QStringList{QStringLiteral("Audio")});
    EXPECT_EQ(
        titles(LibraryTexts::menuTabs(settings)), (QStringList{QStringLiteral("Insights"), QStringLiteral("Audio")}));
    settings.showAudioSection = false;
    EXPECT_TRUE(LibraryTexts::sidebarTabs(settings).isEmpty());
    EXPECT_EQ(titles(LibraryTexts::menuTabs(settings)), QStringList{QStringLiteral("Insights")});
}

TEST(LibraryTexts, AudioIsNotInTheMenuWhenItsSectionIsOff)
{
    SettingsSnapshot settings;
    settings.showAudioSection = false;
    EXPECT_FALSE(titles(LibraryTexts::menuTabs(settings)).contains(QStringLiteral("Audio")));
}

TEST(LibraryTexts, TheShelvesOfAudioHaveTheirOwnWordsAndNoHidden)
{
    EXPECT_EQ(titles(LibraryTexts::sidebarShelves(LibraryTab::Audio)),
        (QStringList{QStringLiteral("All Audio"), QStringLiteral("Currently Listening"), QStringLiteral("Want to Read"),
            QStringLiteral("Read"), QStringLiteral("Did Not Finish")}));
    EXPECT_EQ(titles(LibraryTexts::sidebarShelves(LibraryTab::Books)),
        (QStringList{QStringLiteral("All Titles"), QStringLiteral("Currently Reading"), QStringLiteral("Want to Read"),
            QStringLiteral("Read"), QStringLiteral("Did Not Finish"), QStringLiteral("Hidden")}));
    EXPECT_TRUE(LibraryTexts::sidebarShelves(LibraryTab::Insights).isEmpty());
    EXPECT_EQ(LibraryTexts::menuShelves(LibraryTab::Audio).size(), 6);
}

TEST(LibraryTexts, TheSearchPromptNamesAudibleOnTheAudioTabAlone)
{
    EXPECT_EQ(LibraryTexts::searchPrompt(LibraryTab::Audio), QStringLiteral("Search library & Audible"));
    EXPECT_EQ(LibraryTexts::searchPrompt(LibraryTab::Books), QStringLiteral("Search library"));
    EXPECT_EQ(LibraryTexts::searchPrompt(LibraryTab::Insights), QStringLiteral("Search library"));
}

TEST(LibraryTexts, TheLastUpdateIsToldOnlyWhenItParses)
{
    EXPECT_EQ(LibraryTexts::lastUpdated(std::nullopt), QStringLiteral("Not published from Quire yet"));
    EXPECT_EQ(LibraryTexts::lastUpdated(QStringLiteral("yesterday")), QStringLiteral("Not published from Quire yet"));
    EXPECT_EQ(LibraryTexts::lastUpdated(QStringLiteral("2026-03-05T10:15:30Z"), english),
        QStringLiteral("Last update: Mar 5, 2026, 11:15 AM")); // Oslo
}

} // namespace

} // namespace quire
