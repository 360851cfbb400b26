// Pictures for tests that need one and do not care what is on it.
//
// Thread: any.

#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>

namespace quire::testing {

// One of a single colour, as PNG.
inline QByteArray pngPicture(const QSize &size = {20, 30})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return bytes;
}

} // namespace quire::testing
