// The base of everything that is painted as one picture made by the program:
// symbols and covers. Draws through an image node, which the software renderer
// and the GPU show alike.
//
// Thread: interface thread; the scene graph takes the picture while the
// interface thread waits for it.

#pragma once

#include <QImage>
#include <QQuickItem>
#include <QRectF>
#include <QtQml/qqmlregistration.h>

namespace quire {

class PictureItem : public QQuickItem
{
    Q_OBJECT
    QML_ANONYMOUS

protected:
    explicit PictureItem(QQuickItem *parent = nullptr);

    // picture: null for nothing. place: where it is drawn, in the item's
    // coordinates.
    void showPicture(const QImage &picture, const QRectF &place);

    // Physical pixels a logical one, 1 without a window.
    qreal devicePixelRatio() const;

    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    QImage m_picture;
    QRectF m_place;
    bool m_pictureChanged = false;
};

} // namespace quire
