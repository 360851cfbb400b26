// What a thousand mixed covers cost until they are thumbnails, on two threads,
// beside the bare decoders doing the same; and the memory that ten thousand
// leave behind in the cache.

#include "bench/DrawnCovers.h"
#include "images/CoverDecoder.h"
#include "QuireApp/Covers/ArtworkImageCache.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QFile>
#include <QImageReader>

#include <atomic>
#include <thread>

#include <avif/avif.h>

namespace quire {

namespace {

constexpr int distinctCovers = 40;
constexpr int covers = 1000;
constexpr int threads = 2;
constexpr int longestSide = 640;

struct EncodedCover
{
    QByteArray bytes;
    bool isAvif = false;
};

QByteArray encodedAvif(const QImage &image)
{
    const QImage rgba = image.convertToFormat(QImage::Format_RGBA8888);
    avifImage *picture = avifImageCreate(uint32_t(rgba.width()), uint32_t(rgba.height()), 8, AVIF_PIXEL_FORMAT_YUV420);
    avifRGBImage rgb;
    avifRGBImageSetDefaults(&rgb, picture);
    rgb.format = AVIF_RGB_FORMAT_RGBA;
    rgb.pixels = const_cast<uchar *>(rgba.constBits());
    rgb.rowBytes = uint32_t(rgba.bytesPerLine());
    avifImageRGBToYUV(picture, &rgb);
    avifEncoder *encoder = avifEncoderCreate();
    encoder->speed = AVIF_SPEED_FASTEST;
    avifRWData output = AVIF_DATA_EMPTY;
    avifEncoderWrite(encoder, picture, &output);
    QByteArray bytes(reinterpret_cast<const char *>(output.data), qsizetype(output.size));
    avifRWDataFree(&output);
    avifEncoderDestroy(encoder);
    avifImageDestroy(picture);
    return bytes;
}

// Of twenty covers fourteen are JPEG, three PNG, two WebP and one AVIF, at the
// sizes that sources send.
const QList<EncodedCover> &mixedCovers()
{
    static const QList<EncodedCover> made = [] {
        QList<EncodedCover> list;
        for (int number = 0; number < distinctCovers; ++number) {
            const QSize size = number % 3 == 0 ? QSize(318, 475)
                : number % 3 == 1              ? QSize(600, 900)
                                               : QSize(1000, 1500);
            const QImage image = drawnCover(number, size);
            const int kind = number % 20;
            const bool isAvif = kind == 19;
            const char *format = kind < 14 ? "jpeg" : kind < 17 ? "png" : "webp";
            list.append({isAvif ? encodedAvif(image) : encoded(image, format), isAvif});
        }
        return list;
    }();
    return made;
}

// Calls `decode` for each of a thousand covers, on two threads.
template<typename Decode>
bool decodeAll(Decode decode)
{
    const QList<EncodedCover> &list = mixedCovers();
    std::atomic<int> next = 0;
    std::atomic<bool> isGood = true;
    const auto work = [&] {
        for (int number = next++; number < covers; number = next++) {
            if (decode(list.at(number % distinctCovers)).isNull()) {
                isGood = false;
            }
        }
    };
    {
        std::jthread first(work);
        std::jthread second(work);
    }
    return isGood;
}

QImage bareAvif(const QByteArray &bytes)
{
    avifDecoder *decoder = avifDecoderCreate();
    avifImage *image = avifImageCreateEmpty();
    QImage picture;
    if (avifDecoderReadMemory(
            decoder, image, reinterpret_cast<const uint8_t *>(bytes.constData()), size_t(bytes.size()))
        == AVIF_RESULT_OK) {
        picture = QImage(int(image->width), int(image->height), QImage::Format_RGB32);
        avifRGBImage rgb;
        avifRGBImageSetDefaults(&rgb, image);
        rgb.depth = 8;
        rgb.format = AVIF_RGB_FORMAT_BGRA;
        rgb.pixels = picture.bits();
        rgb.rowBytes = uint32_t(picture.bytesPerLine());
        avifImageYUVToRGB(image, &rgb);
        if (picture.height() > longestSide) {
            picture = picture.scaledToHeight(longestSide, Qt::SmoothTransformation);
        }
    }
    avifImageDestroy(image);
    avifDecoderDestroy(decoder);
    return picture;
}

// The toolkit's reader, told the size to give, and nothing else.
QImage bareThumbnail(const EncodedCover &cover)
{
    if (cover.isAvif) {
        return bareAvif(cover.bytes);
    }
    QByteArray bytes = cover.bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (size.height() > longestSide) {
        reader.setScaledSize(size.scaled(longestSide, longestSide, Qt::KeepAspectRatio));
    }
    return reader.read();
}

void coverDecode(benchmark::State &state)
{
    mixedCovers();
    for (auto _ : state) {
        if (!decodeAll([](const EncodedCover &cover) { return CoverDecoder::thumbnail(cover.bytes); })) {
            state.SkipWithError("not every cover was decoded");
        }
    }
    state.SetItemsProcessed(state.iterations() * covers);
}

void coverBareDecode(benchmark::State &state)
{
    mixedCovers();
    for (auto _ : state) {
        if (!decodeAll(bareThumbnail)) {
            state.SkipWithError("not every cover was decoded");
        }
    }
    state.SetItemsProcessed(state.iterations() * covers);
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    file.open(QIODevice::ReadOnly);
    constexpr double pageSize = 4096;
    return file.readAll().split(' ').value(1).toDouble() * pageSize / 1e6;
}

// Every cover under a key of its own, as scrolling through a library does.
void coverCacheMemory(benchmark::State &state)
{
    constexpr int scrolled = 10'000;
    const QList<EncodedCover> &list = mixedCovers();
    for (auto _ : state) {
        ArtworkImageCache cache;
        const double before = residentMegabytes();
        std::atomic<int> next = 0;
        double most = before;
        const auto work = [&](bool measures) {
            for (int number = next++; number < scrolled; number = next++) {
                cache.decode(CoverBytes(list.at(number % distinctCovers).bytes), QStringLiteral("book-%1").arg(number));
                if (measures && number % 64 < threads) {
                    most = std::max(most, residentMegabytes());
                }
            }
        };
        {
            std::jthread first(work, true);
            std::jthread second(work, false);
        }
        state.counters["cacheMB"] = double(cache.totalCost()) / 1e6;
        state.counters["limitMB"] = double(ArtworkImageCache::costLimit) / 1e6;
        state.counters["grownMB"] = most - before;
        state.counters["pictures"] = double(cache.count());
    }
}

BENCHMARK(coverDecode)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(coverBareDecode)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(coverCacheMemory)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

} // namespace

} // namespace quire
