#include "tests/design/PaintedBackdrops.h"

#include <gtest/gtest.h>
#include <QtGui/QPainter>

#include "design/Starlight.h"

namespace larkspan::test {

namespace {

QColor colorOf(const RGBA &color)
{
    return QColor::fromRgbF(static_cast<float>(color.r / 255), static_cast<float>(color.g / 255),
                            static_cast<float>(color.b / 255), static_cast<float>(color.a));
}

} // namespace

QImage emptyPicture(QSize size, double scale)
{
    QImage picture(size * scale, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(LK::instance().palette().surfaceWindow);
    return picture;
}

QImage paintedGrid(const KineticGrid &grid, QSize size, double now, double scale, Without without)
{
    QImage picture = emptyPicture(size, scale);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const GridColors &colors = GridColors::of(LK::instance().theme());
    painter.setPen(Qt::NoPen);
    painter.setBrush(colorOf(colors.lineBase.at(colors.dotOpacity)));
    for (double y = 14; y < size.height() && !without.dots; y += 28) {
        for (double x = 14; x < size.width(); x += 28) {
            painter.drawEllipse(QPointF(x, y), 0.7, 0.7);
        }
    }
    const GridMesh mesh = GridMesh::filling(size.width(), size.height());
    const auto at = [&](int column, int row) { return grid.warp(mesh, column, row, now); };
    const auto line = [&](const GridPoint &a, const GridPoint &b) {
        const SegmentLook look = SegmentLook::between(a.intensity, b.intensity, colors);
        painter.setPen(QPen(colorOf(look.color), look.width, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(QPointF(a.x, a.y), QPointF(b.x, b.y));
    };
    for (int row = 0; row <= mesh.rows; ++row) {
        for (int column = 0; column < mesh.columns; ++column) {
            line(at(column, row), at(column + 1, row));
        }
    }
    for (int column = 0; column <= mesh.columns; ++column) {
        for (int row = 0; row < mesh.rows; ++row) {
            line(at(column, row), at(column, row + 1));
        }
    }
    painter.setPen(Qt::NoPen);
    for (int row = 0; row <= mesh.rows; ++row) {
        for (int column = 0; column <= mesh.columns; ++column) {
            const GridPoint point = at(column, row);
            const QPointF centre(point.x, point.y);
            const NodeLook look = NodeLook::of(point.intensity, colors);
            if (look.glowRadius > 0.0) {
                QRadialGradient glow(centre, look.glowRadius, centre, look.radius / 2);
                glow.setColorAt(0, colorOf(colors.glow.at(look.glowOpacity)));
                glow.setColorAt(1, colorOf(colors.glow.at(0)));
                painter.setBrush(glow);
                painter.drawEllipse(centre, look.glowRadius, look.glowRadius);
            }
            painter.setBrush(colorOf(look.color));
            painter.drawEllipse(centre, look.radius, look.radius);
        }
    }
    painter.setBrush(Qt::NoBrush);
    for (const Ripple &ripple : grid.ripples()) {
        painter.setPen(QPen(colorOf(colors.ripple.at(0.28 * ripple.strength(now))), 1.5));
        if (!without.rings) {
            painter.drawEllipse(QPointF(ripple.x, ripple.y), ripple.radius(now), ripple.radius(now));
        }
    }
    return picture;
}

QImage paintedStarlight(double seconds, QSize size)
{
    QImage picture = emptyPicture(size);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const starlight::Lattice lattice = starlight::Lattice::filling(size.width(), size.height());
    const starlight::Colors &colors = starlight::Colors::of(LK::instance().theme());
    for (int row = 0; row < lattice.rows; ++row) {
        for (int column = 0; column < lattice.columns; ++column) {
            const RGBA &color = starlight::isAccent(column, row) ? colors.accent : colors.plain;
            painter.setBrush(colorOf(color.at(lattice.opacity(seconds, column, row))));
            painter.drawRoundedRect(QRectF(column * 20.0 + 7, row * 20.0 + 7, 6, 6), 1.5, 1.5);
        }
    }
    return picture;
}

Difference difference(const QImage &a, const QImage &b)
{
    EXPECT_EQ(a.size(), b.size());
    const QImage left = a.convertToFormat(QImage::Format_RGB32);
    const QImage right = b.convertToFormat(QImage::Format_RGB32);
    Difference result;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            const QRgb p = left.pixel(x, y);
            const QRgb q = right.pixel(x, y);
            for (const int apart : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)}) {
                result.mean += std::abs(apart);
                result.greatest = std::max(result.greatest, std::abs(apart));
            }
        }
    }
    result.mean /= 3.0 * left.width() * left.height();
    return result;
}

void expectAlike(const QImage &shown, const QImage &painted)
{
    const Difference apart = difference(shown, painted);
    // Edges are rounded in another manner; a line, dot or cell out of place or of another colour is far more.
    EXPECT_LT(apart.mean, 0.25);
    EXPECT_LT(apart.greatest, 40);
}

} // namespace larkspan::test
