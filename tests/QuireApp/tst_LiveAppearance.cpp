#include "QuireApp/Theme/Theme.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlProperty>

#include <memory>

namespace quire {

namespace {

class LiveAppearance : public ::testing::TestWithParam<const char *>
{
};

// A colour that a view asked for once would stay behind.
TEST_P(LiveAppearance, TheEdgeFollowsTheAccentThatIsPicked)
{
    Theme theme(nullptr);
    QQmlEngine engine;
    Theme::serve(engine, theme);
    engine.addImportPath(QStringLiteral(":/qt/qml"));
    QQmlComponent component(&engine);
    component.setData(QByteArray("import QtQuick\nimport Quire\n") + GetParam(), QUrl());
    const std::unique_ptr<QObject> view(component.create());
    ASSERT_TRUE(view) << qPrintable(component.errorString());
    const auto edge = [&] { return QQmlProperty(view.get(), QStringLiteral("border.color")).read().value<QColor>(); };
    const QQmlProperty edgeWidth(view.get(), QStringLiteral("border.width"));

    const QColor first = edge();
    theme.setAppearance({0.8, 0.1, 0.1}, SidebarAppearance::Snow, InterfaceFontChoice::AvenirNext);
    const QColor second = edge();
    EXPECT_NE(second, first);
    theme.setAppearance({1, 1, 1}, SidebarAppearance::Snow, InterfaceFontChoice::AvenirNext);
    EXPECT_NE(edge(), second);
    EXPECT_GT(edge().alphaF(), 0.05) << "and is there with a white one";
    EXPECT_EQ(edgeWidth.read().toReal(), 1);
}

INSTANTIATE_TEST_SUITE_P(OfEachFrame, LiveAppearance,
    ::testing::Values("InsightPanel {}", "SettingsSection { title: 'a'; systemImage: 'star' }",
        "InsightMetricCard { title: 'a'; value: '1'; systemImage: 'star' }", "CoverPlaceholder {}"));

} // namespace

} // namespace quire
