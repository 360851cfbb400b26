#include "sources/Redaction.h"

#include <QUrl>

namespace quire::Redaction {

namespace {

constexpr qsizetype shortestSecret = 4;

} // namespace

QString without(QString text, const QString &secret)
{
    if (secret.size() < shortestSecret) {
        return text;
    }
    const QString mark = QStringLiteral("…");
    // Encoded first: what is encoded may begin with what is not.
    const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(secret));
    const QString ofForms = QString(encoded).replace(QStringLiteral("%20"), QStringLiteral("+"));
    return text.replace(encoded, mark, Qt::CaseInsensitive)
        .replace(ofForms, mark, Qt::CaseInsensitive)
        .replace(secret, mark, Qt::CaseInsensitive);
}

} // namespace quire::Redaction
