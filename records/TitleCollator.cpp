#include "records/TitleCollator.h"

#include <QLocale>

namespace quire {

QCollator titleCollator()
{
    // The C locale compares code points and knows neither case nor numbers.
    const QLocale system = QLocale::system();
    QCollator collator(system.language() == QLocale::C ? QLocale(QLocale::English) : system);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

} // namespace quire
