#include "records/Enumerations.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

// A case, its word.
template<typename Enumeration>
using Words = std::vector<std::pair<Enumeration, QString>>;

template<typename Enumeration, typename List>
void expectWords(const List &all, const Words<Enumeration> &words)
{
    ASSERT_EQ(all.size(), words.size());
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto &[value, word] = words[i];
        EXPECT_EQ(all[i], value) << "the lists stand in the order of declaration";
        EXPECT_EQ(rawValue(value), word);
        EXPECT_EQ(fromRawValue<Enumeration>(word), value);
        EXPECT_FALSE(fromRawValue<Enumeration>(word.toUpper())) << "words are exact";
    }
    EXPECT_FALSE(fromRawValue<Enumeration>(u""));
    EXPECT_FALSE(fromRawValue<Enumeration>(u"no such word"));
}

TEST(Enumerations, EachHasItsWordsInTheOrderOfDeclaration)
{
    expectWords<LibraryTab>(allLibraryTabs,
        {{LibraryTab::Books, QStringLiteral("books")}, {LibraryTab::Insights, QStringLiteral("insights")},
            {LibraryTab::Audio, QStringLiteral("audio")}});
    expectWords<LibrarySort>(allLibrarySorts,
        {{LibrarySort::Recent, QStringLiteral("recent")}, {LibrarySort::Title, QStringLiteral("title")},
            {LibrarySort::Rating, QStringLiteral("rating")}});
    expectWords<ArtworkKind>(allArtworkKinds,
        {{ArtworkKind::Book, QStringLiteral("book")}, {ArtworkKind::Audiobook, QStringLiteral("audiobook")}});
    expectWords<LibraryShelf>(allLibraryShelves,
        {{LibraryShelf::Read, QStringLiteral("read")}, {LibraryShelf::DidNotFinish, QStringLiteral("did-not-finish")},
            {LibraryShelf::ToRead, QStringLiteral("to-read")}, {LibraryShelf::Active, QStringLiteral("active")},
            {LibraryShelf::Hidden, QStringLiteral("hidden")}, {LibraryShelf::All, QStringLiteral("all")}});
    expectWords<SidebarAppearance>(allSidebarAppearances,
        {{SidebarAppearance::Snow, QStringLiteral("snow")}, {SidebarAppearance::Fjord, QStringLiteral("fjord")},
            {SidebarAppearance::Pine, QStringLiteral("pine")}, {SidebarAppearance::Cabin, QStringLiteral("cabin")},
            {SidebarAppearance::Glass, QStringLiteral("glass")}});
    expectWords<AccentColorChoice>(allAccentColorChoices,
        {{AccentColorChoice::Snow, QStringLiteral("snow")}, {AccentColorChoice::Fjord, QStringLiteral("fjord")},
            {AccentColorChoice::Pine, QStringLiteral("pine")}, {AccentColorChoice::Cabin, QStringLiteral("cabin")}});
}

TEST(InterfaceFontChoice, HasItsWordsAndLabels)
{
    const std::vector<std::tuple<InterfaceFontChoice, QString, QString>> table{
        {InterfaceFontChoice::System, QStringLiteral("system"), QStringLiteral("System")},
        {InterfaceFontChoice::AvenirNext, QStringLiteral("avenirNext"), QStringLiteral("Avenir Next")},
        {InterfaceFontChoice::HelveticaNeue, QStringLiteral("helveticaNeue"), QStringLiteral("Helvetica Neue")},
        {InterfaceFontChoice::Charter, QStringLiteral("charter"), QStringLiteral("Charter")},
        {InterfaceFontChoice::Georgia, QStringLiteral("georgia"), QStringLiteral("Georgia")},
        {InterfaceFontChoice::Baskerville, QStringLiteral("baskerville"), QStringLiteral("Baskerville")},
        {InterfaceFontChoice::GillSans, QStringLiteral("gillSans"), QStringLiteral("Gill Sans")},
        {InterfaceFontChoice::Futura, QStringLiteral("futura"), QStringLiteral("Futura")},
        {InterfaceFontChoice::Optima, QStringLiteral("optima"), QStringLiteral("Optima")},
        {InterfaceFontChoice::Palatino, QStringLiteral("palatino"), QStringLiteral("Palatino")}};
    Words<InterfaceFontChoice> words;
    for (const auto &[choice, word, name] : table) {
        words.emplace_back(choice, word);
        EXPECT_EQ(label(choice), name);
    }
    expectWords<InterfaceFontChoice>(allInterfaceFontChoices, words);
}

