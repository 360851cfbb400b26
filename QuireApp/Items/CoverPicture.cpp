#include "QuireApp/Items/CoverPicture.h"

#include "QuireApp/Covers/ArtworkImageCache.h"
#include "QuireApp/Covers/CoverWork.h"

#include <QPointer>

#include <utility>

namespace quire {

CoverPicture::CoverPicture(QQuickItem *parent)
    : PictureItem(parent)
{
    connect(this, &CoverPicture::drawingChanged, this, &QQuickItem::polish);
}

CoverPicture::~CoverPicture()
{
    m_work.request_stop();
}

void CoverPicture::setSource(const CoverSource &source)
{
    if (source == m_source) {
        return;
    }
    m_source = source;
    m_isOfOtherSource = true;
    polish(); // comes before the next frame, which so never shows another title's cover
    Q_EMIT sourceChanged();
}

void CoverPicture::setContentMode(ContentMode mode)
{
    if (mode != m_contentMode) {
        m_contentMode = mode;
        Q_EMIT drawingChanged();
    }
}

void CoverPicture::setSpineMode(SpineMode mode)
{
    if (mode != m_spineMode) {
        m_spineMode = mode;
        Q_EMIT drawingChanged();
    }
}

void CoverPicture::setCornerRadius(qreal radius)
{
    if (radius != m_cornerRadius) {
        m_cornerRadius = radius;
        Q_EMIT drawingChanged();
    }
}

CoverDrawing::Request CoverPicture::request() const
{
    return {.frame = size(),
        .devicePixelRatio = devicePixelRatio(),
        .contentMode = m_contentMode == Fill ? CoverContentMode::Fill : CoverContentMode::Fit,
        .spineMode = m_spineMode == AlwaysSpine ? CoverSpineMode::Always
            : m_spineMode == PortraitSpine      ? CoverSpineMode::PortraitOnly
                                                : CoverSpineMode::None,
        .cornerRadius = m_cornerRadius};
}

void CoverPicture::updatePolish()
{
    showKnownOrStart();
    updateLacking();
}

void CoverPicture::showKnownOrStart()
{
    const bool isOfOtherSource = std::exchange(m_isOfOtherSource, false);
    if (!m_source.isPresent() || !window() || size().isEmpty()) {
        m_wantedKey.clear();
        m_work.request_stop();
        show({});
        return;
    }
    const QString key = CoverWork::finishedKey(m_source, request());
    if (key == m_wantedKey) {
        return; // shown, under way, or known to be no picture
    }
    m_wantedKey = key;
    m_work.request_stop();
    m_work = std::stop_source();
    if (const auto known = ArtworkImageCache::shared().find(key)) {
        show(*known);
        return;
    }
    if (isOfOtherSource) {
        show({});
    }
    CoverWork::start(m_source, request(), m_work.get_token(), [self = QPointer(this)](const QImage &finished) {
        if (self) {
            self->show(finished);
            self->updateLacking();
        }
    });
}

void CoverPicture::show(const QImage &image)
{
    if (image.isNull() && m_image.isNull()) {
        return;
    }
    m_image = image;
    const QSizeF drawn = QSizeF(image.size()) / devicePixelRatio();
    m_paintedRect = {QPointF((width() - drawn.width()) / 2, (height() - drawn.height()) / 2), drawn};
    showPicture(m_image, m_paintedRect);
    Q_EMIT pictureChanged();
}

void CoverPicture::updateLacking()
{
    if (m_isLacking != m_image.isNull()) {
        m_isLacking = m_image.isNull();
        Q_EMIT lackingChanged();
    }
}

} // namespace quire
