#include "design/Blur.h"

#include <algorithm>
#include <cmath>

#include <QtCore/QList>
#include <QtGui/QPainter>

namespace larkspan {

namespace {

constexpr int bitsPerByte = 8;
constexpr double widestBlur = 6.0; // in pixels: a wider one is drawn small

// The curve from one end to the other; all weights add up to 1.
QList<float> weightsOf(double deviation)
{
    const int half = static_cast<int>(std::ceil(blurReach * deviation));
    QList<float> weights;
    float sum = 0;
    for (int x = -half; x <= half; ++x) {
        weights.push_back(static_cast<float>(std::exp(-x * x / (2 * deviation * deviation))));
        sum += weights.back();
    }
    std::ranges::for_each(weights, [sum](float &weight) { weight /= sum; });
    return weights;
}

// Blurs along the rows and turns the image on its side: done twice, it is blurred both ways and upright again.
QImage blurredRowsTurned(const QImage &image, const QList<float> &weights)
{
    QImage turned(image.height(), image.width(), image.format());
    const int half = static_cast<int>(weights.size()) / 2;
    const int channels = image.depth() / bitsPerByte;
    for (int y = 0; y < image.height(); ++y) {
        const uchar *const row = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            uchar *const pixel = turned.scanLine(x) + static_cast<qsizetype>(y) * channels;
            const int first = std::max(0, x - half);
            const int last = std::min(image.width() - 1, x + half);
            for (int channel = 0; channel < channels; ++channel) {
                float sum = 0.5F; // rounds
                for (int i = first; i <= last; ++i) {
                    sum += static_cast<float>(row[i * channels + channel]) * weights[i - x + half];
                }
                pixel[channel] = static_cast<uchar>(sum);
            }
        }
    }
    return turned;
}

} // namespace

double blurScale(double deviation, double full)
{
    return deviation > 0 ? std::min(full, widestBlur / deviation) : full;
}

QImage blurred(const QImage &image, double deviation)
{
    if (deviation <= 0 || image.isNull()) {
        return image;
    }
    const QList<float> weights = weightsOf(deviation);
    return blurredRowsTurned(blurredRowsTurned(image, weights), weights);
}

QImage blurredShape(const QPainterPath &shape, const QColor &color, const QRectF &area, double deviation, double scale)
{
    const QSize pixels = (area.size() * scale).toSize();
    if (pixels.isEmpty()) {
        return {};
    }
    QImage mask(pixels, QImage::Format_Grayscale8);
    mask.fill(Qt::black);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.translate(-area.topLeft());
    painter.fillPath(shape, Qt::white);
    painter.end();
    mask = blurred(mask, deviation * scale);

    QImage colored(pixels, QImage::Format_ARGB32_Premultiplied);
    colored.fill(color);
    mask.reinterpretAsFormat(QImage::Format_Alpha8);
    QPainter tint(&colored);
    tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    tint.drawImage(0, 0, mask);
    tint.end();
    return colored;
}

} // namespace larkspan
