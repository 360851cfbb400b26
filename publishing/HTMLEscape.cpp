#include "publishing/HTMLEscape.h"

#include "publishing/TextScan.h"

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
    default:
        return u"&quot;";
    }
}

} // namespace

void appendEscapedHTML(QString &page, QStringView text)
{
    for (;;) {
        const qsizetype plain = indexOfAny<u'&', u'<', u'>', u'"'>(text);
        page += text.first(plain);
        if (plain == text.size()) {
            return;
        }
        page += entity(text[plain]);
        text = text.sliced(plain + 1);
    }
}

} // namespace quire
