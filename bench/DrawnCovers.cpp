#include "bench/DrawnCovers.h"

#include <QBuffer>
#include <QPainter>

namespace quire {

QImage drawnCover(int number, QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, size.width(), size.height());
    sky.setColorAt(0, QColor::fromHsv(number * 37 % 360, 160, 230));
    sky.setColorAt(1, QColor::fromHsv(number * 91 % 360, 200, 90));
    painter.fillRect(image.rect(), sky);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int mark = 0; mark < 300; ++mark) {
        painter.setBrush(QColor::fromHsv((mark * 53 + number * 7) % 360, 120, 200, 120));
        painter.drawEllipse(
            QPointF(mark * 997 % size.width(), mark * 613 % size.height()), 8 + mark % 40, 5 + mark % 23);
    }
    return image;
}

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, qstrcmp(format, "png") == 0 ? -1 : 85);
    return bytes;
}

} // namespace quire
