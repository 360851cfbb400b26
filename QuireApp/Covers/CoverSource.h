// What a view is handed of a cover: the shared bytes and the key they are kept
// under once decoded. A value; QML passes it on and looks at nothing but
// whether there is a cover.
//
// Thread: any; immutable.

#pragma once

#include "records/CoverBytes.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quire {

class CoverSource
{
    Q_GADGET
    QML_VALUE_TYPE(coverSource)

    Q_PROPERTY(bool present READ isPresent)
    Q_PROPERTY(QString key READ resolvedCacheKey)

public:
    CoverSource() = default;

    // cacheKey: "book-" or "audio-" and the row id.
    CoverSource(QString cacheKey, std::optional<CoverBytes> data);

    static CoverSource ofBook(qint64 id, const std::optional<CoverBytes> &data);
    static CoverSource ofAudiobook(qint64 id, const std::optional<CoverBytes> &data);

    bool isPresent() const { return m_data.has_value(); }
    const std::optional<CoverBytes> &data() const { return m_data; }

    // The key, a dash and the number of bytes, 0 without data: a replaced cover
    // of another size is another entry of the cache and nothing needs to be
    // forgotten by hand.
    QString resolvedCacheKey() const;

    // By key; bytes are never compared.
    friend bool operator==(const CoverSource &a, const CoverSource &b)
    {
        return a.resolvedCacheKey() == b.resolvedCacheKey();
    }

private:
    QString m_cacheKey;
    std::optional<CoverBytes> m_data;
};

} // namespace quire
