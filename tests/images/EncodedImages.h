// Encoded pictures for tests, whole and tampered with.

#pragma once

#include <QByteArray>
#include <QColorSpace>
#include <QImage>

#include <optional>

namespace quire::testing {

// One colour all over.
QImage plainImage(int width, int height);

// In a format that the toolkit writes: "png", "jpeg", "bmp" or "webp".
QByteArray encoded(const QImage &image, const char *format);

struct AvifProperties
{
    std::optional<int> quarterTurns; // counterclockwise
    std::optional<int> mirrorMode; // 0 exchanges top and bottom, 1 left and right
};
QByteArray encodedAvif(const QImage &image, const AvifProperties &properties = {});

// The same file with an EXIF part that asks for that orientation.
QByteArray withOrientation(const QByteArray &bytes, const char *format, int orientation);

// A PNG with one more chunk before its pixels.
QByteArray withPngChunk(const QByteArray &png, const QByteArray &name, const QByteArray &content);

// A PNG whose head says that it is of that size.
QByteArray withPngSize(const QByteArray &png, quint32 width, quint32 height);

// The same file, longer by filling that its readers pass over.
QByteArray paddedPng(const QByteArray &png, qsizetype length);

} // namespace quire::testing
