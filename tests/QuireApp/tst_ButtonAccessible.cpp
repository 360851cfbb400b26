#include "QuireApp/Accessibility/ButtonAccessible.h"
#include "QuireApp/Theme/Theme.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace quire {

namespace {

class ButtonAccessibleTest : public ::testing::Test
{
protected:
    ButtonAccessibleTest()
    {
        ButtonAccessible::install();
        Theme::serve(engine, theme);
        engine.addImportPath(QStringLiteral(":/qt/qml"));
        window.resize(300, 200);
    }

    // The control of that QML, in the window.
    QQuickItem &make(const QByteArray &control)
    {
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nimport Quire\n" + control, QUrl());
        item.reset(qobject_cast<QQuickItem *>(component.create()));
        EXPECT_TRUE(item) << qPrintable(component.errorString());
        item->setParentItem(window.contentItem());
        return *item;
    }

    static QAccessibleInterface &accessible(QObject &object)
    {
        QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&object);
        EXPECT_NE(interface, nullptr);
        return *interface;
    }

    Theme theme{nullptr};
    QQmlEngine engine;
    QQuickWindow window;
    std::unique_ptr<QQuickItem> item;
};

constexpr auto counter = "BorderedButton { property int presses: 0; text: 'Sync'; onClicked: ++presses }";

TEST_F(ButtonAccessibleTest, WhatCannotBeUsedSaysSo)
{
    QQuickItem &button = make(counter);
    EXPECT_FALSE(accessible(button).state().disabled);
    EXPECT_TRUE(accessible(button).state().focusable);
    button.setEnabled(false);
    EXPECT_TRUE(accessible(button).state().disabled);
    EXPECT_FALSE(accessible(button).state().focusable);
    button.setEnabled(true);
    EXPECT_FALSE(accessible(button).state().disabled);
}

TEST_F(ButtonAccessibleTest, TheRestIsAsTheViewTellsIt)
{
    QQuickItem &button
        = make("BorderedButton { text: 'Folder'; Accessible.description: 'Library Folder'; x: 20; y: 30 }");
    const QAccessibleInterface &told = accessible(button);
    EXPECT_EQ(told.role(), QAccessible::Button);
    EXPECT_EQ(told.text(QAccessible::Name), QStringLiteral("Folder"));
    EXPECT_EQ(told.text(QAccessible::Description), QStringLiteral("Library Folder"));
    EXPECT_EQ(told.object(), &button);
    EXPECT_EQ(told.childCount(), 0);
    EXPECT_EQ(told.parent(), QAccessible::queryAccessibleInterface(&window));
    EXPECT_EQ(told.rect().topLeft(), window.mapToGlobal(QPoint(20, 30)));
    EXPECT_EQ(told.rect().size(), QSize(qRound(button.width()), 28));
}

TEST_F(ButtonAccessibleTest, APressIsTheViewsPressAndNoneWhileItCannotBeUsed)
{
    QQuickItem &button = make(counter);
    QAccessibleActionInterface *actions = accessible(button).actionInterface();
    ASSERT_NE(actions, nullptr);
    EXPECT_EQ(actions->actionNames(),
        (QStringList{QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::setFocusAction()}));
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(button.property("presses").toInt(), 1);
    button.setEnabled(false);
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(button.property("presses").toInt(), 1);
}

TEST_F(ButtonAccessibleTest, ACheckBoxTellsItsStateAndTakesItsToggle)
{
    QQuickItem &box = make("QuireCheckBox { text: 'Books' }");
    EXPECT_EQ(accessible(box).role(), QAccessible::CheckBox);
    EXPECT_TRUE(accessible(box).state().checkable);
    EXPECT_FALSE(accessible(box).state().checked);
    accessible(box).actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(accessible(box).state().checked);
    EXPECT_TRUE(box.property("checked").toBool());
}

TEST_F(ButtonAccessibleTest, ASelectedButtonTellsSo)
{
    QQuickItem &button
        = make("SidebarNavigationButton { title: 'Books'; systemImage: 'books.vertical'; selected: true }");
    EXPECT_TRUE(accessible(button).state().selectable);
    EXPECT_TRUE(accessible(button).state().selected);
}

TEST_F(ButtonAccessibleTest, ALinkIsALink)
{
    QQuickItem &link = make("LinkText { property int presses: 0; text: 'Library Page'; onClicked: ++presses }");
    EXPECT_EQ(accessible(link).role(), QAccessible::Link);
    accessible(link).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(link.property("presses").toInt(), 1);
}

TEST_F(ButtonAccessibleTest, OneOfSeveralColoursIsARadioButtonThatTellsItsState)
{
    QQuickItem &swatch = make("AccentSwatch { text: 'Teal'; color: 'teal'; selected: true }");
    QAccessible::setActive(true); // here the toolkit puts its own over what views say
    EXPECT_EQ(accessible(swatch).role(), QAccessible::RadioButton);
    EXPECT_TRUE(accessible(swatch).state().checkable);
    EXPECT_TRUE(accessible(swatch).state().checked);
}

TEST_F(ButtonAccessibleTest, ItsPanelKnowsItAmongItsChildren)
{
    QQuickItem &panel = make("Item { Accessible.role: Accessible.Grouping; Accessible.name: 'Panel'\n"
                             "QuireText { text: 'Words' }\n"
                             "Item { ProminentButton { text: 'Save' } } }");
    QAccessibleInterface &told = accessible(panel);
    ASSERT_EQ(told.childCount(), 2);
    QAccessibleInterface *save = told.child(1);
    ASSERT_NE(save, nullptr);
    EXPECT_EQ(save->text(QAccessible::Name), QStringLiteral("Save"));
    EXPECT_EQ(save->parent(), &told);
    EXPECT_EQ(told.indexOfChild(save), 1);
}

TEST_F(ButtonAccessibleTest, WhatIsNoButtonIsLeftToTheToolkit)
{
    QQuickItem &words = make("QuireText { text: 'Words' }");
    EXPECT_EQ(accessible(words).role(), QAccessible::StaticText);
    EXPECT_EQ(dynamic_cast<ButtonAccessible *>(&accessible(words)), nullptr);
}

} // namespace

} // namespace quire
