#include "ModelTest.h"
#include "QuireApp/Theme/InterfaceFonts.h"
#include "QuireApp/ViewModels/AppearanceViewModel.h"
#include "QuireApp/ViewModels/SettingsViewModel.h"
#include "records/AccentPalette.h"

#include <QSignalSpy>

namespace quire {

namespace {

using testing::await;
using testing::eventually;
using namespace std::chrono_literals;

constexpr auto calm = 160ms;

class AppearanceViewModelTest : public ModelTest
{
protected:
    // The view model over a library that is open.
    AppearanceViewModel &start()
    {
        startModel();
        return appearance.emplace(*model, clock, colorPanel);
    }

    void storeCustomColor(const QString &red, const QString &green, const QString &blue)
    {
        setStored(QStringLiteral("customAccentRed"), red);
        setStored(QStringLiteral("customAccentGreen"), green);
        setStored(QStringLiteral("customAccentBlue"), blue);
    }

    // Counts what is written from now on.
    void countWrites()
    {
        library.executeScript(
            "CREATE TABLE IF NOT EXISTS writes (key TEXT);"
            "CREATE TRIGGER added AFTER INSERT ON settings BEGIN INSERT INTO writes VALUES (NEW.key); END;"
            "CREATE TRIGGER changed AFTER UPDATE ON settings BEGIN INSERT INTO writes VALUES (NEW.key); END;");
    }

    qint64 writes(const QString &key) const
    {
        return library.scalar("SELECT COUNT(*) FROM writes WHERE key = ?", {key}).intValue().value_or(-1);
    }

    void refuseWrites()
    {
        library.executeScript(
            "CREATE TRIGGER full BEFORE INSERT ON settings BEGIN SELECT RAISE(ABORT, 'no room'); END");
    }

    bool isStored(const QString &key, const QString &value)
    {
        return eventually([&] { return stored(key) == value; });
    }

    ~AppearanceViewModelTest() override { appearance.reset(); }

