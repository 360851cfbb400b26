#include "QuireApp/QuireApp/LaunchSurfaces.h"

#include "QuireApp/Theme/Theme.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>

#include <cmath>

namespace quire {

namespace {

// Where the views will stand.
constexpr qreal menuBarHeight = 30;
constexpr qreal sidebarWidth = 218;

} // namespace

LaunchSurfaces::LaunchSurfaces(const Theme &theme, QQuickItem &window)
    : QQuickItem(&window)
    , m_theme(theme)
{
    setFlag(ItemHasContents);
    connect(&window, &QQuickItem::widthChanged, this, [this, &window] { follow(window); });
    connect(&window, &QQuickItem::heightChanged, this, [this, &window] { follow(window); });
    follow(window);
}

void LaunchSurfaces::follow(const QQuickItem &window)
{
    setSize(window.size());
    update();
}

QSGNode *LaunchSurfaces::updatePaintNode(QSGNode *node, UpdatePaintNodeData *)
{
    delete node;
    const QRectF sidebar(0, menuBarHeight, sidebarWidth, std::max(0.0, height() - menuBarHeight));
    auto *surfaces = new QSGNode;
    surfaces->appendChildNode(surface({0, menuBarHeight - 1, width(), 1}, m_theme.hairline()));
    surfaces->appendChildNode(surface(sidebar, m_theme.sidebarBase()));
    if (!sidebar.isEmpty()) {
        surfaces->appendChildNode(gradient(sidebar, m_theme.sidebarGradientTop(), m_theme.sidebarGradientBottom()));
    }
    surfaces->appendChildNode(
        surface({sidebar.right() - 1, sidebar.top(), 1, sidebar.height()}, m_theme.sidebarBorder()));
    return surfaces;
}

QSGNode *LaunchSurfaces::surface(const QRectF &place, const QColor &color) const
{
    auto *node = window()->createRectangleNode();
    node->setRect(place);
    node->setColor(color);
    node->setFlag(QSGNode::OwnedByParent);
    return node;
}

QSGNode *LaunchSurfaces::gradient(const QRectF &place, const QColor &top, const QColor &bottom) const
{
    QImage column(1, int(std::ceil(place.height())), QImage::Format_ARGB32_Premultiplied);
    column.fill(Qt::transparent);
    QLinearGradient stops(0, 0, 0, column.height());
    stops.setColorAt(0, top);
    stops.setColorAt(1, bottom);
    QPainter(&column).fillRect(column.rect(), stops);

    auto *node = window()->createImageNode();
    node->setOwnsTexture(true);
    node->setTexture(window()->createTextureFromImage(column));
    node->setRect(place);
    node->setFlag(QSGNode::OwnedByParent);
    return node;
}

} // namespace quire
