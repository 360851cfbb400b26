#include "QuireApp/Accessibility/ButtonAccessible.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace quire {

namespace {

// What a view says with Accessible is an object below the item.
QObject *toldOf(const QQuickItem &item)
{
    const QObjectList &below = item.children();
    const auto found = std::find_if(
        below.begin(), below.end(), [](const QObject *child) { return child->inherits("QQuickAccessibleAttached"); });
    return found == below.end() ? nullptr : *found;
}

void tellWhenItCanBeUsed(QQuickItem &button)
{
    QObject::connect(&button, &QQuickItem::enabledChanged, &button, [button = &button] {
        QAccessible::State changed;
        changed.disabled = true;
        QAccessibleStateChangeEvent event(button, changed);
        QAccessible::updateAccessibility(&event);
    });
}

// Asked for each class of an object, from its own to the most general one.
QAccessibleInterface *makeAccessible(const QString &className, QObject *object)
{
    if (className != u"QQuickAbstractButton") {
        return nullptr;
    }
    auto *button = qobject_cast<QQuickItem *>(object);
    QObject *told = button ? toldOf(*button) : nullptr;
    if (!told || told->property("ignored").toBool()) {
        return nullptr;
    }
    tellWhenItCanBeUsed(*button);
    return new ButtonAccessible(*button, *told);
}

} // namespace

void ButtonAccessible::install()
{
    QAccessible::removeFactory(makeAccessible);
    QAccessible::installFactory(makeAccessible);
}

ButtonAccessible::ButtonAccessible(QQuickItem &button, QObject &told)
    : QAccessibleObject(&button)
    , m_told(&told)
{
}

QQuickItem *ButtonAccessible::button() const
{
    return static_cast<QQuickItem *>(object());
}

bool ButtonAccessible::isTold(const char *state) const
{
    return m_told && m_told->property(state).toBool();
}

QVariant ButtonAccessible::toldOr(const char *own, const char *told) const
{
    const QVariant value = button()->property(own);
    return value.isValid() ? value : m_told->property(told);
}

void *ButtonAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

QWindow *ButtonAccessible::window() const
{
    return button()->window();
}

QAccessibleInterface *ButtonAccessible::parent() const
{
    QQuickWindow *window = button()->window();
    for (QQuickItem *above = button()->parentItem(); above; above = above->parentItem()) {
        if (window && above == window->contentItem()) {
            return QAccessible::queryAccessibleInterface(window);
        }
        if (QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(above)) {
            return accessible;
        }
    }
    return nullptr;
}

QAccessibleInterface *ButtonAccessible::child(int) const
{
    return nullptr;
}

int ButtonAccessible::childCount() const
{
    return 0;
}

int ButtonAccessible::indexOfChild(const QAccessibleInterface *) const
{
    return -1;
}

QString ButtonAccessible::text(QAccessible::Text kind) const
{
    if (!m_told) {
        return {};
    }
    switch (kind) {
    case QAccessible::Name:
        return m_told->property("name").toString();
    case QAccessible::Description:
        return m_told->property("description").toString();
    default:
        return {};
    }
}

QRect ButtonAccessible::rect() const
{
    const QQuickItem *item = button();
    if (!item->window() || !item->isVisible()) {
        return {};
    }
    const QRect inWindow = item->mapRectToScene({0, 0, item->width(), item->height()}).toRect();
    return {item->window()->mapToGlobal(inWindow.topLeft()), inWindow.size()};
}

QAccessible::Role ButtonAccessible::role() const
{
    return m_told ? QAccessible::Role(toldOr("accessibleRole", "role").toInt()) : QAccessible::Button;
}

QAccessible::State ButtonAccessible::state() const
{
    const QQuickItem *item = button();
    const QQuickWindow *window = item->window();
    QAccessible::State state;
    state.checkable = isTold("checkable") || button()->property("accessibleChecked").isValid();
    state.checked = m_told && toldOr("accessibleChecked", "checked").toBool();
    state.checkStateMixed = isTold("checkStateMixed");
    state.selectable = isTold("selectable");
    state.selected = isTold("selected");
    state.pressed = isTold("pressed");
    state.defaultButton = isTold("defaultButton");
    state.disabled = !item->isEnabled();
    state.focusable = item->isEnabled() && (isTold("focusable") || item->activeFocusOnTab());
    state.focused = item->hasActiveFocus();
    state.invisible = !window || !window->isVisible() || !item->isVisible() || qFuzzyIsNull(item->opacity());
    state.offscreen = window && !QRect(window->mapToGlobal(QPoint()), window->size()).intersects(rect());
    return state;
}

QStringList ButtonAccessible::actionNames() const
{
    QStringList names{role() == QAccessible::CheckBox ? toggleAction() : pressAction()};
    if (state().focusable) {
        names.append(setFocusAction());
    }
    return names;
}

void ButtonAccessible::doAction(const QString &name)
{
    if (!m_told || !button()->isEnabled()) {
        return;
    }
    if (name == pressAction()) {
        QMetaObject::invokeMethod(m_told, "pressAction");
    } else if (name == toggleAction()) {
        QMetaObject::invokeMethod(m_told, "toggleAction");
    } else if (name == setFocusAction()) {
        button()->forceActiveFocus(Qt::TabFocusReason);
    }
}

QStringList ButtonAccessible::keyBindingsForAction(const QString &) const
{
    return {};
}

} // namespace quire
