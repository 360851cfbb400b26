#include "QuireApp/Items/SymbolPicture.h"

#include "QuireApp/Symbols/SymbolSet.h"

#include <cmath>

namespace quire {

SymbolPicture::SymbolPicture(QQuickItem *parent)
    : PictureItem(parent)
{
}

void SymbolPicture::setName(const QString &name)
{
    if (name == m_name) {
        return;
    }
    m_name = name;
    polish();
    Q_EMIT nameChanged();
}

void SymbolPicture::setColor(const QColor &color)
{
    if (color == m_color) {
        return;
    }
    m_color = color;
    polish();
    Q_EMIT colorChanged();
}

void SymbolPicture::setSize(qreal size)
{
    if (size == m_size) {
        return;
    }
    m_size = size;
    setImplicitSize(size, size);
    polish();
    Q_EMIT sizeChanged();
}

void SymbolPicture::updatePolish()
{
    // Centred, and on a whole pixel: lines one pixel wide blur otherwise.
    const qreal ratio = devicePixelRatio();
    const qreal x = std::floor((width() - m_size) / 2 * ratio) / ratio;
    const qreal y = std::floor((height() - m_size) / 2 * ratio) / ratio;
    const int pixels = int(std::ceil(m_size * ratio));
    showPicture(SymbolSet::picture(m_name, m_color, pixels), {x, y, pixels / ratio, pixels / ratio});
}

} // namespace quire
