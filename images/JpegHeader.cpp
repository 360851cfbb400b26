#include "images/JpegHeader.h"

#include <cstring>

namespace quire {

namespace {

constexpr int startOfScan = 0xDA;
constexpr int endOfImage = 0xD9;

// Baseline to lossless, without the codes of tables that lie between.
bool isFrame(int marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool isProgressiveFrame(int marker)
{
    return marker == 0xC2 || marker == 0xC6 || marker == 0xCA || marker == 0xCE;
}

bool hasSegment(int marker)
{
    const bool isRestart = marker >= 0xD0 && marker <= 0xD7;
    return !isRestart && marker != 0xD8 && marker != 0x01;
}

class Walk
{
public:
    explicit Walk(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    // The next marker, wherever it is; -1 at the end.
    int nextMarker()
    {
        for (;;) {
            const qsizetype left = m_bytes.size() - m_at;
            const void *found = left > 1 ? std::memchr(m_bytes.constData() + m_at, 0xFF, size_t(left - 1)) : nullptr;
            if (!found) {
                return -1;
            }
            m_at = static_cast<const char *>(found) - m_bytes.constData() + 1;
            const int code = byte(m_at);
            if (code != 0x00 && code != 0xFF) { // a stuffed byte, and filling
                ++m_at;
                return code;
            }
        }
    }

    // What follows the marker; empty when it is cut off. The walk goes on
    // behind it.
    QByteArrayView segment()
    {
        if (m_bytes.size() - m_at < 2) {
            m_at = m_bytes.size();
            return {};
        }
        const qsizetype length = byte(m_at) * 256 + byte(m_at + 1);
        const qsizetype end = std::min(m_at + std::max<qsizetype>(length, 2), m_bytes.size());
        const QByteArrayView content(m_bytes.constData() + m_at + 2, end - m_at - 2);
        m_at = end;
        return content;
    }

private:
    int byte(qsizetype at) const { return uchar(m_bytes.at(at)); }

    const QByteArray &m_bytes;
    qsizetype m_at = 0;
};

int number(QByteArrayView content, qsizetype at)
{
    return uchar(content.at(at)) * 256 + uchar(content.at(at + 1));
}

} // namespace

std::optional<JpegHeader> JpegHeader::read(const QByteArray &bytes)
{
    constexpr qsizetype shortestFrame = 6;
    JpegHeader header;
    Walk walk(bytes);
    for (int marker = walk.nextMarker(); marker >= 0 && marker != endOfImage; marker = walk.nextMarker()) {
        if (!hasSegment(marker)) {
            continue;
        }
        const QByteArrayView content = walk.segment();
        if (marker == startOfScan) {
            ++header.scans;
        } else if (isFrame(marker) && content.size() >= shortestFrame && header.components == 0) {
            header.size = QSize(number(content, 3), number(content, 1));
            header.components = uchar(content.at(5));
            header.isProgressive = isProgressiveFrame(marker);
        }
    }
    return header.components > 0 ? std::optional(header) : std::nullopt;
}

} // namespace quire
