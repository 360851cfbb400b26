// What a screen reader is told of a button. The toolkit (Qt 6.4) tells of every one
// that it can be used; here those that cannot say so. It also puts its own role and
// its own `checked` over those that a view says with Accessible: a control that is no
// mere button says them with its properties accessibleRole (a value of
// Accessible.role) and accessibleChecked. All else is told as Accessible has it.
//
// Thread: interface thread.

#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleObject>
#include <QPointer>

class QQuickItem;

namespace quire {

class ButtonAccessible final : public QAccessibleObject, public QAccessibleActionInterface
{
public:
    // From here on for every button that no screen reader has asked for yet: before
    // there are views, any number of times.
    static void install();

    // button: any control that can be pressed. told: what its view says of it, with
    // the properties and signals of Accessible; one object with the button.
    ButtonAccessible(QQuickItem &button, QObject &told);

    void *interface_cast(QAccessible::InterfaceType type) override;
    QWindow *window() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int index) const override; // none: a button is one thing
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;

    QStringList actionNames() const override;
    void doAction(const QString &name) override; // nothing while it cannot be used
    QStringList keyBindingsForAction(const QString &name) const override;

private:
    QQuickItem *button() const;
    bool isTold(const char *state) const;
    QVariant toldOr(const char *own, const char *told) const; // the button's own property first

    QPointer<QObject> m_told;
};

} // namespace quire
