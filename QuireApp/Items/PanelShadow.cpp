#include "QuireApp/Items/PanelShadow.h"

#include <QCache>
#include <QPainter>
#include <QQuickWindow>
#include <QSGNinePatchNode>

#include <cmath>
#include <vector>

namespace quire {

namespace {

// One running mean over a line; three of them come close to a Gaussian.
void blurLine(uchar *line, int count, qsizetype stride, int reach, std::vector<uchar> &copy)
{
    copy.resize(size_t(count));
    for (int i = 0; i < count; ++i) {
        copy[size_t(i)] = line[i * stride];
    }
    const int span = 2 * reach + 1;
    const auto at = [&copy, count](int i) { return i < 0 || i >= count ? 0 : int(copy[size_t(i)]); };
    int sum = 0;
    for (int i = -reach; i <= reach; ++i) {
        sum += at(i);
    }
    for (int i = 0; i < count; ++i) {
        line[i * stride] = uchar(sum / span);
        sum += at(i + reach + 1) - at(i - reach);
    }
}

void blurAlpha(QImage &alpha, int blur)
{
    const int reach = std::max(1, blur / 3);
    std::vector<uchar> copy;
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < alpha.height(); ++y) {
            blurLine(alpha.scanLine(y), alpha.width(), 1, reach, copy);
        }
        for (int x = 0; x < alpha.width(); ++x) {
            blurLine(alpha.bits() + x, alpha.height(), alpha.bytesPerLine(), reach, copy);
        }
    }
}

} // namespace

int shadowMargin(int radius, int blur)
{
    return 2 * blur + radius;
}

QImage shadowPicture(int radius, int blur, int offset, qreal strength)
{
    const int side = 2 * shadowMargin(radius, blur) + 1;
    QImage alpha(side, side, QImage::Format_Alpha8);
    alpha.fill(0);
    {
        QPainter painter(&alpha);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawRoundedRect(QRectF(blur, blur, side - 2 * blur, side - 2 * blur), radius, radius);
    }
    blurAlpha(alpha, blur);
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < side; ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < side; ++x) {
            line[x] = qRgba(0, 0, 0, int(std::lround(alpha.constScanLine(y)[x] * strength)));
        }
    }
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    const QRectF panel(blur, blur - offset, side - 2 * blur, side - 2 * blur);
    painter.drawRoundedRect(panel.adjusted(1, 1, -1, -1), radius, radius); // no seam at the panel's smooth edge
    painter.end();
    return picture;
}

PanelShadow::PanelShadow(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &PanelShadow::shadowChanged, this, [this] {
        m_textureStale = true;
        update();
    });
}

QSGNode *PanelShadow::updatePaintNode(QSGNode *node, UpdatePaintNodeData *)
{
    auto *patch = static_cast<QSGNinePatchNode *>(node);
    if (width() <= 0 || height() <= 0) {
        delete patch;
        return nullptr;
    }
    const qreal ratio = window()->effectiveDevicePixelRatio();
    const int radius = int(std::lround(m_radius * ratio));
    const int blur = int(std::lround(m_blur * ratio));
    const int offset = int(std::lround(m_offset * ratio));
    if (!patch) {
        patch = window()->createNinePatchNode();
        m_textureStale = true;
    }
    if (m_textureStale) {
        patch->setTexture(window()->createTextureFromImage(shadowPicture(radius, blur, offset, m_strength)));
        m_textureStale = false;
    }
    const qreal margin = shadowMargin(radius, blur);
    patch->setBounds({-m_blur, m_offset - m_blur, width() + 2 * m_blur, height() + 2 * m_blur});
    patch->setDevicePixelRatio(ratio);
    patch->setPadding(margin, margin, margin, margin);
    patch->update();
    return patch;
}

void PanelShadow::itemChange(ItemChange change, const ItemChangeData &value)
{
    if (change == ItemDevicePixelRatioHasChanged) {
        m_textureStale = true;
        update();
    }
    QQuickItem::itemChange(change, value);
}

void PanelShadow::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    update();
    QQuickItem::geometryChange(newGeometry, oldGeometry);
}

} // namespace quire
