#include "QuireApp/Theme/InterfaceFonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QHash>
#include <QThreadPool>

#include <cmath>
#include <utility>

namespace quire {

namespace {

// A desktop that names no face of its own hands out fontconfig's aliases.
bool isGenericAlias(const QString &family)
{
    return family.isEmpty() || family.compare(QLatin1String("sans serif"), Qt::CaseInsensitive) == 0
        || family.compare(QLatin1String("sans"), Qt::CaseInsensitive) == 0
        || family.compare(QLatin1String("sans-serif"), Qt::CaseInsensitive) == 0;
}

QString systemFamily()
{
    const QString family = QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    const QString inter = QStringLiteral("Inter");
    return isGenericAlias(family) && QFontDatabase::hasFamily(inter) ? inter : family;
}

} // namespace

QFont QuireFontModifier::font(InterfaceFontChoice choice) const
{
    QFont font(InterfaceFonts::family(choice));
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

namespace InterfaceFonts {

void readAhead()
{
    QThreadPool::globalInstance()->start(
        [] { QFontMetricsF(QFont(family(InterfaceFontChoice::AvenirNext))).capHeight(); });
}

QString family(InterfaceFontChoice choice)
{
    return choice == InterfaceFontChoice::System ? systemFamily() : label(choice);
}

int capitalsDrop(const QString &family, int size)
{
    static QHash<std::pair<QString, int>, int> known; // asked for by every text
    const auto found = known.constFind({family, size});
    if (found != known.cend()) {
        return *found;
    }
    QFont font(family);
    font.setPixelSize(size);
    const QFontMetricsF metrics(font);
    const int line = int(std::ceil(metrics.height()));
    // The base line is drawn on a whole pixel.
    const qreal wanted = line - 2 * std::round(metrics.ascent()) + metrics.capHeight();
    // An even height stands on whole pixels in the middle of an even control.
    const int drop = 2 * int(std::lround((wanted + line) / 2)) - line;
    known.insert({family, size}, drop);
    return drop;
}

} // namespace InterfaceFonts

} // namespace quire
