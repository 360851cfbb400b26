// How a decoded cover becomes what is on the screen: fitted or filling its
// frame, corners rounded, a book's spine along its left edge. All of it is in
// the picture, since masks and effects draw nothing on the software renderer.
//
// Thread: pure functions, any thread.

#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSizeF>

namespace quire {

enum class CoverContentMode {
    Fit,
    Fill,
};

enum class CoverSpineMode {
    None,
    Always,
    PortraitOnly,
};

namespace CoverDrawing {

// Where a picture is drawn in a frame, in logical pixels; for Fill the frame.
QRectF place(const QSizeF &picture, const QSizeF &frame, CoverContentMode mode);

// Whether a picture of that size gets a spine.
bool showsSpine(const QSize &picture, CoverSpineMode mode);

struct Request
{
    QSizeF frame; // logical pixels
    qreal devicePixelRatio = 1;
    CoverContentMode contentMode = CoverContentMode::Fit;
    CoverSpineMode spineMode = CoverSpineMode::None;
    qreal cornerRadius = 0; // logical pixels

    // Tells pictures made from one cover apart.
    QString suffix() const;
};

// The finished picture, in physical pixels, for the rectangle that place()
// gives; null for a null picture.
QImage draw(const QImage &picture, const Request &request);

} // namespace CoverDrawing

// The spine of a book along the left edge of a cover.
namespace BookSpineOverlay {

// In logical pixels, for a cover drawn that wide.
qreal width(qreal drawnWidth);

// Paints over the left of `cover`, in the painter's coordinates.
void paint(QPainter &painter, const QRectF &cover);

} // namespace BookSpineOverlay

} // namespace quire
