// An absolute URL, kept as the text it arrived in. The store reads many
// thousands of these on every reload and shows few, so the text is tested for
// well-formedness once and taken apart only where it is used.

#pragma once

#include <QHash>
#include <QString>
#include <QStringView>
#include <QUrl>

#include <optional>

namespace quire {

class Url
{
public:
    // The URL that `text` spells, or nothing when it is empty, relative or no
    // URL by RFC 3986 (characters outside ASCII pass, as an IRI).
    static std::optional<Url> parse(const QString &text);

    // Exactly the text that was parsed.
    const QString &text() const { return m_text; }

    // Taken apart, for requests and for opening.
    QUrl toQUrl() const { return QUrl(m_text); }

    bool operator==(const Url &) const = default;

private:
    explicit Url(QString text)
        : m_text(std::move(text))
    {
    }

    QString m_text;
};

// The text of a URL that may be absent.
inline std::optional<QString> textOf(const std::optional<Url> &url)
{
    return url ? std::optional(url->text()) : std::nullopt;
}

inline size_t qHash(const Url &url, size_t seed = 0)
{
    return ::qHash(url.text(), seed);
}

} // namespace quire
