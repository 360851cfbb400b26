#include "QuireApp/Symbols/SymbolSet.h"

#include <QCache>
#include <QFile>
#include <QLoggingCategory>
#include <QPainter>
#include <QSvgRenderer>

namespace quire::SymbolSet {

namespace {

Q_LOGGING_CATEGORY(symbols, "quire.symbols")

QImage draw(const QString &name, const QColor &color, int pixels)
{
    QFile file(QStringLiteral(":/quire/symbols/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(symbols) << "no symbol named" << name;
        return {};
    }
    QByteArray drawing = file.readAll();
    drawing.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(drawing);
    QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setOpacity(color.alphaF());
    renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    return picture;
}

} // namespace

QImage picture(const QString &name, const QColor &color, int pixels)
{
    if (name.isEmpty() || pixels <= 0) {
        return {};
    }
    static QCache<QString, QImage> drawn(300); // small pictures, redrawn often on hover
    const QString key = QStringLiteral("%1 %2 %3").arg(name, color.name(QColor::HexArgb)).arg(pixels);
    if (const QImage *known = drawn.object(key)) {
        return *known;
    }
    QImage picture = draw(name, color, pixels);
    drawn.insert(key, new QImage(picture));
    return picture;
}

} // namespace quire::SymbolSet
