// One small line icon, by the name that the views know it under, in the colour
// of the text beside it. Drawn for the pixels of its window, so it is crisp at
// any scale.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/Items/PictureItem.h"

#include <QColor>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quire {

class SymbolPicture : public quire::PictureItem // qualified, or the type registration does not find it
{
    Q_OBJECT
    QML_NAMED_ELEMENT(SymbolPicture)

    // As "books.vertical"; empty draws nothing.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged REQUIRED)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged REQUIRED)
    // Width and height in logical pixels.
    Q_PROPERTY(qreal size READ size WRITE setSize NOTIFY sizeChanged REQUIRED)

public:
    explicit SymbolPicture(QQuickItem *parent = nullptr);

    QString name() const { return m_name; }
    void setName(const QString &name);
    QColor color() const { return m_color; }
    void setColor(const QColor &color);
    qreal size() const { return m_size; }
    void setSize(qreal size);

Q_SIGNALS:
    void nameChanged();
    void colorChanged();
    void sizeChanged();

protected:
    void updatePolish() override;

private:
    QString m_name;
    QColor m_color;
    qreal m_size = 0;
};

} // namespace quire
