// The arc of a progress ring, standing still; the control turns it.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/Items/PictureItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace quire {

class ProgressRingPicture : public quire::PictureItem // qualified, or the type registration does not find it
{
    Q_OBJECT
    QML_NAMED_ELEMENT(ProgressRingPicture)

    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged REQUIRED)

public:
    explicit ProgressRingPicture(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void colorChanged();

protected:
    void updatePolish() override;

private:
    QColor m_color;
};

} // namespace quire
