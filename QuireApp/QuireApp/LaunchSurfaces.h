// LaunchSurfaces is what the main window shows until its views are made: the
// surfaces of the menu bar and of the sidebar, with nothing on them. It needs no
// view and no font, so that it is there with the very first frame.
//
// Thread: interface thread; the scene graph builds its nodes while the interface
// thread waits for it.

#pragma once

#include <QQuickItem>

namespace quire {

class Theme;

class LaunchSurfaces final : public QQuickItem
{
    Q_OBJECT

public:
    // Fills `window` and follows its size. theme: outlives it.
    LaunchSurfaces(const Theme &theme, QQuickItem &window);

protected:
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

private:
    void follow(const QQuickItem &window);
    QSGNode *surface(const QRectF &place, const QColor &color) const;
    QSGNode *gradient(const QRectF &place, const QColor &top, const QColor &bottom) const;

    const Theme &m_theme;
};

} // namespace quire
