// The drawn cover inside a CoverImage. It shows what the cache has at once;
// otherwise the cover is decoded in the background and appears when it is
// there, unless the item has turned to another cover by then.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/Covers/CoverDrawing.h"
#include "QuireApp/Covers/CoverSource.h"
#include "QuireApp/Items/PictureItem.h"

#include <QtQml/qqmlregistration.h>

#include <stop_token>

namespace quire {

class CoverPicture : public quire::PictureItem // qualified, or the type registration does not find it
{
    Q_OBJECT
    QML_NAMED_ELEMENT(CoverPicture)

    Q_PROPERTY(quire::CoverSource source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(ContentMode contentMode READ contentMode WRITE setContentMode NOTIFY drawingChanged)
    Q_PROPERTY(SpineMode spineMode READ spineMode WRITE setSpineMode NOTIFY drawingChanged)
    Q_PROPERTY(qreal cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY drawingChanged)
    // Whether there is a picture on the screen, and where in the item it is.
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY pictureChanged)
    Q_PROPERTY(QRectF paintedRect READ paintedRect NOTIFY pictureChanged)
    // Whether the next frame will have no picture: known only when the item is
    // polished for it, so that what stands in for one is not made in vain.
    Q_PROPERTY(bool isLacking READ isLacking NOTIFY lackingChanged)

public:
    enum ContentMode {
        Fit,
        Fill,
    };
    Q_ENUM(ContentMode)

    enum SpineMode {
        NoSpine,
        AlwaysSpine,
        PortraitSpine,
    };
    Q_ENUM(SpineMode)

    explicit CoverPicture(QQuickItem *parent = nullptr);
    ~CoverPicture() override;

    const CoverSource &source() const { return m_source; }
    void setSource(const CoverSource &source);
    ContentMode contentMode() const { return m_contentMode; }
    void setContentMode(ContentMode mode);
    SpineMode spineMode() const { return m_spineMode; }
    void setSpineMode(SpineMode mode);
    qreal cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(qreal radius);
    bool hasImage() const { return !m_image.isNull(); }
    QRectF paintedRect() const { return m_paintedRect; }
    bool isLacking() const { return m_isLacking; }

Q_SIGNALS:
    void sourceChanged();
    void drawingChanged();
    void pictureChanged();
    void lackingChanged();

protected:
    void updatePolish() override;

private:
    CoverDrawing::Request request() const;
    void showKnownOrStart();
    void show(const QImage &image);
    void updateLacking();

    CoverSource m_source;
    ContentMode m_contentMode = Fit;
    SpineMode m_spineMode = NoSpine;
    qreal m_cornerRadius = 0;
    QImage m_image;
    QRectF m_paintedRect;
    bool m_isLacking = false;
    bool m_isOfOtherSource = false; // the picture shown, until the next polish
    QString m_wantedKey; // of the picture shown or under way
    std::stop_source m_work;
};

} // namespace quire
