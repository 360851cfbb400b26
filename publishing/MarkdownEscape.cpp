#include "publishing/MarkdownEscape.h"

#include "publishing/TextScan.h"

namespace quire {

namespace {

bool isMarkup(QChar c)
{
    return c == u'\\' || c == u'`' || c == u'*' || c == u'_' || c == u'[' || c == u']';
}

} // namespace

void appendEscapedMarkdown(QString &document, QStringView text)
{
    text = text.trimmed();
    qsizetype appended = 0; // all before it
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c.isSpace()) {
            document += text.sliced(appended, at - appended);
            document += u' ';
            while (text[at + 1].isSpace()) { // the last one is none
                ++at;
            }
            appended = at + 1;
        } else if (isMarkup(c)) {
            document += text.sliced(appended, at - appended);
            document += u'\\';
            appended = at; // with what follows
        }
    }
    document += text.sliced(appended);
}

void appendQuotedMarkdown(QString &document, QStringView text)
{
    document += u"> ";
    text = text.trimmed();
    for (;;) {
        const qsizetype end = indexOfAny<u'\n', u'\r'>(text);
        document += text.first(end);
        if (end == text.size()) {
            return;
        }
        if (text[end] == u'\n') {
            document += u"\n> ";
        }
        text = text.sliced(end + 1);
    }
}

} // namespace quire
