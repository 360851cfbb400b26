#include "publishing/HTMLEscape.h"

namespace quire {

namespace {

QStringView entity(QChar c)
{
    switch (c.unicode()) {
    case u'&':
        return u"&amp;";
    case u'<':
        return u"&lt;";
    case u'>':
        return u"&gt;";
    case u'"':
        return u"&quot;";
    default:
        return {};
    }
}

// The first of the four in `text`, or its length.
qsizetype indexOfMarkup(QStringView text)
{
    // In steps without a way out in their middle, which the compiler turns into
    // a few instructions for all characters of a step at once.
    constexpr qsizetype step = 32;
    const char16_t *const units = text.utf16();
    qsizetype at = 0;
    for (; at + step <= text.size(); at += step) {
        unsigned found = 0;
        for (qsizetype i = 0; i < step; ++i) {
            const char16_t c = units[at + i];
            found |= unsigned(c == u'&') | unsigned(c == u'<') | unsigned(c == u'>') | unsigned(c == u'"');
        }
        if (found != 0) {
            break;
        }
    }
    while (at < text.size() && entity(text[at]).isEmpty()) {
        ++at;
    }
    return at;
}

} // namespace

void appendEscapedHTML(QString &page, QStringView text)
{
    for (;;) {
        const qsizetype plain = indexOfMarkup(text);
        page += text.first(plain);
        if (plain == text.size()) {
            return;
        }
        page += entity(text[plain]);
        text = text.sliced(plain + 1);
    }
}

} // namespace quire
