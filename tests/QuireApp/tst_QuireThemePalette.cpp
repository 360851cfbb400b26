#include "QuireApp/Theme/QuireSidebarPalette.h"
#include "QuireApp/Theme/QuireThemePalette.h"
#include "QuireApp/Theme/Theme.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

constexpr CustomAccentColor white{1, 1, 1};

// Eight-bit components, as a screenshot shows them.
QString hex(const QColor &color)
{
    return color.name(QColor::HexRgb);
}

TEST(ThemePalette, TheNordicColoursHaveTheirEightBitValues)
{
    EXPECT_EQ(hex(ThemePalette::toColor(ThemePalette::color(AccentColorChoice::Snow))), QStringLiteral("#f7f7f2"));
    EXPECT_EQ(hex(ThemePalette::toColor(ThemePalette::color(AccentColorChoice::Fjord))), QStringLiteral("#426f83"));
    EXPECT_EQ(hex(ThemePalette::toColor(ThemePalette::color(AccentColorChoice::Pine))), QStringLiteral("#264f47"));
    EXPECT_EQ(hex(ThemePalette::toColor(ThemePalette::color(AccentColorChoice::Cabin))), QStringLiteral("#cb5d52"));
    EXPECT_EQ(QuireThemePalette().rgb, AccentPalette::fjord);
    EXPECT_EQ(QuireThemePalette(), ThemePalette::palette(AccentPalette::fjord));
}

TEST(ThemePalette, AWhiteAccentGivesInkOnProminentButtonsAndTintsOfPureWhite)
{
    EXPECT_EQ(ThemePalette::foregroundOnAccent(white), ThemePalette::quireInk());
    for (const double factor : {0.012, 0.07, 0.24, 0.3, 1.0}) {
        EXPECT_EQ(hex(ThemePalette::accentTint(white, factor)), QStringLiteral("#ffffff")) << factor;
    }
}

TEST(ThemePalette, ACustomColourThatIsWantedButAbsentFallsToTheChoice)
{
    EXPECT_EQ(ThemePalette::accentInForce(true, std::nullopt, AccentColorChoice::Pine), AccentPalette::pine);
    EXPECT_EQ(ThemePalette::accentInForce(true, white, AccentColorChoice::Pine), white);
    EXPECT_EQ(ThemePalette::accentInForce(false, white, AccentColorChoice::Pine), AccentPalette::pine);
}

TEST(ThemePalette, CabinIsDarkEnoughForWhiteText)
{
    EXPECT_NEAR(ThemePalette::luminance(AccentPalette::cabin), 0.44, 0.02);
    EXPECT_EQ(ThemePalette::foregroundOnAccent(AccentPalette::cabin), QColor(Qt::white));
}

TEST(ThemePalette, SnowTakesInkAtBothThresholdsAndAColourBetweenThemOnlyInTheCatalogue)
{
    EXPECT_EQ(ThemePalette::foregroundOnAccent(AccentPalette::snow), ThemePalette::quireInk());
    EXPECT_EQ(ThemePalette::catalogForegroundOnAccent(AccentPalette::snow), ThemePalette::quireInk());
    constexpr CustomAccentColor between{0.75, 0.75, 0.75};
    EXPECT_EQ(ThemePalette::foregroundOnAccent(between), QColor(Qt::white));
    EXPECT_EQ(ThemePalette::catalogForegroundOnAccent(between), ThemePalette::quireInk());
}

TEST(ThemePalette, ATintIsAWashOverWhite)
{
    const QColor tint = ThemePalette::accentTint({0, 0.5, 1}, 0.24);
    EXPECT_NEAR(tint.redF(), 0.76, 0.0001);
    EXPECT_NEAR(tint.greenF(), 0.88, 0.0001);
    EXPECT_NEAR(tint.blueF(), 1, 0.0001);
}

TEST(ThemePalette, StoredNumbersOutOfRangeStillMakeAColour)
{
    EXPECT_EQ(hex(ThemePalette::toColor({-3, 7, 0})), QStringLiteral("#00ff00"));
}

