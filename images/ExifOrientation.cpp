#include "images/ExifOrientation.h"

#include <QtEndian>
#include <QTransform>

namespace quire::ExifOrientation {

namespace {

constexpr int asItLies = 1;
constexpr int lastOrientation = 8;

template<typename Number>
Number read(QByteArrayView data, qint64 at, bool isLittleEndian)
{
    if (at < 0 || at + qint64(sizeof(Number)) > data.size()) {
        return 0;
    }
    const char *source = data.data() + at;
    return isLittleEndian ? qFromLittleEndian<Number>(source) : qFromBigEndian<Number>(source);
}

// Of a TIFF structure, where EXIF keeps its fields.
int orientationOf(QByteArrayView exif)
{
    constexpr quint16 orientationTag = 0x0112;
    constexpr qint64 fieldSize = 12;
    if (exif.startsWith("Exif\0\0")) { // some writers keep what only a JPEG needs
        exif = exif.sliced(6);
    }
    const bool isLittleEndian = exif.startsWith("II");
    const qint64 directory = read<quint32>(exif, 4, isLittleEndian);
    const int fields = read<quint16>(exif, directory, isLittleEndian);
    for (int number = 0; number < fields; ++number) {
        const qint64 field = directory + 2 + number * fieldSize;
        if (read<quint16>(exif, field, isLittleEndian) == orientationTag) {
            const int value = read<quint16>(exif, field + 8, isLittleEndian);
            return value >= asItLies && value <= lastOrientation ? value : asItLies;
        }
    }
    return asItLies;
}

// The content of the first chunk of that name. Chunks begin at `start`: in a
// RIFF with name and little-endian length, padded to even lengths; in a PNG
// with big-endian length and name, followed by a checksum.
QByteArrayView riffChunk(QByteArrayView bytes, QByteArrayView name)
{
    constexpr qint64 start = 12;
    constexpr qint64 head = 8;
    for (qint64 at = start; at + head <= bytes.size();) {
        const qint64 length = read<quint32>(bytes, at + 4, true);
        if (at + head + length > bytes.size()) {
            return {};
        }
        if (bytes.sliced(at, 4) == name) {
            return bytes.sliced(at + head, length);
        }
        at += head + length + length % 2;
    }
    return {};
}

QByteArrayView pngChunk(QByteArrayView bytes, QByteArrayView name)
{
    constexpr qint64 start = 8;
    constexpr qint64 head = 8;
    constexpr qint64 checksum = 4;
    for (qint64 at = start; at + head <= bytes.size();) {
        const qint64 length = read<quint32>(bytes, at, false);
        if (at + head + length > bytes.size()) {
            return {};
        }
        if (bytes.sliced(at + 4, 4) == name) {
            return bytes.sliced(at + head, length);
        }
        at += head + length + checksum;
    }
    return {};
}

} // namespace

int of(const QByteArray &bytes, CoverFormat format)
{
    switch (format) {
    case CoverFormat::WebP:
        return orientationOf(riffChunk(bytes, "EXIF"));
    case CoverFormat::Png:
        return orientationOf(pngChunk(bytes, "eXIf"));
    default:
        return asItLies;
    }
}

QImage applied(const QImage &picture, int orientation)
{
    const bool isMirrored = orientation == 2 || orientation == 4 || orientation == 5 || orientation == 7;
    QImage result = isMirrored ? picture.mirrored(true, false) : picture;
    switch (orientation) {
    case 3:
    case 4:
        return result.transformed(QTransform().rotate(180));
    case 6:
    case 7:
        return result.transformed(QTransform().rotate(90));
    case 5:
    case 8:
        return result.transformed(QTransform().rotate(270));
    default:
        return result;
    }
}

} // namespace quire::ExifOrientation
