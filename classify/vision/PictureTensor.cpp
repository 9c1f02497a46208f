#include "classify/vision/PictureTensor.h"

#include <algorithm>
#include <cmath>

namespace larkspan {

PictureTensor::PictureTensor(const QImage &image, QSize size, Range range)
    : PictureTensor(image, image.rect(), size, range)
{}

PictureTensor::PictureTensor(const QImage &image, const QRect &part, QSize size, Range range)
    : m_size(size)
    , m_values(3 * static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()))
{
    auto picture = image.convertToFormat(QImage::Format_RGB32);
    if (part != picture.rect()) {
        picture = picture.copy(part);
    }
    if (picture.size() != size) {
        picture =
            picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(QImage::Format_RGB32);
    }

    const float scale = range == Range::Bytes ? 1.0f : 1.0f / 127.5f;
    const float shift = range == Range::Bytes ? 0.0f : -1.0f;
    const auto plane = m_values.size() / 3;
    float *red = m_values.data();
    float *green = red + plane;
    float *blue = green + plane;
    for (int y = 0; y < size.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            *red++ = static_cast<float>(qRed(line[x])) * scale + shift;
            *green++ = static_cast<float>(qGreen(line[x])) * scale + shift;
            *blue++ = static_cast<float>(qBlue(line[x])) * scale + shift;
        }
    }
}

PictureTensor::PictureTensor(QSize size, std::vector<float> values) : m_size(size), m_values(std::move(values)) {}

QSize networkSize(QSize image, int longSide)
{
    constexpr int step = 32;
    const double longest = std::max({1, image.width(), image.height()});
    const auto side = [&](int length) {
        return std::max(1, static_cast<int>(std::lround(length * longSide / longest / step))) * step;
    };
    return {side(image.width()), side(image.height())};
}

} // namespace larkspan