TEST(ThemePalette, AColourOfTheToolkitIsTakenWhateverItsModel)
{
    EXPECT_EQ(ThemePalette::customAccentColor(Qt::green), (CustomAccentColor{0, 1, 0}));
    EXPECT_EQ(ThemePalette::customAccentColor(QColor::fromHsv(240, 255, 255)), (CustomAccentColor{0, 0, 1}));
    EXPECT_EQ(ThemePalette::customAccentColor(QColor::fromCmyk(0, 255, 255, 0)), (CustomAccentColor{1, 0, 0}));
    const QColor beyondRange = QColor::fromRgbF(1.5F, -0.25F, 0.5F);
    ASSERT_EQ(beyondRange.spec(), QColor::ExtendedRgb);
    EXPECT_EQ(ThemePalette::customAccentColor(beyondRange), (CustomAccentColor{1, 0, 0.5}));
    EXPECT_EQ(ThemePalette::customAccentColor(QColor()), AccentPalette::fjord);
}

TEST(SidebarPalette, ADarkSidebarKeepsItsWhiteTextUnderASnowAccent)
{
    const QuireSidebarPalette palette = sidebarPalette(SidebarAppearance::Fjord, AccentPalette::snow);
    EXPECT_EQ(palette.foreground, QColor(Qt::white));
    EXPECT_NEAR(palette.selection.alphaF(), 0.16, 0.001);
    EXPECT_EQ(hex(palette.selection), QStringLiteral("#ffffff"));
    const QColor tint = ThemePalette::accentTint(AccentPalette::snow, 0.24);
    EXPECT_GT(tint.blueF(), 0.98);
}

// Colour and opacity of a sidebar's entry, to the thousandth.
void expectColor(const QColor &color, const QColor &expected, double opacity)
{
    EXPECT_EQ(hex(color), hex(expected));
    EXPECT_NEAR(color.alphaF(), opacity, 0.001);
}

TEST(SidebarPalette, DarkAppearancesTakeWhiteWhateverTheAccent)
{
    for (const auto appearance : {SidebarAppearance::Fjord, SidebarAppearance::Pine, SidebarAppearance::Cabin}) {
        const QuireSidebarPalette palette = sidebarPalette(appearance, AccentPalette::cabin);
        expectColor(palette.foreground, Qt::white, 1);
        expectColor(palette.muted, Qt::white, 0.62);
        expectColor(palette.searchForeground, ThemePalette::quireInk(), 1);
        expectColor(palette.searchMuted, ThemePalette::quireInk(), 0.55);
        expectColor(palette.searchFill, Qt::white, 0.92);
        expectColor(palette.border, Qt::black, 0.12);
        expectColor(palette.selection, Qt::white, 0.16);
        expectColor(palette.hover, Qt::white, 0.08);
    }
}

TEST(SidebarPalette, BeforeAnySettingIsReadItIsInkOnWhite)
{
    const QuireSidebarPalette palette;
    expectColor(palette.foreground, ThemePalette::quireInk(), 1);
    expectColor(palette.muted, ThemePalette::quireInk(), 0.62);
    expectColor(palette.searchForeground, ThemePalette::quireInk(), 1);
    expectColor(palette.searchMuted, ThemePalette::quireInk(), 0.55);
    expectColor(palette.searchFill, Qt::white, 1);
    expectColor(palette.border, Qt::black, 0.08);
    expectColor(palette.selection, Qt::black, 0.06);
    expectColor(palette.hover, Qt::black, 0.035);
}

TEST(SidebarPalette, LightAppearancesAreTintedByTheAccent)
{
    for (const SidebarAppearance appearance : {SidebarAppearance::Snow, SidebarAppearance::Glass}) {
        const QuireSidebarPalette palette = sidebarPalette(appearance, AccentPalette::cabin);
        EXPECT_EQ(palette.foreground, ThemePalette::quireInk());
        EXPECT_NEAR(palette.muted.alphaF(), 0.62, 0.001);
        EXPECT_EQ(palette.searchFill, ThemePalette::accentTint(AccentPalette::cabin, 0.018));
        EXPECT_EQ(palette.selection, ThemePalette::accentTint(AccentPalette::cabin, 0.24));
        EXPECT_EQ(palette.hover, ThemePalette::accentTint(AccentPalette::cabin, 0.07));
        EXPECT_NEAR(palette.border.alphaF(), 0.75, 0.001);
    }
}