    CustomColorPanelPresenter colorPanel;
    std::optional<AppearanceViewModel> appearance;
};

QStringList titles(const ChoiceListModel &model)
{
    QStringList titles;
    for (const Choice &choice : model.choices()) {
        titles.append(choice.title);
    }
    return titles;
}

TEST_F(AppearanceViewModelTest, TheListsHaveTheirLabelsInOrder)
{
    start();
    EXPECT_EQ(titles(*appearance->sidebars()),
        (QStringList{QStringLiteral("Snow"), QStringLiteral("Fjord"), QStringLiteral("Pine"), QStringLiteral("Cabin"),
            QStringLiteral("Glass")}));
    EXPECT_EQ(titles(*appearance->fonts()),
        (QStringList{QStringLiteral("System"), QStringLiteral("Avenir Next"), QStringLiteral("Helvetica Neue"),
            QStringLiteral("Charter"), QStringLiteral("Georgia"), QStringLiteral("Baskerville"),
            QStringLiteral("Gill Sans"), QStringLiteral("Futura"), QStringLiteral("Optima"),
            QStringLiteral("Palatino")}));
    EXPECT_EQ(titles(*appearance->accents()),
        (QStringList{QStringLiteral("Snow"), QStringLiteral("Fjord"), QStringLiteral("Pine"), QStringLiteral("Cabin"),
            QStringLiteral("Custom Color")}));
}

TEST_F(AppearanceViewModelTest, EachFontIsShownInItsOwnFace)
{
    start();
    EXPECT_EQ(appearance->fonts()->familyOf(QStringLiteral("gillSans")), QStringLiteral("Gill Sans"));
    EXPECT_EQ(
        appearance->fonts()->familyOf(QStringLiteral("system")), InterfaceFonts::family(InterfaceFontChoice::System));
    EXPECT_EQ(appearance->sidebars()->familyOf(QStringLiteral("pine")), QString());
}

TEST_F(AppearanceViewModelTest, TheBuffersHoldWhatIsStored)
{
    setStored(QStringLiteral("sidebarAppearance"), QStringLiteral("glass"));
    setStored(QStringLiteral("interfaceFont"), QStringLiteral("futura"));
    setStored(QStringLiteral("accentColor"), QStringLiteral("pine"));
    setStored(QStringLiteral("usesCustomAccentColor"), QStringLiteral("1"));
    storeCustomColor(QStringLiteral("1.0"), QStringLiteral("0.8"), QStringLiteral("0.0"));

    start();

    EXPECT_EQ(appearance->sidebarAppearance(), QStringLiteral("glass"));
    EXPECT_EQ(appearance->interfaceFont(), QStringLiteral("futura"));
    EXPECT_EQ(appearance->accent(), QStringLiteral("custom"));
    EXPECT_EQ(appearance->customAccentColor(), QColor(255, 204, 0));
    EXPECT_EQ(appearance->accentColorOf(QStringLiteral("custom")), QColor(255, 204, 0));
    EXPECT_EQ(appearance->accentColorOf(QStringLiteral("pine")), QColor(38, 79, 71));
}

TEST_F(AppearanceViewModelTest, WithoutAStoredColourOfTheReadersOwnItIsFjord)
{
    setStored(QStringLiteral("customAccentRed"), QStringLiteral("1.0"));
    start();
    EXPECT_EQ(appearance->customAccentColor(), QColor(66, 111, 131));
}

TEST_F(AppearanceViewModelTest, ASidebarIsSeenAndStoredAtOnce)
{
    start();
    for (const Choice &choice : appearance->sidebars()->choices()) {
        appearance->chooseSidebar(choice.word);
        EXPECT_EQ(rawValue(model->settings().sidebarAppearance), choice.word);
        EXPECT_EQ(appearance->sidebarAppearance(), choice.word);
    }
    EXPECT_TRUE(isStored(QStringLiteral("sidebarAppearance"), QStringLiteral("glass")));
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AppearanceViewModelTest, AFontWaitsForTheSettingsToBeSaved)
{
    start();
    SettingsViewModel settings(*model, *appearance, QUrl());
    settings.load();
    appearance->chooseFont(QStringLiteral("palatino"));
    clock.advance(1s);
    settle();
    EXPECT_EQ(model->settings().interfaceFont, InterfaceFontChoice::AvenirNext);
    EXPECT_EQ(stored(QStringLiteral("interfaceFont")), std::nullopt);

    settings.load(); // as Cancel and opening again
    EXPECT_EQ(appearance->interfaceFont(), QStringLiteral("avenirNext"));

    appearance->chooseFont(QStringLiteral("palatino"));
    const QSignalSpy saved(&settings, &SettingsViewModel::saved);
    settings.save();
    EXPECT_TRUE(eventually([&] { return saved.size() == 1; }));
    EXPECT_EQ(model->settings().interfaceFont, InterfaceFontChoice::Palatino);
    EXPECT_EQ(stored(QStringLiteral("interfaceFont")), QStringLiteral("palatino"));
}

TEST_F(AppearanceViewModelTest, SavingKeepsTheLookThatWasChosenAtOnce)
{
    start();
    SettingsViewModel settings(*model, *appearance, QUrl());
    settings.load();
    appearance->chooseSidebar(QStringLiteral("cabin"));
    appearance->chooseAccent(QStringLiteral("pine"));
    const QSignalSpy saved(&settings, &SettingsViewModel::saved);
    settings.save();
    EXPECT_TRUE(eventually([&] { return saved.size() == 1; }));
    EXPECT_EQ(model->settings().sidebarAppearance, SidebarAppearance::Cabin);
    EXPECT_EQ(model->settings().accentColor, AccentColorChoice::Pine);
    EXPECT_EQ(stored(QStringLiteral("accentColor")), QStringLiteral("pine"));
}

TEST_F(AppearanceViewModelTest, CancelKeepsTheLookThatWasChosenAtOnce)
{
    start();
    SettingsViewModel settings(*model, *appearance, QUrl());
    settings.load();
    appearance->chooseSidebar(QStringLiteral("cabin"));
    appearance->chooseAccent(QStringLiteral("pine"));
    colorPanel.detach(); // the window has closed
    clock.advance(calm); // and the task runs out

    EXPECT_TRUE(isStored(QStringLiteral("accentColor"), QStringLiteral("pine")));
    settings.load();
    EXPECT_EQ(appearance->sidebarAppearance(), QStringLiteral("cabin"));
    EXPECT_EQ(appearance->accent(), QStringLiteral("pine"));
}

TEST_F(AppearanceViewModelTest, AnAccentIsSeenAtOnceAndStoredAfterACalm)
{
    start();
    countWrites();

    appearance->chooseAccent(QStringLiteral("cabin"));
    EXPECT_EQ(model->settings().accentColor, AccentColorChoice::Cabin);
    EXPECT_EQ(appearance->accent(), QStringLiteral("cabin"));
    EXPECT_EQ(lastPause(), calm);
    clock.advance(calm - 1ms);
    settle();
    EXPECT_EQ(stored(QStringLiteral("accentColor")), std::nullopt);
    clock.advance(1ms);

    EXPECT_TRUE(isStored(QStringLiteral("accentColor"), QStringLiteral("cabin")));
    EXPECT_EQ(stored(QStringLiteral("usesCustomAccentColor")), QStringLiteral("0"));
    EXPECT_EQ(writes(QStringLiteral("accentColor")), 1);
}

TEST_F(AppearanceViewModelTest, TheAccentThatIsChosenAlreadyIsNotStoredAgain)
{
    start();
    appearance->chooseAccent(QStringLiteral("fjord"));
    EXPECT_EQ(sleepers(), 0);
}

TEST_F(AppearanceViewModelTest, ADragInTheColourPanelRepaintsAtOnceAndWritesOnceAfterItsEnd)
{
    start();
    appearance->chooseAccent(QStringLiteral("custom"));
    clock.advance(calm);
    ASSERT_TRUE(isStored(QStringLiteral("usesCustomAccentColor"), QStringLiteral("1")));
    countWrites();
    int repaints = 0;
    QObject::connect(model.get(), &AppModel::settingsChanged, model.get(), [&repaints] { ++repaints; });

    for (int step = 1; step <= 100; ++step) {
        colorPanel.setValue(step / 100.0);
        EXPECT_DOUBLE_EQ(model->settings().customAccentColor.value_or(CustomAccentColor()).blue, step / 100.0);
        clock.advance(calm - 1ms); // never at rest
    }
    settle();
    EXPECT_EQ(repaints, 100);
    EXPECT_EQ(writes(QStringLiteral("customAccentBlue")), 0);
    clock.advance(1ms);

    EXPECT_TRUE(isStored(QStringLiteral("customAccentBlue"), QStringLiteral("1.0")));
    EXPECT_EQ(writes(QStringLiteral("customAccentBlue")), 1);
    EXPECT_EQ(writes(QStringLiteral("accentColor")), 1);
}

TEST_F(AppearanceViewModelTest, TheReadersOwnOpensThePanelWithTheColourThatIsStored)
{
    storeCustomColor(QStringLiteral("0.2"), QStringLiteral("0.4"), QStringLiteral("0.6"));
    start();

    appearance->chooseAccent(QStringLiteral("custom"));

    EXPECT_TRUE(colorPanel.isShown());
    EXPECT_EQ(colorPanel.hex(), QStringLiteral("#336699"));
    EXPECT_TRUE(model->settings().usesCustomAccentColor);
    EXPECT_EQ(model->settings().customAccentColor, (CustomAccentColor{0.2, 0.4, 0.6}));
}

TEST_F(AppearanceViewModelTest, OpeningThePanelAgainLeavesTheAccentExactlyAsItIs)
{
    setStored(QStringLiteral("usesCustomAccentColor"), QStringLiteral("1"));
    storeCustomColor(QStringLiteral("0.3339"), QStringLiteral("0.4001"), QStringLiteral("0.6"));
    start();

    appearance->chooseAccent(QStringLiteral("custom"));
    colorPanel.detach();
    appearance->chooseAccent(QStringLiteral("custom"));

    EXPECT_TRUE(colorPanel.isShown());
    EXPECT_EQ(sleepers(), 0); // nothing to store
    EXPECT_EQ(model->settings().customAccentColor, (CustomAccentColor{0.3339, 0.4001, 0.6}));
}

TEST_F(AppearanceViewModelTest, WithoutOneOfTheReadersOwnThePanelOpensWithFjord)
{
    setStored(QStringLiteral("accentColor"), QStringLiteral("cabin"));
    start();

    appearance->chooseAccent(QStringLiteral("custom"));

    EXPECT_EQ(colorPanel.hex(), QStringLiteral("#426F83"));
    EXPECT_EQ(model->settings().customAccentColor, AccentPalette::fjord);
    EXPECT_EQ(model->settings().accentColor, AccentColorChoice::Cabin);
}

TEST_F(AppearanceViewModelTest, ASwatchKeepsTheReadersOwnColourForLater)
{
    start();
    appearance->chooseAccent(QStringLiteral("custom"));
    colorPanel.enterHex(QStringLiteral("#336699"));
    appearance->chooseAccent(QStringLiteral("snow"));
    EXPECT_FALSE(model->settings().usesCustomAccentColor);
    clock.advance(calm);
    EXPECT_TRUE(isStored(QStringLiteral("accentColor"), QStringLiteral("snow")));
    EXPECT_EQ(stored(QStringLiteral("customAccentRed")), QStringLiteral("0.2"));

    appearance->chooseAccent(QStringLiteral("custom"));
    EXPECT_EQ(colorPanel.hex(), QStringLiteral("#336699"));
}

TEST_F(AppearanceViewModelTest, ThePanelThatStandsOpenTakesTheAccentBack)
{
    start();
    appearance->chooseAccent(QStringLiteral("custom"));
    appearance->chooseAccent(QStringLiteral("pine"));
    EXPECT_TRUE(colorPanel.isShown());

    colorPanel.enterHex(QStringLiteral("#336699"));

    EXPECT_EQ(appearance->accent(), QStringLiteral("custom"));
    EXPECT_TRUE(model->settings().usesCustomAccentColor);
}

TEST_F(AppearanceViewModelTest, AClosedPanelChangesNoAccent)
{
    start();
    appearance->chooseAccent(QStringLiteral("custom"));
    colorPanel.detach();
    colorPanel.enterHex(QStringLiteral("#336699"));
    EXPECT_EQ(model->settings().customAccentColor, AccentPalette::fjord);
}

TEST_F(AppearanceViewModelTest, APanelThatOutlivesTheViewModelCallsNobody)
{
    start();
    appearance->chooseAccent(QStringLiteral("custom"));
    appearance.reset();
    colorPanel.enterHex(QStringLiteral("#336699"));
    clock.advance(calm);
    settle();
    EXPECT_EQ(model->settings().customAccentColor, AccentPalette::fjord);
    EXPECT_EQ(stored(QStringLiteral("customAccentRed")), std::nullopt);
}

TEST_F(AppearanceViewModelTest, AnAccentThatWaitsIsStoredOnTheWayOut)
{
    start();
    appearance->chooseAccent(QStringLiteral("custom"));
    colorPanel.enterHex(QStringLiteral("#336699"));

    appearance->finishAccentSave();
    await(model->shutdown());

    EXPECT_EQ(stored(QStringLiteral("usesCustomAccentColor")), QStringLiteral("1"));
    EXPECT_EQ(stored(QStringLiteral("customAccentRed")), QStringLiteral("0.2"));
    clock.advance(calm);
    settle();
    EXPECT_EQ(model->notice(), std::nullopt); // nothing was tried on a closed library
}

TEST_F(AppearanceViewModelTest, WithNothingWaitingTheWayOutStoresNothing)
{
    start();
    appearance->chooseAccent(QStringLiteral("pine"));
    clock.advance(calm);
    ASSERT_TRUE(isStored(QStringLiteral("accentColor"), QStringLiteral("pine")));
    countWrites();

    appearance->finishAccentSave();
    settle();

    EXPECT_EQ(writes(QStringLiteral("accentColor")), 0);
}

TEST_F(AppearanceViewModelTest, WhatCouldNotBeStoredIsNotShownAsChosen)
{
    start();
    refuseWrites();

    appearance->chooseSidebar(QStringLiteral("pine"));
    appearance->chooseAccent(QStringLiteral("cabin"));
    clock.advance(calm);

    EXPECT_TRUE(
        eventually([this] { return appearance->accent() == u"fjord" && appearance->sidebarAppearance() == u"snow"; }));
    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Appearance Could Not Be Saved"));
    library.executeScript("DROP TRIGGER full");
    appearance->chooseSidebar(QStringLiteral("pine"));
    EXPECT_TRUE(isStored(QStringLiteral("sidebarAppearance"), QStringLiteral("pine")));
}

TEST_F(AppearanceViewModelTest, AReloadInTheMiddleOfADragDoesNotLoseIt)
{
    start();
    appearance->chooseAccent(QStringLiteral("custom"));
    colorPanel.enterHex(QStringLiteral("#336699"));

    await(model->reload()); // as the end of a sync

    EXPECT_EQ(appearance->accent(), QStringLiteral("custom"));
    clock.advance(calm);
    EXPECT_TRUE(isStored(QStringLiteral("customAccentRed"), QStringLiteral("0.2")));
    EXPECT_TRUE(model->settings().usesCustomAccentColor);
    EXPECT_EQ(model->settings().customAccentColor, (CustomAccentColor{0.2, 0.4, 0.6}));
}

TEST_F(AppearanceViewModelTest, BeforeTheLibraryIsOpenThereIsNothingToChoose)
{
    makeModel();
    appearance.emplace(*model, clock, colorPanel);

    appearance->chooseSidebar(QStringLiteral("pine"));
    appearance->chooseFont(QStringLiteral("georgia"));
    appearance->chooseAccent(QStringLiteral("cabin"));
    appearance->chooseAccent(QStringLiteral("custom"));
    settle();

    EXPECT_EQ(model->settings(), SettingsSnapshot());
    EXPECT_EQ(appearance->interfaceFont(), QStringLiteral("avenirNext"));
    EXPECT_FALSE(colorPanel.isShown());
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AppearanceViewModelTest, AWordThatIsNoChoiceIsPassedOver)
{
    start();
    appearance->chooseSidebar(QStringLiteral("mauve"));
    appearance->chooseFont(QStringLiteral("Courier"));
    appearance->chooseAccent(QString());
    EXPECT_EQ(appearance->sidebarAppearance(), QStringLiteral("snow"));
    EXPECT_EQ(appearance->interfaceFont(), QStringLiteral("avenirNext"));
    EXPECT_EQ(appearance->accent(), QStringLiteral("fjord"));
}

} // namespace

} // namespace quire
