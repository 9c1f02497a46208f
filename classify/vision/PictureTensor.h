#pragma once

#include <span>
#include <vector>

#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtGui/QImage>

namespace larkspan {

// A picture as the networks take it: red, green and blue planes of floats.
class PictureTensor
{
public:
    // The range of a picture's numbers.
    enum class Range {
        Bytes,     // 0...255
        PlusMinus, // -1...1
    };

    // The part of the image, scaled to the size. Where the part reaches over the edge there is black.
    PictureTensor(const QImage &image, const QRect &part, QSize size, Range range);
    // The whole image, scaled to the size.
    PictureTensor(const QImage &image, QSize size, Range range);
    // Planes made elsewhere, as many values as the size asks for.
    PictureTensor(QSize size, std::vector<float> values);

    [[nodiscard]] int width() const { return m_size.width(); }
    [[nodiscard]] int height() const { return m_size.height(); }
    [[nodiscard]] std::span<const float> values() const { return m_values; }

private:
    QSize m_size;
    std::vector<float> m_values;
};

// The size at which a network looks at an image: the long side at its full length, the other as the image's shape asks,
// to the nearest multiple of 32 that isn't nothing.
[[nodiscard]] QSize networkSize(QSize image, int longSide);

} // namespace larkspan
