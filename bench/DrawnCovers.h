// Covers for the benchmarks: drawn, with soft and sharp parts as a printed one
// has, and no two alike.
//
// Thread: any.

#pragma once

#include <QByteArray>
#include <QImage>

namespace quire {

QImage drawnCover(int number, QSize size);

// In the format of that name, as QImage knows it.
QByteArray encoded(const QImage &image, const char *format);

} // namespace quire
