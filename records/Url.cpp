#include "records/Url.h"

namespace quire {

namespace {

bool isPlainHostCharacter(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'.' || c == u'-';
}

// Unreserved and reserved characters of RFC 3986 that need no second look in a
// path or query; "%" is left to the full parser, which checks its digits.
bool isPlainPathCharacter(char16_t c)
{
    return isPlainHostCharacter(c) || c == u'/' || c == u'_' || c == u'~' || c == u'?' || c == u'=' || c == u'&'
        || c == u'+' || c == u',' || c == u':' || c == u'@' || c == u'!' || c == u';' || c == u'*' || c == u'('
        || c == u')';
}

// The shape of nearly every cover and page address: http(s)://host/path made
// of plain characters. Anything else is for the full parser to judge.
bool isObviouslyAbsolute(QStringView text)
{
    qsizetype at = 0;
    if (text.startsWith(u"https://")) {
        at = 8;
    } else if (text.startsWith(u"http://")) {
        at = 7;
    } else {
        return false;
    }
    const qsizetype hostStart = at;
    while (at < text.size() && isPlainHostCharacter(text[at].unicode())) {
        ++at;
    }
    if (at == hostStart || at == text.size() || text[at] != u'/') {
        return false;
    }
    for (; at < text.size(); ++at) {
        if (!isPlainPathCharacter(text[at].unicode())) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<Url> Url::parse(const QString &text)
{
    if (isObviouslyAbsolute(text)) {
        return Url(text);
    }
    const QUrl url(text, QUrl::StrictMode);
    if (text.isEmpty() || !url.isValid() || url.isRelative()) {
        return std::nullopt;
    }
    return Url(text);
}

} // namespace quire
