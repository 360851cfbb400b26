#include "QuireApp/Items/PictureItem.h"

#include <QQuickWindow>
#include <QSGImageNode>

namespace quire {

PictureItem::PictureItem(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void PictureItem::showPicture(const QImage &picture, const QRectF &place)
{
    if (picture.cacheKey() != m_picture.cacheKey()) {
        m_picture = picture;
        m_pictureChanged = true;
    }
    m_place = place;
    update();
}

qreal PictureItem::devicePixelRatio() const
{
    return window() ? window()->effectiveDevicePixelRatio() : 1;
}

QSGNode *PictureItem::updatePaintNode(QSGNode *node, UpdatePaintNodeData *)
{
    auto *imageNode = static_cast<QSGImageNode *>(node);
    if (m_picture.isNull() || m_place.isEmpty()) {
        delete imageNode;
        m_pictureChanged = true; // a later node needs the texture anew
        return nullptr;
    }
    if (!imageNode) {
        imageNode = window()->createImageNode();
        imageNode->setOwnsTexture(true);
        imageNode->setFiltering(QSGTexture::Linear);
        m_pictureChanged = true;
    }
    if (m_pictureChanged) {
        imageNode->setTexture(window()->createTextureFromImage(m_picture, QQuickWindow::TextureCanUseAtlas));
        m_pictureChanged = false;
    }
    imageNode->setRect(m_place);
    return imageNode;
}

void PictureItem::itemChange(ItemChange change, const ItemChangeData &value)
{
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged) {
        polish();
    }
    QQuickItem::itemChange(change, value);
}

void PictureItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    if (newGeometry.size() != oldGeometry.size()) {
        polish();
    }
    QQuickItem::geometryChange(newGeometry, oldGeometry);
}

} // namespace quire
