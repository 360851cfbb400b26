#include "publishing/ReadingListRenderer.h"

namespace quire::ReadingListRenderer {

QLocale presentLocale()
{
    const QLocale system = QLocale::system();
    return system.language() == QLocale::C ? QLocale(QLocale::English, QLocale::UnitedStates) : system;
}

} // namespace quire::ReadingListRenderer
