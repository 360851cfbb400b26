// The soft shadow of a rounded rectangle that fills the item, drawn outside it:
// a nine-patch picture, since effects draw nothing on the software renderer.
//
// Thread: interface thread.

#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace quire {

class PanelShadow : public QQuickItem
{
    Q_OBJECT
    QML_NAMED_ELEMENT(PanelShadow)

    // All in logical pixels; opacity of black from 0 to 1.
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY shadowChanged)
    Q_PROPERTY(qreal blur MEMBER m_blur NOTIFY shadowChanged)
    Q_PROPERTY(qreal offset MEMBER m_offset NOTIFY shadowChanged)
    Q_PROPERTY(qreal strength MEMBER m_strength NOTIFY shadowChanged)

public:
    explicit PanelShadow(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void shadowChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    qreal m_radius = 0;
    qreal m_blur = 30;
    qreal m_offset = 12; // downwards
    qreal m_strength = 0.30;
    bool m_textureStale = true;
    QSize m_drawnPanel;
};

// The panel whose shadow is drawn for one of that size, in logical pixels: no
// larger than its corners need, since the middle is stretched, and no larger
// than the panel itself, since nothing is shrunk.
QSize shadowPanel(const QSize &panel, int radius, int blur);

// The picture behind it, in logical pixels: the rounded rectangle `panel` with
// `blur` on each side, blurred by that, for a panel that stands `offset` above
// it. What the panel covers is left out, so that nothing dark shows through one
// with holes.
QImage shadowPicture(const QSize &panel, int radius, int blur, int offset, qreal strength);

} // namespace quire
