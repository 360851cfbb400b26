// A disc of every hue and saturation at full value: red on the right, the hues
// counter-clockwise, white in the middle. Fills the item's smaller side.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/Items/PictureItem.h"

#include <QtQml/qqmlregistration.h>

namespace quire {

class ColorWheelPicture : public quire::PictureItem // qualified, or the type registration does not find it
{
    Q_OBJECT
    QML_NAMED_ELEMENT(ColorWheelPicture)

public:
    explicit ColorWheelPicture(QQuickItem *parent = nullptr);

protected:
    void updatePolish() override;

private:
    QImage m_wheel;
};

// The disc on transparent ground, with a smooth rim. pixels: its diameter.
QImage colorWheel(int pixels);

} // namespace quire
