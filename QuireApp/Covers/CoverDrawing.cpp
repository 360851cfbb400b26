#include "QuireApp/Covers/CoverDrawing.h"

#include <QLinearGradient>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace quire {

namespace CoverDrawing {

namespace {

constexpr double portraitLimit = 0.86; // width by height; at or above it, no spine

// The part of the picture that fills a frame of that shape, centred.
QRectF partThatFills(const QSizeF &picture, const QSizeF &frame)
{
    const QSizeF part = frame.scaled(picture, Qt::KeepAspectRatio);
    return {QPointF((picture.width() - part.width()) / 2, (picture.height() - part.height()) / 2), part};
}

QImage scaledTo(const QImage &picture, const QSize &pixels, const Request &request)
{
    const QImage part = request.contentMode == CoverContentMode::Fill
        ? picture.copy(partThatFills(picture.size(), request.frame).toAlignedRect())
        : picture;
    return part.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

QString Request::suffix() const
{
    return QStringLiteral("@%1x%2*%3/%4/%5/%6")
        .arg(frame.width())
        .arg(frame.height())
        .arg(devicePixelRatio)
        .arg(int(contentMode))
        .arg(int(spineMode))
        .arg(cornerRadius);
}

QRectF place(const QSizeF &picture, const QSizeF &frame, CoverContentMode mode)
{
    if (mode == CoverContentMode::Fill || picture.isEmpty()) {
        return {QPointF(), frame};
    }
    const QSizeF fitted = picture.scaled(frame, Qt::KeepAspectRatio);
    return {QPointF((frame.width() - fitted.width()) / 2, (frame.height() - fitted.height()) / 2), fitted};
}

bool showsSpine(const QSize &picture, CoverSpineMode mode)
{
    if (picture.height() <= 0) {
        return false;
    }
    switch (mode) {
    case CoverSpineMode::None:
        return false;
    case CoverSpineMode::Always:
        return true;
    case CoverSpineMode::PortraitOnly:
        return double(picture.width()) / picture.height() < portraitLimit;
    }
    Q_UNREACHABLE();
}

QImage draw(const QImage &picture, const Request &request)
{
    if (picture.isNull() || request.frame.isEmpty()) {
        return {};
    }
    const qreal ratio = request.devicePixelRatio;
    const QSizeF drawn = place(picture.size(), request.frame, request.contentMode).size();
    const QSize pixels = (drawn * ratio).toSize().expandedTo({1, 1});
    const QImage scaled = scaledTo(picture, pixels, request);

    QImage finished(pixels, QImage::Format_ARGB32_Premultiplied);
    finished.fill(Qt::transparent);
    QPainter painter(&finished);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF whole{QPointF(), QSizeF(pixels)};
    const qreal radius = request.cornerRadius * ratio;
    // A textured brush keeps the corners smooth, which a clip path does not.
    painter.setBrush(QBrush(scaled));
    painter.drawRoundedRect(whole, radius, radius);
    if (showsSpine(picture.size(), request.spineMode)) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop); // stays within the corners
        painter.scale(ratio, ratio);
        BookSpineOverlay::paint(painter, {QPointF(), QSizeF(pixels) / ratio});
    }
    return finished;
}

} // namespace CoverDrawing

namespace BookSpineOverlay {

qreal width(qreal drawnWidth)
{
    return std::clamp(0.075 * drawnWidth, 6.0, 11.0);
}

void paint(QPainter &painter, const QRectF &cover)
{
    constexpr qreal highlightWidth = 0.7;
    constexpr qreal cornerRadius = 4;
    const auto black = [](double opacity) { return QColor::fromRgbF(0, 0, 0, float(opacity)); };

    const QRectF spine(cover.topLeft(), QSizeF(width(cover.width()), cover.height()));
    QLinearGradient gradient(spine.topLeft(), spine.topRight());
    gradient.setColorAt(0, black(0.38));
    gradient.setColorAt(0.25, black(0.15));
    gradient.setColorAt(0.5, black(0.2));
    gradient.setColorAt(0.75, black(0.05));
    gradient.setColorAt(1, Qt::transparent);

    QPainterPath shape; // rounded at the left alone
    shape.setFillRule(Qt::WindingFill);
    shape.addRoundedRect(spine, cornerRadius, cornerRadius);
    shape.addRect(spine.adjusted(cornerRadius, 0, 0, 0));
    painter.setPen(Qt::NoPen);
    painter.fillPath(shape, gradient);
    painter.fillRect(QRectF(spine.right() - highlightWidth, spine.top(), highlightWidth, spine.height()),
        QColor::fromRgbF(1, 1, 1, 0.22F));
}

} // namespace BookSpineOverlay

} // namespace quire
