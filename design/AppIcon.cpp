#include "design/AppIcon.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include "design/Blur.h"
#include "design/Corners.h"
#include "design/LK.h"

namespace larkspan {

namespace {

constexpr double base = 118.0; // the side that the lengths below are drawn for
constexpr double cornerRadius = 32.0 / base;
constexpr double barGap = 10.0 / base;
constexpr double barWidth = 19.0 / base;
constexpr double barHeight = 60.0 / base;
constexpr double barRadius = 5.0 / base;
constexpr double shadowRadius = 0.15;
constexpr double glowRadius = 0.186;
constexpr double markShare = 0.8; // of an icon file; the rest is for the shadow
constexpr std::array iconSizes{16, 22, 24, 32, 48, 64, 128, 256, 512};
constexpr int largestWindowIcon = 128; // pixels: task switchers show no larger one, and the pixmaps stay in memory

QColor white(double opacity)
{
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity));
}

// Fills the shape and blurs it. The radius is the blur's standard deviation, as of every shadow.
void paintBlurred(QPainter &painter, const QPainterPath &shape, const QColor &color, double radius)
{
    const double reach = blurReach * radius;
    const QRectF area = shape.boundingRect().adjusted(-reach, -reach, reach, reach);
    const double scale = blurScale(radius, painter.device()->devicePixelRatio() * painter.worldTransform().m11());
    painter.drawImage(area, blurredShape(shape, color, area, radius, scale));
}

// A line within the edge of a rounded rectangle.
void paintBorder(QPainter &painter, const QRectF &rect, double radius, const QColor &color)
{
    constexpr double half = 0.5;
    painter.strokePath(corners::path(rect.adjusted(half, half, -half, -half), radius - half), QPen(color, 1.0));
}

} // namespace

void paintAppIcon(QPainter &painter, double side, const QColor &accent, double room)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF body(0, 0, side, side);
    const QPainterPath bodyShape = corners::path(body, side * cornerRadius);
    paintBlurred(painter, bodyShape, QColor::fromRgbF(0, 0, 0, 0.55f), std::min(side * shadowRadius, room / blurReach));

    QLinearGradient fill(0.13 * side, 0, 0.87 * side, side);
    fill.setColorAt(0, QColor::fromRgbF(0.2f, 0.2f, 0.22745098f));
    fill.setColorAt(1, QColor::fromRgbF(0.07058824f, 0.07058824f, 0.07843137f));
    painter.fillPath(bodyShape, fill);
    QLinearGradient sheen(0, 0, 0, 0.4 * side);
    sheen.setColorAt(0, white(0.08));
    sheen.setColorAt(1, white(0.0));
    painter.fillPath(bodyShape, sheen);
    paintBorder(painter, body, side * cornerRadius, white(0.16));

    const QRectF left((side - side * (2 * barWidth + barGap)) / 2, side * (1 - barHeight) / 2, side * barWidth,
                      side * barHeight);
    const QRectF right = left.translated(side * (barWidth + barGap), 0);
    const QPainterPath lit = corners::path(left, side * barRadius);
    painter.save();
    painter.setClipPath(bodyShape);
    paintBlurred(painter, lit, white(0.3), side * glowRadius);
    painter.restore();
    QColor bar = accent;
    bar.setAlphaF(0.85f);
    painter.fillPath(lit, bar);
    paintBorder(painter, right, side * barRadius, white(0.14));
}

QImage appIconImage(int pixels)
{
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    // On whole pixels, so that small sizes stay crisp.
    const double margin = std::round(pixels * (1 - markShare) / 2);
    painter.translate(margin, margin);
    paintAppIcon(painter, pixels - 2 * margin, LKPalette::dark().accent, margin);
    return image;
}

std::span<const int> appIconSizes()
{
    return iconSizes;
}

QIcon windowIcon()
{
    QIcon icon;
    for (const int size : appIconSizes()) {
        if (size <= largestWindowIcon) {
            icon.addPixmap(QPixmap::fromImage(appIconImage(size)));
        }
    }
    return icon;
}

AppIconCanvas::AppIconCanvas(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    connect(&LK::instance(), &LK::themeChanged, this, [this] { update(); });
    connect(this, &AppIconCanvas::sideChanged, this, [this] { update(); });
}

void AppIconCanvas::paint(QPainter *painter)
{
    const double room = (width() - m_side) / 2;
    painter->translate(room, room);
    paintAppIcon(*painter, m_side, LK::instance().palette().accent, room);
}

} // namespace larkspan
