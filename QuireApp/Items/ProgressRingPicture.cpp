#include "QuireApp/Items/ProgressRingPicture.h"

#include <QPainter>

namespace quire {

ProgressRingPicture::ProgressRingPicture(QQuickItem *parent)
    : PictureItem(parent)
{
    connect(this, &ProgressRingPicture::colorChanged, this, &QQuickItem::polish);
}

void ProgressRingPicture::updatePolish()
{
    constexpr int fullCircle = 360 * 16; // the painter's sixteenths of a degree
    const qreal ratio = devicePixelRatio();
    QImage picture((size() * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (!picture.isNull()) {
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(ratio, ratio);
        const qreal thickness = width() / 8;
        const QRectF ring = QRectF(QPointF(), size()).adjusted(thickness, thickness, -thickness, -thickness);
        QColor trough = m_color;
        trough.setAlphaF(0.18F);
        painter.setPen(QPen(trough, thickness));
        painter.drawEllipse(ring);
        painter.setPen(QPen(m_color, thickness, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(ring, 0, fullCircle * 3 / 10);
    }
    showPicture(picture, {QPointF(), size()});
}

} // namespace quire
