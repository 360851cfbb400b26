#include "QuireApp/Items/PanelShadow.h"

#include <QMutex>
#include <QPainter>
#include <QQuickWindow>
#include <QSGNinePatchNode>

#include <cmath>
#include <map>
#include <tuple>
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

// The cards of a wall cast the same shadow, each. Asked by the render threads.
QImage sharedShadowPicture(const QSize &panel, int radius, int blur, int offset, qreal strength)
{
    using Key = std::tuple<int, int, int, int, int, qreal>;
    static QMutex mutex;
    static std::map<Key, QImage> pictures;
    constexpr std::size_t most = 32; // sizes of panels lower than their corners
    const Key key{panel.width(), panel.height(), radius, blur, offset, strength};
    const QMutexLocker locker(&mutex);
    if (const auto known = pictures.find(key); known != pictures.end()) {
        return known->second;
    }
    if (pictures.size() == most) {
        pictures.clear();
    }
    return pictures[key] = shadowPicture(panel, radius, blur, offset, strength);
}

} // namespace

QSize shadowPanel(const QSize &panel, int radius, int blur)
{
    const int corners = 2 * (radius + blur) + 1;
    return panel.boundedTo({corners, corners});
}

QImage shadowPicture(const QSize &panel, int radius, int blur, int offset, qreal strength)
{
    const QSize whole = panel + QSize(2 * blur, 2 * blur);
    const QRectF place(QPointF(blur, blur), QSizeF(panel));
    QImage alpha(whole, QImage::Format_Alpha8);
    alpha.fill(0);
    {
        QPainter painter(&alpha);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawRoundedRect(place, radius, radius);
    }
    blurAlpha(alpha, blur);
    QImage picture(whole, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < whole.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < whole.width(); ++x) {
            line[x] = qRgba(0, 0, 0, int(std::lround(alpha.constScanLine(y)[x] * strength)));
        }
    }
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    const QRectF covered = place.translated(0, -offset);
    painter.drawRoundedRect(covered.adjusted(1, 1, -1, -1), radius, radius); // no seam at the panel's smooth edge
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
    // In logical pixels on every screen: what is blurred loses nothing by being
    // enlarged, and the toolkit's nine-patch goes wrong with a pixel ratio.
    const int radius = int(std::lround(m_radius));
    const int blur = int(std::lround(m_blur));
    const int offset = int(std::lround(m_offset));
    const QSize panel = shadowPanel(size().toSize().expandedTo({1, 1}), radius, blur);
    if (!patch) {
        patch = window()->createNinePatchNode();
        m_textureStale = true;
    }
    if (m_textureStale || panel != m_drawnPanel) {
        patch->setTexture(
            window()->createTextureFromImage(sharedShadowPicture(panel, radius, blur, offset, m_strength)));
        m_textureStale = false;
        m_drawnPanel = panel;
    }
    // One pixel in the middle is stretched.
    const int left = blur + (panel.width() - 1) / 2;
    const int top = blur + (panel.height() - 1) / 2;
    patch->setBounds({-m_blur, m_offset - m_blur, width() + 2 * m_blur, height() + 2 * m_blur});
    patch->setDevicePixelRatio(1);
    patch->setPadding(left, top, panel.width() + 2 * blur - 1 - left, panel.height() + 2 * blur - 1 - top);
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
