#include "images/PlaceholderCover.h"

#include "images/StandInFonts.h"
#include "records/Text.h"

#include <QBuffer>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>
#include <QtMath>

#include <algorithm>

namespace quire::PlaceholderCover {

namespace {

// The canvas is described with its origin at the lower left and y upward, as
// the painter is told for all but the text.
constexpr QSize canvas(600, 900);
constexpr QRectF titleBox(70, 236, 460, 160);
constexpr int titleSize = 34;
constexpr qreal linePitch = 1.366 * titleSize; // of the face asked for, whichever stands in

// No title that fits in the box is as long, and a hostile one costs no more.
constexpr qsizetype longestTitle = 400; // user-perceived characters

QColor ink(float opacity)
{
    return QColor::fromRgbF(0.18F, 0.15F, 0.15F, opacity);
}

// The two ends lie where the lines across the direction touch the corners.
QLinearGradient backgroundGradient()
{
    constexpr qreal angle = -62; // degrees, counterclockwise from rightward
    const QPointF direction(qCos(qDegreesToRadians(angle)), qSin(qDegreesToRadians(angle)));
    const qreal length = canvas.width() * qAbs(direction.x()) + canvas.height() * qAbs(direction.y());
    const QPointF centre(canvas.width() / 2.0, canvas.height() / 2.0);
    QLinearGradient gradient(centre - direction * length / 2, centre + direction * length / 2);
    gradient.setColorAt(0, QColor::fromRgbF(0.89F, 0.93F, 0.97F));
    gradient.setColorAt(1, QColor::fromRgbF(0.96F, 0.89F, 0.91F));
    return gradient;
}

QPainterPath openBook()
{
    QPainterPath path(QPointF(300, 470));
    path.lineTo(160, 512);
    path.lineTo(160, 650);
    path.cubicTo(264, 654, 244, 634, 300, 610);
    path.cubicTo(356, 634, 336, 654, 440, 650);
    path.lineTo(440, 512);
    path.lineTo(300, 470);
    return path;
}

QPen bookPen()
{
    QPen pen(ink(0.58F), 12, Qt::SolidLine, Qt::RoundCap, Qt::SvgMiterJoin);
    pen.setMiterLimit(10);
    return pen;
}

QFont titleFont()
{
    const QString family = StandInFonts::installedFamily(InterfaceFontChoice::AvenirNext);
    QFont font = family.isEmpty() ? QFontDatabase::systemFont(QFontDatabase::GeneralFont) : QFont(family);
    font.setPixelSize(titleSize);
    font.setWeight(QFont::DemiBold);
    return font;
}

QTextOption titleOption(const QString &text)
{
    QTextOption option(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    return option;
}

// Breaks the text into lines under each other; their number is returned of
// those that stand wholly in the box.
int layOut(QTextLayout &layout)
{
    int fitting = 0;
    qreal y = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(titleBox.width());
        line.setPosition({0, y});
        y += std::max(line.height(), linePitch);
        fitting += y <= titleBox.height() ? 1 : 0;
    }
    layout.endLayout();
    return fitting;
}

// The text from where the last visible line begins, on that one line.
void drawElided(
    QPainter &painter, const QString &rest, const QFont &font, const QTextOption &option, const QPointF &topLeft)
{
    QString oneLine = rest;
    oneLine.replace(QChar::LineSeparator, u' ');
    QString elided = QFontMetricsF(font).elidedText(oneLine + u'…', Qt::ElideRight, titleBox.width());
    elided.replace(QStringLiteral(" …"), QStringLiteral("…"));
    QTextLayout layout(elided, font);
    layout.setTextOption(option);
    if (layOut(layout) > 0) {
        layout.lineAt(0).draw(&painter, topLeft);
    }
}

void drawTitle(QPainter &painter, const QString &title)
{
    const QString whole = Text::trimmed(title);
    QString text = Text::firstCharacters(whole, longestTitle);
    if (text.size() < whole.size()) {
        text += u'…';
    }
    text.replace(QStringLiteral("\r\n"), QString(QChar::LineSeparator));
    text.replace(u'\n', QChar::LineSeparator);
    if (text.isEmpty()) {
        return;
    }
    const QFont font = titleFont();
    const QTextOption option = titleOption(text);
    QTextLayout layout(text, font);
    layout.setTextOption(option);
    const int fitting = layOut(layout);

    const QPointF topLeft(titleBox.left(), canvas.height() - titleBox.bottom());
    painter.setPen(ink(0.88F));
    const bool fits = fitting == layout.lineCount();
    const int wholeLines = fits ? fitting : fitting - 1;
    for (int number = 0; number < wholeLines; ++number) {
        layout.lineAt(number).draw(&painter, topLeft);
    }
    if (!fits && fitting > 0) {
        const QTextLine last = layout.lineAt(fitting - 1);
        drawElided(painter, text.mid(last.textStart()), font, option, topLeft + QPointF(0, last.y()));
    }
}

} // namespace

QImage draw(const QString &title)
{
    QImage picture(canvas, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const QTransform upward(1, 0, 0, -1, 0, canvas.height());
    painter.setTransform(upward);
    painter.fillRect(QRectF(QPointF(), QSizeF(canvas)), backgroundGradient());
    painter.strokePath(openBook(), bookPen());
    painter.resetTransform();
    drawTitle(painter, title);
    return picture;
}

std::optional<CoverBytes> png(const QString &title)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!draw(title).save(&buffer, "PNG") || bytes.isEmpty()) {
        return std::nullopt;
    }
    return CoverBytes(bytes);
}

} // namespace quire::PlaceholderCover
