#include "QuireApp/Items/ColorWheelPicture.h"

#include "QuireApp/Theme/HSVColor.h"

#include <algorithm>
#include <cmath>

namespace quire {

ColorWheelPicture::ColorWheelPicture(QQuickItem *parent)
    : PictureItem(parent)
{
}

void ColorWheelPicture::updatePolish()
{
    const qreal ratio = devicePixelRatio();
    const qreal side = std::min(width(), height());
    const int pixels = int(std::lround(side * ratio));
    if (m_wheel.width() != pixels) {
        m_wheel = colorWheel(pixels);
    }
    showPicture(m_wheel, {(width() - side) / 2, (height() - side) / 2, side, side});
}

QImage colorWheel(int pixels)
{
    if (pixels <= 0) {
        return {};
    }
    constexpr HSVColor white{0, 0, 1};
    const double radius = pixels / 2.0;
    const auto eightBit = [](double share) { return int(std::lround(share * 255)); };
    QImage wheel(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < pixels; ++y) {
        auto *line = reinterpret_cast<QRgb *>(wheel.scanLine(y));
        for (int x = 0; x < pixels; ++x) {
            const QPointF place((x + 0.5 - radius) / radius, (y + 0.5 - radius) / radius);
            const double fromRim = radius - std::hypot(place.x(), place.y()) * radius;
            const double cover = std::clamp(fromRim + 0.5, 0.0, 1.0);
            const CustomAccentColor color = white.movedTo(place).rgb();
            line[x] = qPremultiply(
                qRgba(eightBit(color.red), eightBit(color.green), eightBit(color.blue), eightBit(cover)));
        }
    }
    return wheel;
}

} // namespace quire