TEST(SidebarPalette, TheSearchTextIsInkOnEverySurface)
{
    for (const auto appearance : {SidebarAppearance::Snow, SidebarAppearance::Fjord, SidebarAppearance::Pine,
             SidebarAppearance::Cabin, SidebarAppearance::Glass}) {
        const QuireSidebarPalette palette = sidebarPalette(appearance, AccentPalette::fjord);
        EXPECT_EQ(palette.searchForeground, ThemePalette::quireInk());
        EXPECT_NEAR(palette.searchMuted.alphaF(), 0.55, 0.001);
    }
}

TEST(SidebarBackground, NamedAppearancesArePlainAndGlassIsAGradientOfTheAccent)
{
    const SidebarBackground pine = sidebarBackground(SidebarAppearance::Pine, AccentPalette::cabin);
    EXPECT_EQ(pine.base, ThemePalette::toColor(AccentPalette::pine));
    EXPECT_EQ(pine.gradientTop.alpha(), 0);
    EXPECT_EQ(pine.gradientBottom.alpha(), 0);

    const SidebarBackground glass = sidebarBackground(SidebarAppearance::Glass, AccentPalette::cabin);
    EXPECT_EQ(hex(glass.gradientTop), QStringLiteral("#cb5d52"));
    EXPECT_NEAR(glass.gradientTop.alphaF(), 0.035, 0.001);
    EXPECT_NEAR(glass.gradientBottom.alphaF(), 0.02, 0.001);
}

TEST(Theme, NamedSurfacesAreTintsOfTheAccent)
{
    Theme theme(nullptr);
    theme.setAppearance(AccentPalette::cabin, SidebarAppearance::Snow, InterfaceFontChoice::AvenirNext);
    const auto tint = [](double factor) { return ThemePalette::accentTint(AccentPalette::cabin, factor); };
    EXPECT_EQ(theme.window(), tint(0.012));
    EXPECT_EQ(theme.field(), tint(0.018));
    EXPECT_EQ(theme.hover(), tint(0.07));
    EXPECT_EQ(theme.emptyCover(), tint(0.09));
    EXPECT_EQ(theme.pill(), tint(0.12));
    EXPECT_EQ(theme.hairline(), tint(0.24));
    EXPECT_EQ(theme.card(), tint(0.3));
    EXPECT_EQ(hex(theme.ink()), QStringLiteral("#2e2626"));
}

TEST(Theme, MarksAndEdgesAreSeenWithEveryAccent)
{
    Theme theme(nullptr);
    EXPECT_EQ(theme.mark(), theme.accent());
    theme.setAppearance(white, SidebarAppearance::Snow, InterfaceFontChoice::AvenirNext);
    EXPECT_EQ(theme.mark(), ThemePalette::quireInk());
    EXPECT_TRUE(theme.isAccentLight());
    EXPECT_EQ(hex(theme.hairline()), hex(theme.ink()));
    EXPECT_NEAR(theme.hairline().alphaF(), 0.14, 0.001);
    EXPECT_NEAR(theme.faded(theme.hairline(), 0.5).alphaF(), 0.07, 0.001);
    EXPECT_EQ(theme.onAccent(), ThemePalette::quireInk());
}

TEST(Theme, TheEdgesOfALightSidebarAreSeenWithEveryAccent)
{
    Theme theme(nullptr);
    const auto edge = [&theme](const CustomAccentColor &accent, SidebarAppearance sidebar) {
        theme.setAppearance(accent, sidebar, InterfaceFontChoice::AvenirNext);
        return theme.sidebarSelectionEdge();
    };
    for (const SidebarAppearance light : {SidebarAppearance::Snow, SidebarAppearance::Glass}) {
        EXPECT_EQ(edge(white, light), theme.hairline());
        EXPECT_EQ(theme.sidebarBorder(), theme.hairline());
        EXPECT_EQ(edge(AccentPalette::cabin, light).alpha(), 0) << "its tint is seen";
        EXPECT_EQ(theme.sidebarBorder(), sidebarPalette(light, AccentPalette::cabin).border);
    }
    EXPECT_EQ(edge(white, SidebarAppearance::Fjord).alpha(), 0) << "white on a dark one is seen";
    EXPECT_EQ(theme.sidebarBorder(), sidebarPalette(SidebarAppearance::Fjord, white).border);
}

} // namespace

} // namespace quire
