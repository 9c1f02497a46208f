#include "design/LKHalo.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include <QtGui/QPainter>
#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGImageNode>

#include "design/AngularGradient.h"
#include "design/Corners.h"
#include "design/LK.h"

namespace larkspan {

namespace {

constexpr double pointsPerPixel = 2.0;
constexpr int channels = 4;

// One half of a bell curve whose both halves add up to 1; the middle comes first.
std::vector<float> bell(double deviation)
{
    std::vector<float> weights;
    double sum = 0.0;
    for (int i = 0; i <= static_cast<int>(std::ceil(3.0 * deviation)); ++i) {
        const double weight = deviation > 0.0 ? std::exp(-0.5 * std::pow(i / deviation, 2)) : 1.0;
        weights.push_back(static_cast<float>(weight));
        sum += i == 0 ? weight : 2.0 * weight;
    }
    std::ranges::for_each(weights, [sum](float &weight) { weight /= static_cast<float>(sum); });
    return weights;
}

// Blurs lines of pixels: length pixels that lie step apart, and the next line pitch further on.
void blurLines(const QImage &from, QImage &to, int lines, int length, qsizetype pitch, qsizetype step,
               const std::vector<float> &weights)
{
    const uchar *in = from.constBits();
    uchar *out = to.bits();
    const int reach = static_cast<int>(weights.size()) - 1;
    for (int line = 0; line < lines; ++line) {
        for (int i = 0; i < length; ++i) {
            std::array<float, channels> sums{};
            for (int j = std::max(0, i - reach); j <= std::min(length - 1, i + reach); ++j) {
                const float weight = weights[static_cast<std::size_t>(std::abs(i - j))];
                const uchar *pixel = in + line * pitch + j * step;
                for (std::size_t k = 0; k < channels; ++k) {
                    sums[k] += weight * static_cast<float>(pixel[k]);
                }
            }
            for (std::size_t k = 0; k < channels; ++k) {
                out[line * pitch + i * step + static_cast<qsizetype>(k)] = static_cast<uchar>(std::lround(sums[k]));
            }
        }
    }
}

} // namespace

double haloReach(double blur)
{
    return pointsPerPixel * std::ceil(3.0 * blur / pointsPerPixel);
}

QImage haloImage(QSizeF rectangle, double cornerRadius, double blur, const QList<QColor> &gradient)
{
    const double reach = haloReach(blur);
    const QSizeF area = rectangle + QSizeF(2 * reach, 2 * reach);
    QImage sharp((area / pointsPerPixel).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (sharp.isNull()) {
        return {};
    }
    sharp.fill(Qt::transparent);
    QPainter painter(&sharp);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(sharp.width() / area.width(), sharp.height() / area.height());
    painter.translate(area.width() / 2, area.height() / 2);
    painter.setBrush(angularGradient({}, gradient));
    painter.setPen(Qt::NoPen);
    painter.drawPath(
        corners::path(QRectF(QPointF(-rectangle.width() / 2, -rectangle.height() / 2), rectangle), cornerRadius));
    painter.end();

    const std::vector<float> weights = bell(blur / pointsPerPixel);
    QImage across(sharp.size(), sharp.format());
    blurLines(sharp, across, sharp.height(), sharp.width(), sharp.bytesPerLine(), channels, weights);
    blurLines(across, sharp, sharp.width(), sharp.height(), channels, sharp.bytesPerLine(), weights);
    return sharp;
}

LKHalo::LKHalo(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(&LK::instance(), &LK::themeChanged, this, &LKHalo::redraw);
}

void LKHalo::setCornerRadius(double radius)
{
    if (m_cornerRadius != radius) {
        m_cornerRadius = radius;
        Q_EMIT cornerRadiusChanged();
        redraw();
    }
}

void LKHalo::setBlur(double blur)
{
    if (m_blur != blur) {
        m_blur = blur;
        Q_EMIT blurChanged();
        redraw();
    }
}

void LKHalo::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        redraw();
    }
}

void LKHalo::redraw()
{
    m_isStale = true;
    update();
}

QSGNode *LKHalo::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    auto *node = static_cast<QSGImageNode *>(oldNode);
    if (!m_isStale && node) {
        return node;
    }
    m_isStale = false;
    const QImage image =
        size().isEmpty() ? QImage() : haloImage(size(), m_cornerRadius, m_blur, LK::instance().palette().aiGradient());
    if (image.isNull()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
    }
    node->setTexture(window()->createTextureFromImage(image, QQuickWindow::TextureHasAlphaChannel));
    const double reach = haloReach(m_blur);
    node->setRect(boundingRect().adjusted(-reach, -reach, reach, reach));
    return node;
}

} // namespace larkspan
