#include "QuireApp/ViewModels/AbbreviatedDate.h"

#include <QRegularExpression>

namespace quire {

QString abbreviatedDate(QDate date, const QLocale &locale)
{
    // The weekday goes with what ties it to the rest, quoted words included.
    static const QRegularExpression leadingWeekday(QStringLiteral("^\\s*d{3,4}(?:[\\s,.]|'[^']*')*(?=[dMy])"));
    static const QRegularExpression otherWeekday(QStringLiteral("[\\s,]*\\(?d{3,4}\\)?"));
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.remove(leadingWeekday);
    format.remove(otherWeekday);
    format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    return locale.toString(date, format.trimmed());
}

} // namespace quire
