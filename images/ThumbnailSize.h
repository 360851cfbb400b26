// How large a picture is kept: at most 640 pixels on the long side, and never
// enlarged.
//
// Thread: pure, any thread.

#pragma once

#include <QImage>
#include <QSize>

#include <algorithm>

namespace quire::ThumbnailSize {

inline constexpr int longestSide = 640; // pixels

inline QSize of(const QSize &picture)
{
    if (std::max(picture.width(), picture.height()) <= longestSide) {
        return picture;
    }
    // A page of one by ten thousand pixels keeps a pixel of width.
    return picture.scaled(longestSide, longestSide, Qt::KeepAspectRatio).expandedTo({1, 1});
}

inline QImage reduced(const QImage &picture)
{
    const QSize size = of(picture.size());
    return size == picture.size() ? picture : picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace quire::ThumbnailSize