TEST(LibraryShelf, ActiveIsReadingForAudioAndCurrentlyReadingElsewhere)
{
    EXPECT_EQ(databaseValue(LibraryShelf::Active, LibraryTab::Audio), QStringLiteral("reading"));
    EXPECT_EQ(databaseValue(LibraryShelf::Active, LibraryTab::Books), QStringLiteral("currently-reading"));
    EXPECT_EQ(databaseValue(LibraryShelf::Active, LibraryTab::Insights), QStringLiteral("currently-reading"));
}

TEST(LibraryShelf, HiddenAndAllHaveNoStoredWord)
{
    for (const LibraryTab tab : allLibraryTabs) {
        EXPECT_FALSE(databaseValue(LibraryShelf::Hidden, tab));
        EXPECT_FALSE(databaseValue(LibraryShelf::All, tab));
    }
}

TEST(LibraryShelf, TheOtherShelvesAreStoredUnderTheirOwnWord)
{
    for (const LibraryTab tab : allLibraryTabs) {
        EXPECT_EQ(databaseValue(LibraryShelf::Read, tab), QStringLiteral("read"));
        EXPECT_EQ(databaseValue(LibraryShelf::DidNotFinish, tab), QStringLiteral("did-not-finish"));
        EXPECT_EQ(databaseValue(LibraryShelf::ToRead, tab), QStringLiteral("to-read"));
    }
}

TEST(LibraryShelf, LabelsFollowTheTab)
{
    for (const LibraryTab tab : allLibraryTabs) {
        const bool audio = tab == LibraryTab::Audio;
        EXPECT_EQ(label(LibraryShelf::Read, tab), QStringLiteral("Read"));
        EXPECT_EQ(label(LibraryShelf::DidNotFinish, tab), QStringLiteral("Did Not Finish"));
        EXPECT_EQ(label(LibraryShelf::ToRead, tab), QStringLiteral("Want to Read"));
        EXPECT_EQ(label(LibraryShelf::Active, tab),
            audio ? QStringLiteral("Currently Listening") : QStringLiteral("Currently Reading"));
        EXPECT_EQ(label(LibraryShelf::Hidden, tab), QStringLiteral("Hidden"));
        EXPECT_EQ(label(LibraryShelf::All, tab), audio ? QStringLiteral("All Audio") : QStringLiteral("All Titles"));
    }
}

TEST(SidebarAppearance, FjordPineAndCabinUseTheDarkForeground)
{
    EXPECT_TRUE(usesDarkForeground(SidebarAppearance::Fjord));
    EXPECT_TRUE(usesDarkForeground(SidebarAppearance::Pine));
    EXPECT_TRUE(usesDarkForeground(SidebarAppearance::Cabin));
    EXPECT_FALSE(usesDarkForeground(SidebarAppearance::Snow));
    EXPECT_FALSE(usesDarkForeground(SidebarAppearance::Glass));
}

TEST(StoredAccentColorChoice, ValidWordsGiveTheirCase)
{
    for (const AccentColorChoice choice : allAccentColorChoices) {
        EXPECT_EQ(storedAccentColorChoice(rawValue(choice)), choice);
    }
}

TEST(StoredAccentColorChoice, OlderNamesKeepTheirLookInAnyCase)
{
    for (const QStringView name : {u"red", u"coral", u"orange", u"gold", u"pink", u"ORANGE", u"Gold"}) {
        EXPECT_EQ(storedAccentColorChoice(name.toString()), AccentColorChoice::Cabin) << name.toString().toStdString();
    }
    EXPECT_EQ(storedAccentColorChoice(QStringLiteral("green")), AccentColorChoice::Pine);
    EXPECT_EQ(storedAccentColorChoice(QStringLiteral("GREEN")), AccentColorChoice::Pine);
    for (const QStringView name : {u"teal", u"blue", u"indigo", u"purple"}) {
        EXPECT_EQ(storedAccentColorChoice(name.toString()), AccentColorChoice::Fjord);
    }
}

TEST(StoredAccentColorChoice, WhatItDoesNotKnowIsFjord)
{
    EXPECT_EQ(storedAccentColorChoice(std::nullopt), AccentColorChoice::Fjord);
    EXPECT_EQ(storedAccentColorChoice(QStringLiteral("mauve")), AccentColorChoice::Fjord);
    EXPECT_EQ(storedAccentColorChoice(QString()), AccentColorChoice::Fjord);
    EXPECT_EQ(storedAccentColorChoice(QStringLiteral("PINE")), AccentColorChoice::Fjord) << "a word is exact";
}

} // namespace

} // namespace quire
