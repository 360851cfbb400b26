// The encoded bytes of one cover: a shared, immutable value. Copies share the
// bytes, and two copies of one value compare equal without looking at them.
// Everything that passes covers on holds this type and not the bytes, so that
// where they live can change here alone.

#pragma once

#include <QByteArray>
#include <QHash>

#include <optional>

namespace quire {

class CoverBytes
{
public:
    // bytes: an encoded image; must not be empty.
    explicit CoverBytes(QByteArray bytes)
        : m_bytes(std::move(bytes))
    {
        Q_ASSERT(!m_bytes.isEmpty());
    }

    // In bytes; at least 1.
    qsizetype size() const { return m_bytes.size(); }

    // The image itself, shared and not copied.
    QByteArray bytes() const { return m_bytes; }

    friend bool operator==(const CoverBytes &a, const CoverBytes &b)
    {
        return a.m_bytes.constData() == b.m_bytes.constData() || a.m_bytes == b.m_bytes;
    }

private:
    QByteArray m_bytes;
};

// The bytes of a cover that may be absent.
inline std::optional<QByteArray> bytesOf(const std::optional<CoverBytes> &cover)
{
    return cover ? std::optional(cover->bytes()) : std::nullopt;
}

inline size_t qHash(const CoverBytes &cover, size_t seed = 0)
{
    return ::qHash(cover.bytes(), seed);
}

} // namespace quire
